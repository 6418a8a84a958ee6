#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "base/TextReader.h"
#include "base/TextWriter.h"

namespace tarvex::fuzz {

inline std::string textOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// The input as a file, for readers that take a path.
class InputFile {
 public:
  InputFile(const std::uint8_t* data, std::size_t size);
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  const std::string& path() const { return path_; }

 private:
  int fd_;
  std::string path_;
};

// Ends the run as a finding.
[[noreturn]] void finding(const char* what, const std::string& first, const std::string& second = {});

template <class Object>
std::string written(const Object& object) {
  TextWriter out;
  object.write(out);
  return out.text();
}

// A text whose last character is CR loses it when its line is read again: the reader takes it for a part of the line's
// end.
inline bool hasLostCharacters(const std::string& text) {
  return text.find("\r\n") != std::string::npos;
}

// What a reader took can be written, read again and written alike. `before` is what stands in front of the text in a
// file and belongs to its reader.
template <class Object>
void checkRoundTrip(const Object& object, const std::string& before = {}) {
  const std::string first = written(object);
  if (hasLostCharacters(first)) return;
  Object again;
  TextReader in = TextReader::fromText(before + first);
  if (!again.read(in)) finding("what was read and written can't be read again", first);
  const std::string second = written(again);
  if (first != second) finding("the second writing differs from the first", first, second);
}

}  // namespace tarvex::fuzz
