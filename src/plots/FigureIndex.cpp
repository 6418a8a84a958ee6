#include "plots/FigureIndex.h"

#include <algorithm>
#include <utility>
#include <variant>

#include "plots/Figure.h"
#include "plots/nearestHits.h"

namespace tarvex {

namespace {

bool buildGrids(const XyChart& chart, const PlaneLayout& layout, std::vector<PointGrid>& grids,
                const Progress& progress) {
  const auto share = [&](std::size_t i) { return static_cast<double>(i) / static_cast<double>(chart.layers.size()); };
  grids.resize(chart.layers.size());
  for (std::size_t i = 0; i < chart.layers.size(); ++i) {
    const auto* points = std::get_if<Points>(&chart.layers[i]);
    const Progress part = progress.part(share(i), share(i + 1));
    if (points != nullptr && !grids[i].build(*points, layout.x, layout.y, layout.frame.plane, part)) return false;
  }
  return true;
}

// The layout of a chart, if it is of that kind.
template <class Layout>
const Layout* layoutOf(const FigureLayout& layout, std::size_t chart) {
  return chart < layout.charts.size() ? std::get_if<Layout>(&layout.charts[chart]) : nullptr;
}

}  // namespace

bool FigureIndex::build(const Figure& figure, const FigureLayout& layout, const Progress& progress) {
  std::vector<std::vector<PointGrid>> grids(figure.charts.size());
  for (std::size_t i = 0; i < figure.charts.size(); ++i) {
    const auto* chart = std::get_if<XyChart>(&figure.charts[i]);
    const auto* place = layoutOf<PlaneLayout>(layout, i);
    const Progress part = progress.part(static_cast<double>(i) / static_cast<double>(figure.charts.size()),
                                        static_cast<double>(i + 1) / static_cast<double>(figure.charts.size()));
    if (chart != nullptr && place != nullptr && !buildGrids(*chart, *place, grids[i], part)) return false;
  }
  grids_ = std::move(grids);
  figure_ = &figure;
  layout_ = &layout;
  return true;
}

std::optional<Hit> FigureIndex::hit(double x, double y, double reach) const {
  if (figure_ == nullptr) return std::nullopt;
  const Pointer pointer{x, y, reach};
  std::optional<Hit> best;
  for (std::size_t i = 0; i < std::min(figure_->charts.size(), layout_->charts.size()); ++i) {
    const Chart& chart = figure_->charts[i];
    std::optional<Hit> hit;
    if (const auto* plane = layoutOf<PlaneLayout>(*layout_, i))
      hit = nearestHit(std::get<XyChart>(chart), *plane, grids_[i], pointer);
    if (const auto* cobweb = layoutOf<CobwebLayout>(*layout_, i))
      hit = nearestHit(std::get<CobwebChart>(chart), *cobweb, pointer);
    if (const auto* bars = layoutOf<BarLayout>(*layout_, i))
      hit = nearestHit(std::get<BarChart>(chart), *bars, pointer);
    if (const auto* pie = layoutOf<PieLayout>(*layout_, i)) hit = nearestHit(std::get<PieChart>(chart), *pie, pointer);
    if (!hit || (best && best->distance <= hit->distance)) continue;
    best = hit;
    best->chart = i;
  }
  return best;
}

std::optional<AxisHit> axisAt(const FigureLayout& layout, double x, double y, double reach) {
  for (std::size_t i = 0; i < layout.charts.size(); ++i) {
    if (const auto* cobweb = layoutOf<CobwebLayout>(layout, i)) {
      if (const auto axis = cobweb->axisAt(x, y, reach)) return AxisHit{i, *axis, cobweb->axes[*axis].map.inverse(y)};
    }
    const auto* plane = layoutOf<PlaneLayout>(layout, i);
    if (plane == nullptr || !plane->area.holds(x, y)) continue;
    const Rect& inside = plane->frame.plane;
    if (y > inside.bottom() && x >= inside.x && x <= inside.right()) return AxisHit{i, 0, plane->x.inverse(x)};
    if (x < inside.x && y >= inside.y && y <= inside.bottom()) return AxisHit{i, 1, plane->y.inverse(y)};
  }
  return std::nullopt;
}

}  // namespace tarvex
