#include "parts/FileChecksum.h"

#include <fcntl.h>

#include <cerrno>
#include <cstdint>
#include <vector>

#include "base/SystemCalls.h"

namespace tarvex {

namespace {

// FNV-1a, http://www.isthe.com/chongo/tech/comp/fnv
constexpr std::uint64_t kOffsetBasis = 14695981039346656037U;
constexpr std::uint64_t kPrime = 1099511628211U;
constexpr std::size_t kSumBlock = std::size_t{1} << 16;

}  // namespace

std::string fileChecksum(const std::string& path) {
  SystemCalls& calls = SystemCalls::current();
  const int fd = calls.open(path.c_str(), O_RDONLY | O_CLOEXEC, 0);
  if (fd < 0) return {};
  std::vector<unsigned char> block(kSumBlock);
  std::uint64_t sum = kOffsetBasis;
  std::uint64_t size = 0;
  ssize_t got = 0;
  do {
    got = calls.read(fd, block.data(), block.size());
    for (ssize_t i = 0; i < got; ++i) sum = (sum ^ block[static_cast<std::size_t>(i)]) * kPrime;
    if (got > 0) size += static_cast<std::uint64_t>(got);
  } while (got > 0 || (got < 0 && errno == EINTR));
  calls.close(fd);
  return got < 0 ? "" : std::to_string(size) + '-' + std::to_string(sum);
}

}  // namespace tarvex
