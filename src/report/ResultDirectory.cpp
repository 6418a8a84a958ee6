#include "report/ResultDirectory.h"

#include <algorithm>
#include <cctype>
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
}

ResultDirectory::~ResultDirectory() {
  std::error_code error;
  if (aside_.empty()) return;
  std::filesystem::remove_all(aside_, error);
  Temporaries::forget(aside_);
}

void ResultDirectory::add(const std::string& variable, std::string_view what, std::string_view suffix,
                          const std::function<bool(const std::string& path)>& write) {
  if (!ok()) return;
  const std::string name = freeName(variable, what, suffix);
  if (aside_.empty() || !write(aside_ + "/" + name))
    failedFile_ = path_ + "/" + name;
  else
    names_.push_back(name);
}

bool ResultDirectory::finish() {
  std::error_code made;
  if (ok() && !Temporaries::cancelled()) std::filesystem::create_directories(path_, made);
  if (ok() && Temporaries::cancelled()) failedFile_ = path_;
  for (const std::string& name : names_) {
    if (!ok()) return false;
    std::error_code error;
    std::filesystem::rename(aside_ + "/" + name, path_ + "/" + name, error);
    if (error) failedFile_ = path_ + "/" + name;
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
