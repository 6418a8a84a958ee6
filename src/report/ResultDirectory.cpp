#include "report/ResultDirectory.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "base/Paths.h"
#include "base/Temporaries.h"

namespace tarvex {

namespace {

// Of a variable's text, which may be an expression of any length: file names end at 255 bytes.
constexpr std::size_t kLongestVariable = 100;

bool standsInFileNames(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '.' || c == '_';
}

}  // namespace

ResultDirectory::ResultDirectory(std::string path) : path_(std::move(path)) {
  std::error_code error;
  std::filesystem::path existing = absolutePath(path_);
  while (!std::filesystem::exists(existing, error) && existing.has_relative_path()) existing = existing.parent_path();
  aside_ = Temporaries::createDirectory(existing.string());
  if (aside_.empty()) asideError_ = errno;
}

ResultDirectory::~ResultDirectory() {
  std::error_code error;
  if (aside_.empty()) return;
  std::filesystem::remove_all(aside_, error);
  Temporaries::forget(aside_);
}

void ResultDirectory::add(const std::string& variable, std::string_view what, std::string_view suffix,
                          const std::function<bool(const std::string& path, std::string& problem)>& write) {
  if (ok() && aside_.empty()) problem_ = path_ + ": " + std::strerror(asideError_);
  if (!ok()) return;
  const std::string name = freeName(variable, what, suffix);
  const std::string path = aside_ + "/" + name;
  std::string problem;
  if (write(path, problem))
    names_.push_back(name);
  else  // in the name that the user would know
    problem_ = path_ + "/" + name + (problem.starts_with(path) ? problem.substr(path.size()) : ": " + problem);
}

bool ResultDirectory::finish() {
  std::error_code made;
  if (ok() && !Temporaries::cancelled()) std::filesystem::create_directories(path_, made);
  if (ok() && Temporaries::cancelled()) made = std::make_error_code(std::errc::operation_canceled);
  if (made) problem_ = path_ + ": " + made.message();
  for (const std::string& name : names_) {
    if (!ok()) return false;
    std::error_code error;
    std::filesystem::rename(aside_ + "/" + name, path_ + "/" + name, error);
    if (error) problem_ = path_ + "/" + name + ": " + error.message();
  }
  names_.clear();
  return ok();
}

std::string ResultDirectory::freeName(const std::string& variable, std::string_view what, std::string_view suffix) {
  std::string name = variable.substr(0, kLongestVariable) + "-" + std::string(what);
  std::replace_if(
      name.begin(), name.end(), [](char c) { return !standsInFileNames(c); }, '_');
  std::string free = name;
  for (int number = 2; !taken_.insert(free + std::string(suffix)).second; ++number)
    free = name + "-" + std::to_string(number);
  return free + std::string(suffix);
}

}  // namespace tarvex
