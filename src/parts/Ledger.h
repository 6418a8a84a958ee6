#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

// Something that happened to a run in parts. Only what is known is set.
struct LedgerEntry {
  // started    a coordinator took the run: host, job (its pid), text (the engine)
  // resumed    what failed or was missing is to be done again: these parts, or without any all of them
  // sending    parts are about to be handed to the engine as `attempt`
  // sent       and were: job is the engine's number
  // begun, done, failed, lost, stopped    a part's attempt; code and text say why it failed
  // again      a part that failed is to be done once more
  // missing    a part was given up
  // spoilt     the result of a part that was done can't be read any more
  // ended      the coordinator left the run: text is done, failed or stopped
  std::string event = {};
  std::vector<std::int32_t> parts = {};
  std::int32_t attempt = 0;
  std::string job = {};
  std::string host = {};
  std::int32_t code = 0;
  double seconds = 0.0;  // that the attempt took
  std::string text = {};
  double time = 0.0;  // seconds of the system's clock; set by append()
};

// The history of a run: a line of JSON for each entry, appended and flushed to the disk. Its one writer holds the run's
// lock.
class Ledger {
 public:
  Ledger() = default;
  ~Ledger();
  Ledger(const Ledger&) = delete;
  Ledger& operator=(const Ledger&) = delete;

  // Opens or makes the file and reads what it holds. A torn last line is cut off, one that can't be read is passed
  // over: marks tell the same. False, with path and reason.
  [[nodiscard]] bool open(const std::string& path, std::vector<LedgerEntry>& entries, std::string& message);
  // All of them or none; on the disk when it returns true, unless they may be kept lazily: then they follow with the
  // next ones that may not, and only a crash of the machine loses them.
  enum class Keep { Now, Lazily };
  [[nodiscard]] bool append(std::vector<LedgerEntry> entries, std::string& message, Keep keep = Keep::Now);

 private:
  std::string path_;
  int fd_ = -1;
  std::int64_t size_ = 0;
};

// What the ledger of a run holds from this byte on, without changing it; `from` is then where the next entry will
// begin. Nothing without such a file.
std::vector<LedgerEntry> readLedger(const std::string& path, std::uint64_t& from);

}  // namespace tarvex
