#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/Progress.h"
#include "plots/FigureLayout.h"
#include "plots/PointGrid.h"

namespace tarvex {

struct Figure;

// What was found at a place of a figure.
struct Hit {
  enum class Kind { Run, Record, Point, Bin, Bar, Slice };

  Kind kind = Kind::Run;
  std::size_t chart = 0;
  std::size_t part = 0;     // of a plane the layer, of a cobweb the axis on the left, of bars the series
  std::int32_t number = 0;  // of the run; of the record, also of bars and slices; of the point of a curve; of the bin
  double x = 0.0, y = 0.0;  // where on the page it is the nearest
  double distance = 0.0;    // from there
};

// An axis that ranges can be drawn on.
struct AxisHit {
  std::size_t chart = 0;
  std::size_t axis = 0;  // as VisibleRange counts them
  double value = 0.0;    // at the place
};

// Finds what stands where in a figure: built once for a layout, asked at each movement of a mouse. Places and distances
// are in units of the page.
// Requires: a figure and its layout that stay where they are as long as the index is asked; marks of dropped runs may
// change meanwhile.
class FigureIndex {
 public:
  // False when it was stopped; the index is then as it was. A million points take some 50 ms.
  [[nodiscard]] bool build(const Figure& figure, const FigureLayout& layout, const Progress& progress = {});

  // The nearest run, record, point of a curve, column, bar or slice no further away than `reach`. Points and lines go
  // before columns, runs that are kept before dropped ones, and what lies in front before what it hides.
  std::optional<Hit> hit(double x, double y, double reach) const;

 private:
  const Figure* figure_ = nullptr;
  const FigureLayout* layout_ = nullptr;
  std::vector<std::vector<PointGrid>> grids_;  // of each chart and layer
};

// The axis of a cobweb no further away than `reach`, or else the axis of a plane along which a place outside of the
// plane lies.
std::optional<AxisHit> axisAt(const FigureLayout& layout, double x, double y, double reach);

}  // namespace tarvex
