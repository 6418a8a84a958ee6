#include "plots/Ticks.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

#include "base/NumberText.h"

namespace tarvex {

namespace {

// Sizes that are written in decimals; others in "%g" form.
constexpr double kFixedFrom = 0.001;
constexpr double kFixedTo = 10000.0;
constexpr double kPlainTo = 1e6;  // of ticks, which have no decimals there
constexpr int kShortDigits = 3;
constexpr int kAllDigits = 17;  // tell any two doubles apart

constexpr int kMostTicks = 1000;
// A text may be off its tick by this part of a step and still name it.
constexpr double kTextTolerance = 0.01;
// Rounding of a tick's position in steps, so that a limit that is a round value has its tick.
constexpr double kEdgeTolerance = 1e-9;
// Room around a column of equal values, as a part of their size.
constexpr double kRoom = 0.05;
constexpr double kLn10 = 2.302585092994045684;

int decimalsOf(NumberForm form) {
  switch (form) {
    case NumberForm::TwoDecimals:
      return 2;
    case NumberForm::ThreeDecimals:
      return 3;
    case NumberForm::FourDecimals:
      return 4;
    case NumberForm::Short:
      break;
  }
  return 0;
}

// Requires: a size that is written in decimals, or 0.
std::string fixedText(double value, int decimals) {
  char buffer[64];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
  return {buffer, end.ptr};
}

bool inFixedRange(double size) {
  return size >= kFixedFrom && size <= kFixedTo;
}

double textValue(const std::string& text) {
  double value = 0.0;
  return isNumber(text, value) ? value : std::numeric_limits<double>::quiet_NaN();
}

bool tellApart(const std::vector<std::string>& texts) {
  return std::adjacent_find(texts.begin(), texts.end()) == texts.end();
}

// All values in one form, whose digits grow until each text names its tick and no other.
template <class Write>
std::vector<std::string> textsOf(const std::vector<double>& values, double step, int digits, Write write) {
  std::vector<std::string> texts(values.size());
  for (; digits <= kAllDigits; ++digits) {
    bool close = true;
    for (std::size_t i = 0; i < values.size(); ++i) {
      texts[i] = values[i] == 0.0 && digits == 0 ? "0" : write(values[i], digits);
      close = close && !(std::abs(textValue(texts[i]) - values[i]) > kTextTolerance * step);
    }
    if (close && tellApart(texts)) break;
  }
  return texts;
}

std::string scientificText(double value, int decimals) {
  char buffer[64];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific, decimals);
  return {buffer, end.ptr};
}

// One form for the axis as a whole, with as few decimals as name every tick: decimals and powers of ten side by side
// are hard to compare.
std::vector<std::string> linearTexts(std::vector<double> values, double step) {
  double largest = 0.0;
  for (double& value : values) {
    // The limit of an axis that begins a hair above 0.
    if (std::abs(value) < kEdgeTolerance * step) value = 0.0;
    largest = std::max(largest, std::abs(value));
  }
  const bool plain = largest >= kFixedFrom && largest < kPlainTo;
  return plain ? textsOf(values, step, 0, fixedText) : textsOf(values, step, 0, scientificText);
}

// The nearest of 1, 2 and 5 times a power of ten.
double roundStep(double step) {
  const double power = std::pow(10.0, std::floor(std::log10(step)));
  const double mantissa = step / power;
  // Geometric means of neighbours.
  if (mantissa < std::sqrt(2.0)) return power;
  if (mantissa < std::sqrt(10.0)) return 2.0 * power;
  return mantissa < std::sqrt(50.0) ? 5.0 * power : 10.0 * power;
}

// The k-th multiple, free of the rounding of decimal fractions where a power of ten can be divided by exactly.
double multiple(double k, double step) {
  if (step >= 1.0) return k * step;
  const double inverse = std::round(1.0 / step);
  return inverse < 1e15 && std::abs(inverse * step - 1.0) < 1e-12 ? k / inverse : k * step;
}

// Round values from lower to upper, upwards; `step` is what lies between them. The limits themselves where doubles are
// too coarse for anything between.
std::vector<double> roundValues(double lower, double upper, int wanted, double& step) {
  step = roundStep(upper / wanted - lower / wanted);
  const double first = std::ceil(lower / step - kEdgeTolerance);
  const double last = std::floor(upper / step + kEdgeTolerance);
  std::vector<double> values;
  if (step > 0.0 && std::isfinite(step) && std::abs(first) < 1e15 && last - first < kMostTicks) {
    for (double k = first; k <= last; ++k) {
      const double value = multiple(k, step);
      if (std::isfinite(value)) values.push_back(std::clamp(value, lower, upper) + 0.0);
    }
  }
  if (!values.empty()) return values;
  step = upper / 2.0 - lower / 2.0;
  return {lower, upper};
}

std::string logarithmText(double value) {
  return numberText(value, inFixedRange(value) ? 5 : kShortDigits);  // 5: "10000", and nothing behind it
}

struct Decades {
  double lower, upper;  // common logarithms
  double span() const { return upper - lower; }
  bool holds(double at) const { return at >= lower - kEdgeTolerance && at <= upper + kEdgeTolerance; }
};

void addTick(std::vector<Tick>& ticks, const Axis& axis, double value, bool named) {
  if (!(value > 0.0) || !std::isfinite(value)) return;
  ticks.push_back({std::clamp(std::log(value), axis.lower, axis.upper), named ? logarithmText(value) : std::string()});
}

// Powers of ten; between them 2 and 5 named on a short span, the others unnamed while there is room.
std::vector<Tick> decadeTicks(const Axis& axis, const Decades& decades, int wanted) {
  constexpr double kNamedBetween = 2.5;  // decades on which 2 and 5 have texts
  const double stride = std::max(1.0, std::ceil(roundStep(decades.span() / wanted)));
  const bool between = decades.span() <= 2.0 * wanted && stride == 1.0;
  const bool named = decades.span() <= kNamedBetween && wanted >= 4;
  std::vector<Tick> ticks;
  const double first = std::floor(decades.lower / stride) * stride;
  for (double power = first; power <= decades.upper + kEdgeTolerance; power += stride) {
    for (int mantissa = 1; mantissa <= (between ? 9 : 1); ++mantissa) {
      if (!decades.holds(power + std::log10(mantissa))) continue;
      const double value = power < 0.0 ? mantissa / std::pow(10.0, -power) : mantissa * std::pow(10.0, power);
      addTick(ticks, axis, value, mantissa == 1 || (named && (mantissa == 2 || mantissa == 5)));
    }
  }
  return ticks;
}

std::vector<Tick> logarithmTicks(const Axis& axis, int wanted) {
  const Decades decades{axis.lower / kLn10, axis.upper / kLn10};
  if (decades.span() >= 1.0) return decadeTicks(axis, decades, wanted);
  // Too short for powers of ten: round values, as on a linear axis.
  Axis values{axis.title, std::exp(axis.lower), std::exp(axis.upper), AxisScale::Linear, NumberForm::Short};
  if (!(values.lower > 0.0 && values.lower < values.upper && std::isfinite(values.upper))) return {};
  std::vector<Tick> ticks = axisTicks(values, wanted);
  for (Tick& tick : ticks) tick.at = std::clamp(std::log(tick.at), axis.lower, axis.upper);
  return ticks;
}

std::vector<Tick> nameTicks(const Axis& axis) {
  std::vector<Tick> ticks;
  for (std::size_t i = 0; i < axis.names.size(); ++i) {
    const double at = static_cast<double>(i) + 0.5;
    if (at >= axis.lower && at <= axis.upper) ticks.push_back({at, axis.names[i]});
  }
  return ticks;
}

}  // namespace

