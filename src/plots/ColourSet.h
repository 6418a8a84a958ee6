#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "plots/Colour.h"

namespace tarvex {

// The colours of cobwebs, bars and pies.
enum class ColourSet {
  Distinct,  // keep their order, and can be told apart with every kind of colour vision
  System,    // the system's own lists; those of PostScript dumps
};

// By what they say.
struct RoleColours {
  std::array<Colour, 5> classes;      // of runs, upwards by where they begin on the first axis
  Colour mark;                        // of axis marks and filters
  Colour dropped;                     // of runs that a filter leaves out
  Colour significant, insignificant;  // of bars with a test
  Colour without;                     // of factors without a measure
  std::array<Colour, 3> measures;     // of bars without a test, by measure; apart from each other in gray, too
  Colour forecast;
};
const RoleColours& roleColours(ColourSet set);

enum class SliceList { Fast, Other };
// The share of the way to white.
Colour paler(const Colour& colour, double share);

// Of a factor by its number, the same in all charts of a study: Okabe and Ito's categories, then the same again, apart
// by lightness. Good on white and on dark pages.
Colour factorColour(std::size_t factor);

struct Inks;
// Of an ordered quantity from its least to its most, even in lightness: away from the page's own.
std::vector<Colour> densityColours(const Inks& inks);
// Of a correlation: white at 0, bluer downwards to -1, redder upwards to 1; gray for one that is no number.
Colour correlationColour(double correlation);
bool isDark(const Inks& inks);
// 0 for black, 1 for white, as the eye sees it.
double lightness(const Colour& colour);
// A lighter one, the more so the darker it is, for lines and texts that a dark page would hide.
Colour onDarkPage(const Colour& colour);

// Of a slice by its position. Of the system's lists black past the end; the others begin anew, paler each time.
Colour sliceColour(ColourSet set, SliceList list, std::size_t position);

}  // namespace tarvex
