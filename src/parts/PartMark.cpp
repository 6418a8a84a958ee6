#include "parts/PartMark.h"

#include <sys/stat.h>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>

#include "parts/RunDirectory.h"

namespace tarvex {

namespace {

// 0007.2.ended
bool readName(std::string_view name, PartMark& mark) {
  const char* const end = name.data() + name.size();
  auto parsed = std::from_chars(name.data(), end, mark.part);
  if (parsed.ec != std::errc() || parsed.ptr == end || *parsed.ptr != '.') return false;
  parsed = std::from_chars(parsed.ptr + 1, end, mark.attempt);
  if (parsed.ec != std::errc()) return false;
  const std::string_view rest(parsed.ptr, static_cast<std::size_t>(end - parsed.ptr));
  mark.ended = rest == ".ended";
  return mark.ended || rest == ".begun";
}

// 0007.again
bool readWish(std::string_view name, std::int32_t& part) {
  const char* const end = name.data() + name.size();
  const auto parsed = std::from_chars(name.data(), end, part);
  return parsed.ec == std::errc() &&
         std::string_view(parsed.ptr, static_cast<std::size_t>(end - parsed.ptr)) == ".again";
}

double secondsOf(const std::string& path) {
  constexpr double kNanosecond = 1e-9;
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return 0.0;
  return static_cast<double>(status.st_mtim.tv_sec) + static_cast<double>(status.st_mtim.tv_nsec) * kNanosecond;
}

}  // namespace

bool listMarks(const RunDirectory& run, std::vector<PartMark>& marks, RunWishes& wishes, std::string& message) {
  std::error_code error;
  std::filesystem::directory_iterator entry(run.marks(), error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    PartMark mark;
    if (readName(name, mark)) marks.push_back(std::move(mark));
    wishes.stop = wishes.stop || name == "stop";
    if (std::int32_t part = 0; readWish(name, part)) wishes.again.push_back(part);
  }
  if (!error) return true;
  message = run.marks() + ": " + error.message();
  return false;
}

bool readMark(const RunDirectory& run, PartMark& mark) {
  const std::string path = run.mark(mark.part, mark.attempt, mark.ended ? "ended" : "begun");
  std::ifstream in(path);
  std::string line;
  while (std::getline(in, line) && line != "end") {
    std::istringstream words(line);
    std::string key;
    words >> key;
    if (key == "code") words >> mark.code >> mark.reason;
    if (key == "host") words >> mark.host;
    if (key == "pid") words >> mark.pid;
    if (key == "born") words >> mark.born;
    if (key == "boot") words >> mark.boot;
  }
  mark.written = secondsOf(path);
  return line == "end";
}

}  // namespace tarvex
