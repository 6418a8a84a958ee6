#include <algorithm>
#include <cstddef>

#include "plots/Canvas.h"
#include "plots/ColourSet.h"
#include "plots/chartDrawing.h"

namespace tarvex {

void drawCells(Canvas& canvas, const PlaneLayout& layout, const Cells& cells) {
  constexpr double kInset = 3.0;       // of a text, on each side
  constexpr double kDarkBelow = 0.45;  // of full lightness, on which white is read better than black
  const TextStyle style = canvas.tickStyle();
  const double tall = canvas.pen().height(style);
  if (cells.columns == 0) return;
  const auto rows = static_cast<double>(cells.values.size() / cells.columns);
  for (std::size_t i = 0; i < std::min(cells.values.size(), cells.colours.size()); ++i) {
    const auto row = static_cast<double>(i / cells.columns);
    const auto column = static_cast<double>(i % cells.columns);
    const double left = layout.x.clamped(column);
    const double top = layout.y.clamped(rows - row);
    const Rect cell{left, top, layout.x.clamped(column + 1.0) - left, layout.y.clamped(rows - row - 1.0) - top};
    canvas.fill(cell, cells.colours[i]);
    if (i >= cells.texts.size() || cell.height < tall ||
        canvas.pen().width(cells.texts[i], style) + 2.0 * kInset > cell.width)
      continue;
    const bool dark = lightness(cells.colours[i]) < kDarkBelow;
    canvas.setColour(dark ? namedColour("White") : Inks().text);
    canvas.pen().draw(cells.texts[i], style, cell.centreX(), cell.centreY(), Anchor::Centre, cell.width);
  }
}

}  // namespace tarvex
