#include "plots/ColourSet.h"

#include <algorithm>
#include <cmath>

#include "plots/Inks.h"

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
constexpr Colour kLightestOrdered = colourOfBytes(254, 232, 56);

Colour between(const Colour& from, const Colour& to, double share) {
  const auto part = [&](std::uint16_t a, std::uint16_t b) {
    return static_cast<std::uint16_t>(std::lround(a + (static_cast<double>(b) - a) * share));
  };
  return {part(from.red, to.red), part(from.green, to.green), part(from.blue, to.blue)};
}

// A place on the map of ordered quantities, 0 the darkest.
Colour orderedColour(double place) {
  constexpr auto kLast = static_cast<double>(kOrdered.size());  // the lightest part stands behind
  const double at = std::clamp(place, 0.0, 1.0) * kLast;
  const auto lower = std::min(static_cast<std::size_t>(at), kOrdered.size() - 1);
  const Colour& upper = lower + 1 < kOrdered.size() ? kOrdered[lower + 1] : kLightestOrdered;
  return between(kOrdered[lower], upper, at - static_cast<double>(lower));
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

Colour paler(const Colour& colour, double share) {
  return between(colour, {65535, 65535, 65535}, share);
}

Colour factorColour(std::size_t factor) {
  constexpr double kStep = 0.35;  // of the way to white or black, each time
  const Colour& colour = kCategories[factor % kCategories.size()];
  switch (factor / kCategories.size() % 3) {
    case 1:
      return paler(colour, kStep);
    case 2:
      return between(colour, {}, kStep);
    default:
      return colour;
  }
}

std::vector<Colour> densityColours(const Inks& inks) {
  constexpr std::size_t kColours = 64;
  // What the page would hide is left out.
  constexpr double kLightestOnWhite = 0.85;
  constexpr double kDarkestOnDark = 0.25;
  const bool dark = isDark(inks);
  std::vector<Colour> colours;
  for (std::size_t i = 0; i < kColours; ++i) {
    const double share = static_cast<double>(i) / (kColours - 1);
    colours.push_back(
        orderedColour(dark ? kDarkestOnDark + share * (1.0 - kDarkestOnDark) : kLightestOnWhite * (1.0 - share)));
  }
  return colours;
}

Colour correlationColour(double correlation) {
  if (!std::isfinite(correlation)) return namedColour("gray");
  return between({65535, 65535, 65535}, correlation < 0.0 ? kBlue : kVermilion, std::min(std::abs(correlation), 1.0));
}

bool isDark(const Inks& inks) {
  return inks.page.green < inks.text.green;
}

// Weights of the sRGB primaries; the square root stands for the eye.
double lightness(const Colour& colour) {
  const auto light = [](std::uint16_t part) { return std::pow(part / 65535.0, 2.2); };
  return std::sqrt(0.2126 * light(colour.red) + 0.7152 * light(colour.green) + 0.0722 * light(colour.blue));
}

Colour onDarkPage(const Colour& colour) {
  constexpr double kShare = 0.4;  // of the way to white that black goes; the order of lightness stays
  return paler(colour, kShare * (1.0 - lightness(colour)));
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
