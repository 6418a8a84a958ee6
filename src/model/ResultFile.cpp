#include "model/ResultFile.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace tarvex {

bool ResultFile::copyFrom(const ResultFile& other) {
  if (this == &other) return true;
  ResultFile copy;
  const auto fail = [this](const ResultFile& file) {
    errorText_ = file.errorText_;
    return false;
  };
  if (other.broken_) return fail(other);
  std::vector<double> part(kBufferValues);
  for (std::uint64_t first = 0; first < other.flushed_; first += part.size()) {
    part.resize(static_cast<std::size_t>(std::min<std::uint64_t>(kBufferValues, other.flushed_ - first)));
    if (!other.read(first, part.data(), part.size())) return fail(other);
    if (!copy.append(part.data(), part.size())) return fail(copy);
  }
  if (!copy.append(other.pending_.data(), other.pending_.size())) return fail(copy);
  *this = std::move(copy);
  return true;
}

bool ResultFile::append(const double* values, std::size_t count) {
  if (broken_) return false;
  while (count > 0) {
    if (pending_.size() == kBufferValues && !flush()) return false;
    const std::size_t part = std::min(count, kBufferValues - pending_.size());
    pending_.insert(pending_.end(), values, values + part);
    values += part;
    count -= part;
  }
  return true;
}

bool ResultFile::flush() {
  broken_ = !file_.write(flushed_ * sizeof(double), pending_.data(), pending_.size() * sizeof(double));
  if (broken_) {
    errorText_ = file_.errorText();
    return false;
  }
  flushed_ += pending_.size();
  pending_.clear();
  return true;
}

bool ResultFile::read(std::uint64_t first, double* values, std::size_t count) const {
  if (broken_) return false;
  const std::uint64_t onDisk = first < flushed_ ? std::min<std::uint64_t>(count, flushed_ - first) : 0;
  if (!readFromDisk(first, values, static_cast<std::size_t>(onDisk))) return false;
  for (std::uint64_t i = onDisk; i < count; ++i) {
    const std::uint64_t place = first + i - flushed_;
    values[i] =
        place < pending_.size() ? pending_[static_cast<std::size_t>(place)] : std::numeric_limits<double>::quiet_NaN();
  }
  return true;
}

bool ResultFile::readFromDisk(std::uint64_t first, double* values, std::size_t count) const {
  while (count > 0) {
    if (first < windowFirst_ || first >= windowFirst_ + window_.size()) {
      window_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(kBufferValues, flushed_ - first)));
      windowFirst_ = first;
      if (!file_.read(first * sizeof(double), window_.data(), window_.size() * sizeof(double))) {
        window_.clear();
        errorText_ = file_.errorText();
        return false;
      }
    }
    const std::size_t offset = static_cast<std::size_t>(first - windowFirst_);
    const std::size_t part = std::min(count, window_.size() - offset);
    std::copy_n(window_.begin() + static_cast<std::ptrdiff_t>(offset), part, values);
    first += part;
    values += part;
    count -= part;
  }
  return true;
}

void ResultFile::cut(std::uint64_t size) {
  pending_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(pending_.size(), size - std::min(size, flushed_))));
  flushed_ = std::min(flushed_, size);
  window_.clear();
}

void ResultFile::clear() {
  *this = ResultFile();
}

}  // namespace tarvex
