#include "postproc/CellFormat.h"

#include <charconv>
#include <cmath>
#include <cstddef>

#include "base/NumberText.h"

namespace tarvex {

namespace {

// Sizes that are shown with a fixed number of decimals.
constexpr double kFixedFrom = 0.001;
constexpr double kFixedTo = 10000.0;
constexpr std::size_t kNumberWidth = 7;
constexpr std::size_t kSavedWidth = 20;

bool isFixed(double value) {
  const double size = std::fabs(value);
  return size >= kFixedFrom && size <= kFixedTo;
}

std::string padded(std::string_view text, std::size_t width) {
  std::string result(text.size() < width ? width - text.size() : 0, ' ');
  return result.append(text);
}

// Requires: isFixed(value).
std::string fixedText(double value, int decimals) {
  char text[kMaxNumberText];
  const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals).ptr;
  return std::string(text, end);
}

}  // namespace

std::string shortNumber(double value) {
  return padded(numberText(value, 3), kNumberWidth);
}

std::string measureCell(double value) {
  return isFixed(value) ? fixedText(value, 4) : shortNumber(value);
}

std::string statisticCell(double value) {
  return isFixed(value) ? padded(fixedText(value, 6), kNumberWidth) : shortNumber(value);
}

std::string_view kindCell(FactorKind kind) {
  switch (kind) {
    case FactorKind::Constant:
      return "Constant";
    case FactorKind::Relation:
      return "Related factor";
    case FactorKind::Correlated:
      return "Correlated factor";
    case FactorKind::Uncertain:
      break;
  }
  return "";
}

std::string savedCell(std::string_view text) {
  return padded(text, kSavedWidth);
}

}  // namespace tarvex
