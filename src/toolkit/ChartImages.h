#pragma once

#include <QImage>
#include <QSize>
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "base/Progress.h"
#include "plots/Figure.h"
#include "plots/FigureIndex.h"
#include "plots/FigureLayout.h"
#include "plots/Inks.h"
#include "plots/drawFigure.h"

class QPainter;

namespace tarvex {

// A figure laid out on a page, and an image of each of its layers. What changes decides which images are drawn again.
// While draw() reports, everything may be changed: the drawing goes on with what it began with.
class ChartImages {
 public:
  explicit ChartImages(Figure figure);

  const Figure& figure() const { return scene_->figure; }
  const FigureLayout& layout() const { return scene_->layout; }

  // A page of that size in units, with `ratio` pixels a unit, on which these ranges are to be seen.
  void setPage(const QSize& size, double ratio, const std::vector<VisibleRange>& visible);
  // On a dark page the runs that are left out stand back in the colour of the grid; light ones have the figure's own.
  void setInks(const Inks& inks);
  // The numbers of runs or records that stand out.
  void setMarked(std::vector<std::int32_t> numbers);
  // Which runs of all charts are left out; a chart with another number of runs keeps all of its own.
  void setDropped(const std::vector<std::uint8_t>& dropped, bool showDropped);
  // The range that is marked on an axis of a cobweb; nothing takes the mark away.
  void setFilter(std::size_t chart, std::size_t axis, const std::optional<std::pair<double, double>>& filter);

  // The bounds of the region of a plane that has one, in the values of its axes: lower and upper across, lower and
  // upper up. Not-a-numbers take the frame away.
  void setRegion(std::size_t chart, const std::array<double, 4>& bounds);

  // Counts what was changed since the object was made.
  int changes() const { return changes_; }
  bool isReady() const;
  // Draws what isn't ready. False when it was stopped: images that were ready before are still there.
  [[nodiscard]] bool draw(const Progress& progress = {});
  // Paints what there is, as large as the page is now.
  void paint(QPainter& painter) const;

  // What stands at a place of the page; see FigureIndex.
  std::optional<Hit> hit(double x, double y, double reach);

 private:
  struct Scene {
    Figure figure;
    FigureLayout layout = {};
    FigureIndex index = {};
    bool indexed = false;
  };
  struct Layer {
    QImage image;
    bool ready = false;
  };

  // The scene, for a change that spoils these layers: a new one while the old one is being drawn.
  Scene& change(const std::vector<FigureLayer>& spoiled);
  QImage drawn(const Scene& scene, FigureLayer layer, const Progress& progress) const;

  std::shared_ptr<Scene> scene_;
  std::array<Layer, 5> layers_;
  QSize size_;
  double ratio_ = 1.0;
  std::vector<VisibleRange> visible_;
  Inks inks_;
  Colour droppedColour_;  // the figure's own
  std::vector<std::int32_t> marked_;
  int changes_ = 0;
};

}  // namespace tarvex