std::vector<Tick> axisTicks(const Axis& axis, int wanted) {
  wanted = std::clamp(wanted, 1, kMostTicks / 10);
  if (!std::isfinite(axis.lower) || !std::isfinite(axis.upper) || !(axis.lower < axis.upper)) return {};
  if (!axis.names.empty()) return nameTicks(axis);
  if (axis.scale == AxisScale::Logarithms) return logarithmTicks(axis, wanted);
  double step = 0.0;
  const std::vector<double> values = roundValues(axis.lower, axis.upper, wanted, step);
  std::vector<std::string> texts = linearTexts(values, step);
  std::vector<Tick> ticks(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) ticks[i] = {values[i], std::move(texts[i])};
  return ticks;
}

Axis axisOver(std::string title, const std::vector<double>& values, NumberForm form) {
  constexpr double kLargest = std::numeric_limits<double>::max();
  Axis axis{std::move(title), kLargest, -kLargest, AxisScale::Linear, form};
  for (const double value : values) {
    if (!std::isfinite(value)) continue;
    axis.lower = std::min(axis.lower, value);
    axis.upper = std::max(axis.upper, value);
  }
  if (axis.lower < axis.upper) return axis;
  if (axis.lower > axis.upper) {
    axis.lower = 0.0;
    axis.upper = 1.0;
    return axis;
  }
  const double value = axis.lower;
  const double room = value == 0.0 ? 1.0 : std::max(std::abs(value) * kRoom, std::numeric_limits<double>::min());
  axis.lower = std::max(value - room, -kLargest);
  axis.upper = std::min(value + room, kLargest);
  return axis;
}

std::string limitNumber(double value, double span) {
  constexpr int kDigits = 3;  // of the span
  constexpr int kMostDecimals = 9;
  const double size = std::max(std::abs(value), std::abs(span));
  if (value == 0.0) return "0";
  if (!(size >= kFixedFrom && size < kPlainTo) || !(span > 0.0)) return numberText(value, kDigits + 1);
  const int decimals = std::clamp(kDigits - 1 - static_cast<int>(std::floor(std::log10(span))), 0, kMostDecimals);
  std::string text = fixedText(value, decimals);
  if (text.find('.') != std::string::npos) text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text == "-0" ? "0" : text;
}

std::string formNumber(double value, NumberForm form) {
  if (value == 0.0) value = 0.0;  // without a sign
  if (form == NumberForm::Short || !inFixedRange(std::abs(value))) return numberText(value, kShortDigits);
  return fixedText(value, decimalsOf(form));
}

}  // namespace tarvex
