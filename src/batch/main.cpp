#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "base/Temporaries.h"
#include "batch/Commands.h"
#include "batch/StopSignals.h"
#include "plots/libraryFailures.h"

namespace {

// What no handler can reach, as memory that fails while another failure is being cleaned up: still a message and a
// status instead of an abort.
[[noreturn]] void onTerminate() {
  constexpr std::string_view kText = "tarvex-batch gives up: there is not enough memory even to say what failed.\n";
  static_cast<void>(::write(STDERR_FILENO, kText.data(), kText.size()) >= 0);
  tarvex::Temporaries::deleteAllForEnd();
  ::_exit(tarvex::kFailed);
}

}  // namespace

int main(int argc, char** argv) {
  std::set_terminate(onTerminate);
  tarvex::StopSignals::install();
  tarvex::endOnLibraryFailure("tarvex-batch");
  const std::vector<std::string> words(argv + 1, argv + argc);
  const int status = tarvex::runBatch(words, std::cout, std::cerr, isatty(STDERR_FILENO) != 0);
  std::cout.flush();
  if (std::cout) return status;
  std::cerr << "The output can't be written: " << std::strerror(errno) << '\n';
  return tarvex::kFailed;
}
