#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "base/Progress.h"

namespace tarvex {

// The text that a reader goes through: of a file, block by block, or one that is there as a whole.
class TextSource {
 public:
  TextSource() = default;
  explicit TextSource(std::string text) : held_(std::move(text)) {}
  ~TextSource();
  TextSource(TextSource&& other) noexcept;
  TextSource& operator=(TextSource&& other) noexcept;

  // Opens a file; `progress` hears, block by block, how much of it was read. A pipe is read to its end. False, with
  // error(), for one that the system doesn't give, a directory included, and for a fifo that nobody writes to within a
  // second.
  [[nodiscard]] bool open(const std::string& path, const Progress& progress);

  const std::string& held() const { return held_; }
  std::uint64_t unread() const { return unread_; }  // bytes of the file behind what is held
  bool hasMore() const { return fd_ >= 0; }         // as far as is known
  void drop(std::size_t bytes);                     // from the start of what is held
  std::int64_t lineOf(std::size_t place) const;     // of a place in what is held, counted from 1 in the whole text
  // Reads on until `wanted` bytes are held. False at the end of the text, after a failure, and after a stop.
  [[nodiscard]] bool hold(std::size_t wanted);

  int error() const { return error_; }  // an errno of the first failure; 0: none
  std::string problem() const;          // what it means
  bool stopped() const { return progress_.stopped(); }

 private:
  bool fail(int error);  // always false
  void close();
  bool awaitWriter();
  bool readWhole();
  bool appendBlock(std::size_t size);

  std::string held_;
  std::int64_t linesDropped_ = 0;
  std::uint64_t unread_ = 0;
  std::uint64_t size_ = 0;  // of the whole file
  Progress progress_;
  int fd_ = -1;
  int error_ = 0;
};

}  // namespace tarvex
