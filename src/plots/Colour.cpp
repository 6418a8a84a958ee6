#include "plots/Colour.h"

#include <algorithm>
#include <array>

namespace tarvex {

namespace {

struct NamedColour {
  std::string_view name;
  Colour colour;
};

// clang-format off
constexpr std::array kNamedColours = {
    NamedColour{"White",             colourOfBytes(255, 255, 255)},
    NamedColour{"Red",               colourOfBytes(255,   0,   0)},
    NamedColour{"Blue",              colourOfBytes(  0,   0, 255)},
    NamedColour{"Green",             colourOfBytes(  0, 255,   0)},
    NamedColour{"Magenta",           colourOfBytes(255,   0, 255)},
    NamedColour{"Midnight blue",     colourOfBytes( 25,  25, 112)},
    NamedColour{"Indian Red",        colourOfBytes(205,  92,  92)},
    NamedColour{"Pale Green",        colourOfBytes(152, 251, 152)},
    NamedColour{"Blue Violet",       colourOfBytes(138,  43, 226)},
    NamedColour{"Medium Slate Blue", colourOfBytes(123, 104, 238)},
    NamedColour{"Dark Green",        colourOfBytes(  0, 100,   0)},
    NamedColour{"Dark Turquoise",    colourOfBytes(  0, 206, 209)},
    NamedColour{"Gold",              colourOfBytes(255, 215,   0)},
    NamedColour{"Lime Green",        colourOfBytes( 50, 205,  50)},
    NamedColour{"Medium Orchid",     colourOfBytes(186,  85, 211)},
    NamedColour{"Pink",              colourOfBytes(255, 192, 203)},
    NamedColour{"Sienna",            colourOfBytes(160,  82,  45)},
    NamedColour{"gray",              colourOfBytes(190, 190, 190)},
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
