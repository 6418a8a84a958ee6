#include "plots/ColourSet.h"

#include <algorithm>

namespace tarvex {

namespace {

// M. Okabe, K. Ito, Color Universal Design, 2008.
constexpr Colour kOrange = colourOfBytes(230, 159, 0);
constexpr Colour kSkyBlue = colourOfBytes(86, 180, 233);
constexpr Colour kBluishGreen = colourOfBytes(0, 158, 115);
constexpr Colour kYellow = colourOfBytes(240, 228, 66);
constexpr Colour kBlue = colourOfBytes(0, 114, 178);
constexpr Colour kVermilion = colourOfBytes(213, 94, 0);
constexpr Colour kReddishPurple = colourOfBytes(204, 121, 167);
constexpr std::array kCategories = {kBlue, kOrange, kBluishGreen, kReddishPurple, kSkyBlue, kVermilion, kYellow};

// J. Nunez, C. Anderton, R. Renslow, "Optimizing colormaps with consideration for color vision deficiency", PLoS ONE
// 13(7), 2018: even steps of the map "cividis", without its lightest part, which is lost on white.
constexpr std::array kOrdered = {colourOfBytes(0, 32, 77), colourOfBytes(57, 72, 107), colourOfBytes(112, 113, 115),
                                 colourOfBytes(166, 157, 117), colourOfBytes(228, 207, 91)};

Colour paler(const Colour& colour, double share) {
  const auto part = [&](std::uint16_t from) { return static_cast<std::uint16_t>(from + (65535.0 - from) * share); };
  return {part(colour.red), part(colour.green), part(colour.blue)};
}

}  // namespace

const RoleColours& roleColours(ColourSet set) {
  static const RoleColours kSystem = {
      {namedColour("Red"), namedColour("Blue"), namedColour("Green"), namedColour("Magenta"),
       namedColour("Midnight blue")},
      namedColour("Indian Red"),
      namedColour("Indian Red"),
      namedColour("Pale Green"),
      namedColour("Indian Red"),
      namedColour("gray"),
      {namedColour("Medium Slate Blue"), namedColour("Gold"), namedColour("Dark Green")},
      namedColour("Blue Violet")};
  static const RoleColours kDistinct = {kOrdered, kVermilion,          colourOfBytes(205, 205, 205),   kBlue,
                                        kOrange,  namedColour("gray"), {kBlue, kOrange, kBluishGreen}, kReddishPurple};
  return set == ColourSet::System ? kSystem : kDistinct;
}

Colour sliceColour(ColourSet set, SliceList list, std::size_t position) {
  if (set == ColourSet::System) return list == SliceList::Fast ? fastSliceColour(position) : sliceColour(position);
  constexpr double kPaler = 0.4;  // of the way to white, each time
  constexpr std::size_t kMostTimes = 4;
  Colour colour = kCategories[position % kCategories.size()];
  for (std::size_t time = 0; time < std::min(position / kCategories.size(), kMostTimes); ++time)
    colour = paler(colour, kPaler);
  return colour;
}

}  // namespace tarvex
