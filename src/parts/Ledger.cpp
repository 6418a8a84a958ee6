#include "parts/Ledger.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <nlohmann/json.hpp>

#include "base/SystemCalls.h"

namespace tarvex {

namespace {

using Json = nlohmann::json;

constexpr mode_t kLedgerMode = 0666;  // less the user's mask

std::string lineOf(const LedgerEntry& entry) {
  Json json = {{"time", entry.time}, {"event", entry.event}};
  if (!entry.parts.empty()) json["parts"] = entry.parts;
  if (entry.attempt != 0) json["attempt"] = entry.attempt;
  if (!entry.job.empty()) json["job"] = entry.job;
  if (!entry.host.empty()) json["host"] = entry.host;
  if (entry.code != 0) json["code"] = entry.code;
  if (entry.seconds != 0.0) json["seconds"] = entry.seconds;
  if (!entry.text.empty()) json["text"] = entry.text;
  // A log may hold any bytes.
  return json.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}

bool readLine(std::string_view line, LedgerEntry& entry) {
  try {
    const Json json = Json::parse(line);
    json.at("time").get_to(entry.time);
    json.at("event").get_to(entry.event);
    entry.parts = json.value("parts", entry.parts);
    entry.attempt = json.value("attempt", entry.attempt);
    entry.job = json.value("job", entry.job);
    entry.host = json.value("host", entry.host);
    entry.code = json.value("code", entry.code);
    entry.seconds = json.value("seconds", entry.seconds);
    entry.text = json.value("text", entry.text);
    return true;
  } catch (const Json::exception&) {
    return false;
  }
}

bool readAll(int fd, std::string& text) {
  constexpr std::size_t kBlock = std::size_t{1} << 16;
  std::string block(kBlock, '\0');
  ssize_t got = 0;
  while ((got = SystemCalls::current().read(fd, block.data(), block.size())) != 0) {
    if (got < 0 && errno != EINTR) return false;
    if (got > 0) text.append(block, 0, static_cast<std::size_t>(got));
  }
  return true;
}

// The entries of all whole lines; `whole` is where they end.
std::vector<LedgerEntry> entriesOf(std::string_view text, std::size_t& whole) {
  std::vector<LedgerEntry> entries;
  whole = 0;
  for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n', whole)) {
    LedgerEntry entry;
    if (readLine(text.substr(whole, end - whole), entry)) entries.push_back(std::move(entry));
    whole = end + 1;
  }
  return entries;
}

}  // namespace

Ledger::~Ledger() {
  if (fd_ >= 0) SystemCalls::current().close(fd_);
}

bool Ledger::open(const std::string& path, std::vector<LedgerEntry>& entries, std::string& message) {
  SystemCalls& calls = SystemCalls::current();
  path_ = path;
  fd_ = calls.open(path.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC, kLedgerMode);
  std::string text;
  if (fd_ >= 0 && readAll(fd_, text)) {
    std::size_t whole = 0;
    entries = entriesOf(text, whole);
    size_ = static_cast<std::int64_t>(whole);
    if (whole == text.size() || calls.ftruncate(fd_, size_) == 0) return true;
  }
  message = path + ": " + std::strerror(errno);
  return false;
}

bool Ledger::append(std::vector<LedgerEntry> entries, std::string& message, Keep keep) {
  if (entries.empty()) return true;
  const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
  std::string text;
  for (LedgerEntry& entry : entries) {
    entry.time = now.count();
    text += lineOf(entry);
  }
  SystemCalls& calls = SystemCalls::current();
  std::size_t done = 0;
  ssize_t written = 0;
  while (done < text.size() &&
         ((written = calls.write(fd_, text.data() + done, text.size() - done)) > 0 || (written < 0 && errno == EINTR)))
    done += static_cast<std::size_t>(std::max<ssize_t>(written, 0));
  if (done == text.size() && (keep == Keep::Lazily || calls.fsync(fd_) == 0)) {
    size_ += static_cast<std::int64_t>(text.size());
    return true;
  }
  message = path_ + ": " + std::strerror(errno);
  // What of it came there is no entry; where even that fails a reader drops the torn line.
  static_cast<void>(calls.ftruncate(fd_, size_));
  return false;
}

std::vector<LedgerEntry> readLedger(const std::string& path, std::uint64_t& from) {
  const int fd = SystemCalls::current().open(path.c_str(), O_RDONLY | O_CLOEXEC, 0);
  std::string text;
  if (fd < 0) return {};
  const bool read = ::lseek(fd, static_cast<off_t>(from), SEEK_SET) >= 0 && readAll(fd, text);
  SystemCalls::current().close(fd);
  std::size_t whole = 0;
  if (!read) return {};
  std::vector<LedgerEntry> entries = entriesOf(text, whole);
  from += whole;
  return entries;
}

}  // namespace tarvex
