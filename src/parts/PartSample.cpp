#include "parts/PartSample.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "base/Paths.h"
#include "base/SystemCalls.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/FactorList.h"
#include "parts/RunDirectory.h"

namespace tarvex {

namespace {

constexpr std::size_t kMaxValue = 1023;  // characters; no sensible number is longer
constexpr std::string_view kSpace = " \t\r\n";

bool skipValues(TextReader& in, std::int64_t count) {
  std::string_view word;
  for (std::int64_t i = 0; i < count; ++i)
    if (!in.expect("a value of the sample").readWord(word, kMaxValue)) return false;
  return true;
}

}  // namespace

PartSample::~PartSample() {
  if (fd_ >= 0) SystemCalls::current().close(fd_);
}

bool PartSample::open(const std::string& path, const std::vector<Part>& parts, const FactorList& factors,
                      std::string& message, const Progress& progress) {
  path_ = existingPath(path);
  parts_ = parts;
  TextWriter text;
  factors.write(text);
  factors_ = text.text();
  fd_ = SystemCalls::current().open(path_.c_str(), O_RDONLY | O_CLOEXEC, 0);
  if (fd_ < 0) {
    message = "Error reading samples file\n" + path + ": " + std::strerror(errno);
    return false;
  }
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path_, error);
  TextReader in = TextReader::fromFile(path_, progress);
  if (!error && findCuts(in, size)) return true;
  message = withProblem("Error reading samples file", in);
  return false;
}

bool PartSample::findCuts(TextReader& in, std::uint64_t size) {
  std::int32_t rows = 0;
  in >> external_ >> rows >> columns_ >> order_;
  if (in.fail()) return false;
  const std::int32_t wanted = parts_.empty() ? 0 : parts_.back().first + parts_.back().rows;
  if (rows != wanted)
    return in.refuse("the parts have " + std::to_string(wanted) + " runs, the sample has " + std::to_string(rows));
  const bool byFactor = order_ == 1;
  cuts_.clear();
  for (std::int32_t line = 0; line < (byFactor ? columns_ : 1); ++line) {
    cuts_.push_back(size - in.remaining());
    for (const Part& part : parts_) {
      if (!skipValues(in, static_cast<std::int64_t>(part.rows) * (byFactor ? 1 : columns_))) return false;
      cuts_.push_back(size - in.remaining());
    }
  }
  return true;
}

bool PartSample::appendText(std::uint64_t from, std::uint64_t to, std::string& text) const {
  std::string piece(to - from, '\0');
  std::size_t done = 0;
  while (done < piece.size()) {
    const ssize_t got =
        SystemCalls::current().pread(fd_, piece.data() + done, piece.size() - done, static_cast<off_t>(from + done));
    if (got == 0) errno = EIO;
    if (got == 0 || (got < 0 && errno != EINTR)) return false;
    if (got > 0) done += static_cast<std::size_t>(got);
  }
  // Between two values stands what was between them; what stood before the first belongs to the part before.
  text.append(piece, std::min(piece.find_first_not_of(kSpace), piece.size()));
  text += "\t\n";
  return true;
}

bool PartSample::write(std::size_t part, const std::string& path, std::string& message) const {
  std::string text = std::to_string(external_) + '\n' + std::to_string(parts_[part].rows) + '\n' +
                     std::to_string(columns_) + '\n' + std::to_string(order_) + '\n';
  const std::size_t stride = parts_.size() + 1;
  for (std::size_t line = 0; line < cuts_.size(); line += stride)
    if (!appendText(cuts_[line + part], cuts_[line + part + 1], text)) {
      message = path_ + ": " + std::strerror(errno);
      return false;
    }
  // No statistics; no method; no directory; the part's own path.
  text += "0\n" + factors_ + "\n" + path + "\n\n";
  return writePlainFile(path, text, message);
}

}  // namespace tarvex
