#include "FuzzInput.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace tarvex::fuzz {

InputFile::InputFile(const std::uint8_t* data, std::size_t size)
    : fd_(memfd_create("input", MFD_CLOEXEC)), path_("/proc/self/fd/" + std::to_string(fd_)) {
  if (fd_ < 0 || ::write(fd_, data, size) != static_cast<ssize_t>(size)) {
    std::perror("the input can't be put into a file");
    std::exit(1);
  }
}

InputFile::~InputFile() {
  ::close(fd_);
}

void finding(const char* what, const std::string& first, const std::string& second) {
  std::fprintf(stderr, "%s\n--- first\n%s\n--- second\n%s\n---\n", what, first.c_str(), second.c_str());
  std::abort();
}

}  // namespace tarvex::fuzz
