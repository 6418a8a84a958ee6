#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "plots/Canvas.h"
#include "plots/ColourSet.h"
#include "plots/DiscCounts.h"
#include "plots/PixelLayer.h"
#include "plots/chartDrawing.h"

namespace tarvex {

namespace {

constexpr std::size_t kPointsAtOnce = 20000;  // between two reports: milliseconds where a disc has many pixels
constexpr double kCountingShare = 0.6;        // of the time until points are painted, roughly

// More points than this let each other through. Alone they must still be seen.
constexpr std::size_t kMostOpaquePoints = 20000;
constexpr double kCrowdedOpacity = 0.6;

// More points than this are painted as pixels.
std::size_t mostSinglePoints(Surface surface) {
  return surface == Surface::Screen ? 3000 : kMostOpaquePoints;
}

bool countPoints(Canvas& canvas, const PlaneLayout& layout, const Points& points, std::size_t shown, bool dropped,
                 const Progress& progress) {
  const double radius = pointRadius(shown, canvas.scale());
  PixelLayer layer(canvas, layout.frame.plane.grown(radius + 1.0), progress);
  DiscCounts discs(layer.width(), layer.height(), radius * layer.perUnit());
  // In pixels, without a division for each. Limits that are too far apart for it are the maps' own affair.
  const auto pixels = [&](const AxisMap& map, double from, double to) {
    const double share = (to - from) / (map.upper() - map.lower());
    return std::pair(share, from - map.lower() * share);
  };
  const auto [shareX, startX] = pixels(layout.x, layer.pixelX(layout.x.from()), layer.pixelX(layout.x.to()));
  const auto [shareY, startY] = pixels(layout.y, layer.pixelY(layout.y.from()), layer.pixelY(layout.y.to()));
  const bool straight =
      std::isnormal(shareX) && std::isnormal(shareY) && std::isfinite(startX) && std::isfinite(startY);
  const std::size_t size = std::min(points.x.size(), points.y.size());
  const bool allKept = points.runs.dropped.empty();
  const Progress counting = progress.part(0.0, kCountingShare);
  for (std::size_t i = 0; i < size; ++i) {
    if (i % kPointsAtOnce == 0 && !counting.report(i, size)) return false;
    const double x = points.shownX(i);
    const double y = points.shownY(i);
    if ((allKept ? dropped : points.runs.isDropped(i) != dropped) || !layout.x.holds(x) || !layout.y.holds(y)) continue;
    if (straight)
      discs.add(startX + x * shareX, startY + y * shareY);
    else
      discs.add(layer.pixelX(layout.x(x)), layer.pixelY(layout.y(y)));
  }
  const Progress covering = progress.part(kCountingShare, 1.0);
  if (points.shaded && !dropped) {
    return layer.cover(discs, densityColours(canvas.inks()), covering) && layer.paint(progress.part(1.0, 1.0));
  }
  const double opacity = shown > kMostOpaquePoints ? kCrowdedOpacity : 1.0;
  if (!layer.cover(discs, dropped ? points.runs.droppedColour : points.colour, opacity, covering)) return false;
  return layer.paint(progress.part(1.0, 1.0));
}

}  // namespace

bool drawPoints(Canvas& canvas, const PlaneLayout& layout, const Points& points, std::size_t shown, bool dropped,
                const Progress& progress) {
  if (dropped && !points.runs.showDropped) return true;
  if (points.shaded || shown > mostSinglePoints(canvas.surface()))
    return countPoints(canvas, layout, points, shown, dropped, progress);
  const double radius = pointRadius(shown, canvas.scale());
  canvas.setColour(dropped ? points.runs.droppedColour : points.colour);
  for (std::size_t i = 0; i < std::min(points.x.size(), points.y.size()); ++i) {
    const double x = points.shownX(i);
    const double y = points.shownY(i);
    if (points.runs.isDropped(i) != dropped || !layout.x.holds(x) || !layout.y.holds(y)) continue;
    cairo_arc(canvas.context(), layout.x(x), layout.y(y), radius, 0.0, 2.0 * M_PI);
    cairo_fill(canvas.context());
  }
  return progress.report(1.0);
}

}  // namespace tarvex
