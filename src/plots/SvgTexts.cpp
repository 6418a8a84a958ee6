#include "plots/SvgTexts.h"

#include <cairo.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "plots/TextPen.h"

namespace tarvex {

namespace {

const cairo_user_data_key_t kListener = {};

// Short, and the same in every locale.
std::string number(double value) {
  constexpr double kThousand = 1000.0;
  constexpr double kFarOut = 1e12;  // of any page
  const auto thousandths = std::isfinite(value) ? std::llround(std::clamp(value, -kFarOut, kFarOut) * kThousand) : 0LL;
  std::string text = (thousandths < 0 ? "-" : "") + std::to_string(std::llabs(thousandths) / 1000);
  const long long part = std::llabs(thousandths) % 1000;
  if (part == 0) return text;
  std::string digits = std::to_string(part + 1000).substr(1);
  digits.erase(digits.find_last_not_of('0') + 1);
  return text + '.' + digits;
}

std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '&')
      result += "&amp;";
    else if (c == '<')
      result += "&lt;";
    else if (c == '>')
      result += "&gt;";
    else if (static_cast<unsigned char>(c) >= ' ')  // XML has no place for the others
      result += c;
  }
  return result;
}

std::string colourOf(cairo_t* context) {
  double red = 0.0;
  double green = 0.0;
  double blue = 0.0;
  double alpha = 0.0;
  if (cairo_pattern_get_rgba(cairo_get_source(context), &red, &green, &blue, &alpha) != CAIRO_STATUS_SUCCESS)
    return "black";
  constexpr double kMostOfByte = 255.0;
  constexpr std::size_t kRoom = 8;
  std::array<char, kRoom> text{};
  std::snprintf(text.data(), text.size(), "#%02x%02x%02x", static_cast<unsigned>(std::lround(red * kMostOfByte)) & 255U,
                static_cast<unsigned>(std::lround(green * kMostOfByte)) & 255U,
                static_cast<unsigned>(std::lround(blue * kMostOfByte)) & 255U);
  return text.data();
}

}  // namespace

void SvgTexts::listen(cairo_surface_t* surface) {
  // Without memory texts are outlines as before.
  static_cast<void>(cairo_surface_set_user_data(surface, &kListener, this, nullptr));
}

SvgTexts* SvgTexts::of(cairo_t* context) {
  return static_cast<SvgTexts*>(cairo_surface_get_user_data(cairo_get_target(context), &kListener));
}

// The width is written down, so that a viewer without the family keeps what fits in its place.
void SvgTexts::add(cairo_t* context, const std::string& text, const TextStyle& style, const std::string& family,
                   double x, double y, double width) {
  cairo_matrix_t matrix;
  cairo_get_matrix(context, &matrix);
  std::string element = "<text transform=\"matrix(";
  for (const double part : {matrix.xx, matrix.yx, matrix.xy, matrix.yy, matrix.x0}) element += number(part) + ' ';
  element += number(matrix.y0) + ")\" x=\"" + number(x) + "\" y=\"" + number(y) + "\" font-family=\"" +
             escaped(family) + ", sans-serif\" font-size=\"" + number(style.size) + '"';
  if (style.bold) element += " font-weight=\"bold\"";
  element += " textLength=\"" + number(width) + "\" lengthAdjust=\"spacingAndGlyphs\" fill=\"" + colourOf(context) +
             "\" xml:space=\"preserve\">" + escaped(text) + "</text>\n";
  elements_.push_back(std::move(element));
}

void SvgTexts::writeInto(std::string& svg) const {
  const std::size_t end = svg.rfind("</svg>");
  if (end == std::string::npos) return;
  std::string all;
  for (const std::string& element : elements_) all += element;
  svg.insert(end, all);
}

}  // namespace tarvex
