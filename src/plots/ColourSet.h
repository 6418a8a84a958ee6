#pragma once

#include <array>
#include <cstddef>

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
// Of a slice by its position. Of the system's lists black past the end; the others begin anew, paler each time.
Colour sliceColour(ColourSet set, SliceList list, std::size_t position);

}  // namespace tarvex
