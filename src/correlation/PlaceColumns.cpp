#include "correlation/PlaceColumns.h"

#include <algorithm>

#include "base/Memory.h"

namespace tarvex {

const std::int32_t* PlaceColumns::at(std::int32_t column, std::int32_t row, std::int32_t count,
                                     std::string& errorText) const {
  constexpr std::size_t kLeastRead = 1024;
  const auto first = static_cast<std::size_t>(row);
  const auto wanted = static_cast<std::size_t>(count);
  const auto k = static_cast<std::size_t>(column);
  if (column < 0 || row < 0 || count < 0 || k >= columns_ || first + wanted > rows_) {
    errorText = "There is no such rank.";
    return nullptr;
  }
  const bool isHere = k == stretchColumn_ && first >= stretchFirst_ && first + wanted <= stretchFirst_ + stretchRows_;
  if (isHere) return stretch_.data() + (first - stretchFirst_);
  const std::size_t taken = isLarge() ? std::min(std::max(wanted, kLeastRead), rows_ - first) : wanted;
  const std::int32_t* places = nullptr;
  stretchRows_ = 0;
  if (!fitsInMemory([&] { places = shelf_.view(k, first, taken, stretch_); })) {
    errorText = kNotEnoughMemory;
    return nullptr;
  }
  if (places == nullptr) errorText = shelf_.errorText();
  if (places == nullptr || places != stretch_.data()) return places;
  stretchColumn_ = k;
  stretchFirst_ = first;
  stretchRows_ = taken;
  return places;
}

}  // namespace tarvex
