#include "base/FreeSpace.h"

#include "base/SystemCalls.h"

namespace tarvex {

namespace {

constexpr std::uint64_t kMega = 1000000;
constexpr std::uint64_t kGiga = 1000 * kMega;
constexpr std::uint64_t kFromHereGiga = 10 * kGiga;  // below it a whole number of GB would say too little

std::string sizeText(std::uint64_t bytes) {
  return bytes < kFromHereGiga ? std::to_string(bytes / kMega) + " MB" : std::to_string(bytes / kGiga) + " GB";
}

// So much is kept in memory before a working file grows.
constexpr std::uint64_t kHardlyAny = kMega;

}  // namespace

std::string whyNoRoom(const std::string& directory, std::uint64_t bytes, std::uint64_t released) {
  if (bytes <= kHardlyAny) return {};
  struct statvfs status {};
  if (SystemCalls::current().statvfs(directory.c_str(), &status) != 0) return {};
  const std::uint64_t free = std::uint64_t{status.f_bavail} * status.f_frsize + released;
  if (bytes <= free) return {};
  return sizeText(bytes) + ", " + directory + " has " + sizeText(free) + " free";
}

}  // namespace tarvex
