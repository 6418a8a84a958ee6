#include "plots/Colour.h"

#include <algorithm>
#include <array>

namespace tarvex {

namespace {

constexpr Colour ofBytes(int red, int green, int blue) {
  constexpr int kSpread = 257;  // 255 becomes 65535
  return {static_cast<std::uint16_t>(red * kSpread), static_cast<std::uint16_t>(green * kSpread),
          static_cast<std::uint16_t>(blue * kSpread)};
}

struct NamedColour {
  std::string_view name;
  Colour colour;
};

// clang-format off
constexpr std::array kNamedColours = {
    NamedColour{"White",             ofBytes(255, 255, 255)},
    NamedColour{"Red",               ofBytes(255,   0,   0)},
    NamedColour{"Blue",              ofBytes(  0,   0, 255)},
    NamedColour{"Green",             ofBytes(  0, 255,   0)},
    NamedColour{"Magenta",           ofBytes(255,   0, 255)},
    NamedColour{"Midnight blue",     ofBytes( 25,  25, 112)},
    NamedColour{"Indian Red",        ofBytes(205,  92,  92)},
    NamedColour{"Pale Green",        ofBytes(152, 251, 152)},
    NamedColour{"Blue Violet",       ofBytes(138,  43, 226)},
    NamedColour{"Medium Slate Blue", ofBytes(123, 104, 238)},
    NamedColour{"Dark Green",        ofBytes(  0, 100,   0)},
    NamedColour{"Dark Turquoise",    ofBytes(  0, 206, 209)},
    NamedColour{"Gold",              ofBytes(255, 215,   0)},
    NamedColour{"Lime Green",        ofBytes( 50, 205,  50)},
    NamedColour{"Medium Orchid",     ofBytes(186,  85, 211)},
    NamedColour{"Pink",              ofBytes(255, 192, 203)},
    NamedColour{"Sienna",            ofBytes(160,  82,  45)},
    NamedColour{"gray",              ofBytes(190, 190, 190)},
};

constexpr std::array kFastSlices = {
    Colour{65535, 26985, 15677},
    Colour{35466, 11051, 58082},
    Colour{65535, 52171, 26471},
    Colour{    0, 64250, 39578},
    Colour{65535, 31611, 51914},
    Colour{17990, 33410, 46260},
    Colour{45232, 12336, 24672},
    Colour{19789, 47545, 65535},
    Colour{33153, 45489, 20817},
    Colour{44975, 46517, 65535},
    Colour{52171, 52171, 52171},
};
// clang-format on

}  // namespace

Colour namedColour(std::string_view name) {
  const auto* found = std::find_if(kNamedColours.begin(), kNamedColours.end(),
                                   [&](const NamedColour& known) { return known.name == name; });
  return found == kNamedColours.end() ? Colour{} : found->colour;
}

Colour fastSliceColour(std::size_t position) {
  return position < kFastSlices.size() ? kFastSlices[position] : Colour{};
}

Colour sliceColour(std::size_t position) {
  static const std::array kSlices = {
      namedColour("Medium Slate Blue"), Colour{57825, 14906, 15934}, namedColour("Dark Green"),
      namedColour("Dark Turquoise"),    namedColour("Gold"),         namedColour("Lime Green"),
      namedColour("Medium Orchid"),     namedColour("Pink"),         namedColour("Sienna"),
      namedColour("Pale Green"),        Colour{52171, 52171, 52171},
  };
  return position < kSlices.size() ? kSlices[position] : Colour{};
}

}  // namespace tarvex
