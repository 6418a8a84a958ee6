#include "plots/labelPlacement.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <optional>
#include <unordered_map>
#include <utility>

namespace tarvex {

namespace {

constexpr double kGap = 2.0;       // between a mark and the text next to it
constexpr double kLineStep = 3.0;  // of the pieces by which a line keeps its place free
// Further places lie on rings around the mark, at distances in heights of the text.
constexpr int kRings = 8;
constexpr int kDirections = 16;
constexpr double kFirstRing = 1.2;
constexpr double kRingStep = 0.8;
constexpr double kUpright = 1e-6;        // the cosine of a direction straight up or down
constexpr std::size_t kMostTried = 200;  // more labels are placed in the first order only
constexpr double kCell = 32.0;           // of the grid in which neighbours are looked up

// Rectangles that are taken, found by where they lie.
class Obstacles {
 public:
  void add(const Rect& rect) {
    visit(rect, [&](std::int64_t cell) {
      cells_[cell].push_back(rect);
      return false;
    });
  }

  bool overlap(const Rect& rect) const {
    return visit(rect, [&](std::int64_t cell) {
      const auto found = cells_.find(cell);
      return found != cells_.end() && std::any_of(found->second.begin(), found->second.end(),
                                                  [&](const Rect& taken) { return taken.overlaps(rect); });
    });
  }

  // How many lie in the cells that `rect` touches; one in several cells counts more than once.
  std::size_t nearby(const Rect& rect) const {
    std::size_t count = 0;
    visit(rect, [&](std::int64_t cell) {
      const auto found = cells_.find(cell);
      if (found != cells_.end()) count += found->second.size();
      return false;
    });
    return count;
  }

 private:
  // Calls `look` with each cell until it returns true. Requires: places on the canvas, far below 2^31 cells.
  template <class Look>
  static bool visit(const Rect& rect, Look look) {
    const auto cellOf = [](double position) { return static_cast<std::int64_t>(std::floor(position / kCell)); };
    for (std::int64_t row = cellOf(rect.y); row <= cellOf(rect.bottom()); ++row) {
      for (std::int64_t column = cellOf(rect.x); column <= cellOf(rect.right()); ++column) {
        if (look(row * (std::int64_t{1} << 32) + column)) return true;
      }
    }
    return false;
  }

  std::unordered_map<std::int64_t, std::vector<Rect>> cells_;
};

Rect markOf(const LabelToPlace& label, double radius) {
  return {label.x - radius, label.y - radius, 2.0 * radius, 2.0 * radius};
}

// Right of the mark, left, above, below, then between these.
std::vector<Rect> besideMark(const LabelToPlace& label, double radius) {
  const double away = radius + kGap;
  const double right = label.x + away;
  const double left = label.x - away - label.width;
  const double above = label.y - away - label.height;
  const double below = label.y + away;
  const double centred = label.x - label.width / 2.0;
  const double level = label.y - label.height / 2.0;
  std::vector<Rect> boxes;
  for (const auto& [x, y] :
       {std::pair(right, level), std::pair(left, level), std::pair(centred, above), std::pair(centred, below),
        std::pair(label.x + radius / 2.0, above), std::pair(label.x + radius / 2.0, below),
        std::pair(label.x - radius / 2.0 - label.width, above),
        std::pair(label.x - radius / 2.0 - label.width, below)}) {
    boxes.push_back({x, y, label.width, label.height});
  }
  return boxes;
}

class Placement {
 public:
  Placement(const std::vector<LabelToPlace>& labels, double radius, const Rect& bounds)
      : labels_(labels), radius_(radius), bounds_(bounds) {
    for (const LabelToPlace& label : labels) marks_.add(markOf(label, radius));
  }

  // Places the labels in this order.
  std::vector<PlacedLabel> run(const std::vector<std::size_t>& order) {
    texts_ = lines_ = Obstacles();
    std::vector<PlacedLabel> result(labels_.size());
    for (const std::size_t i : order) {
      result[i] = place(labels_[i]);
      if (!result[i].placed) continue;
      texts_.add(result[i].box);
      if (result[i].led) addLine(labels_[i], result[i]);
    }
    return result;
  }

  // Marks around each label's own.
  std::vector<double> crowding() const {
    std::vector<double> neighbours;
    for (const LabelToPlace& label : labels_) {
      neighbours.push_back(static_cast<double>(marks_.nearby(markOf(label, radius_).grown(label.height * 2.0))));
    }
    return neighbours;
  }

 private:
  bool isFree(const Rect& box) const {
    return box.within(bounds_) && !marks_.overlap(box) && !texts_.overlap(box) && !lines_.overlap(box);
  }

  PlacedLabel place(const LabelToPlace& label) const {
    for (const Rect& box : besideMark(label, radius_)) {
      if (isFree(box)) return {true, box};
    }
    for (int ring = 0; ring < kRings; ++ring) {
      const double away = label.height * (kFirstRing + kRingStep * ring) + radius_;
      for (int direction = 0; direction < kDirections; ++direction) {
        const double angle = 2.0 * M_PI * direction / kDirections;
        // The box begins on the ring on its way to the right and ends there on its way to the left, so that those of a
        // cluster stand above each other; else it lies over the mark as far as it is on its way up or down.
        for (const double part : {std::cos(angle) > -kUpright ? 0.0 : 1.0, (1.0 - std::cos(angle)) / 2.0}) {
          const Rect box{label.x + away * std::cos(angle) - part * label.width,
                         label.y - away * std::sin(angle) - label.height / 2.0, label.width, label.height};
          const PlacedLabel led{true, box, true, std::clamp(label.x, box.x, box.right()),
                                std::clamp(label.y, box.y, box.bottom())};
          if (isFree(box) && lineIsFree(label, led)) return led;
        }
      }
    }
    return {};
  }

  // Pieces of the line from the mark's edge to the box.
  static std::vector<Rect> piecesOf(const LabelToPlace& label, double radius, const PlacedLabel& led) {
    const double dx = led.lineX - label.x;
    const double dy = led.lineY - label.y;
    const double length = std::hypot(dx, dy);
    std::vector<Rect> pieces;
    for (double at = radius; at < length; at += kLineStep) {
      pieces.push_back(Rect{label.x + dx * at / length, label.y + dy * at / length, 0.0, 0.0}.grown(kLineStep / 2.0));
    }
    return pieces;
  }

  // Marks next to the own one are no obstacle, nor their lines: each finds its way out of a cluster.
  bool lineIsFree(const LabelToPlace& label, const PlacedLabel& led) const {
    const Rect cluster = markOf(label, radius_).grown(2.0 * radius_);
    const std::vector<Rect> pieces = piecesOf(label, radius_, led);
    return std::none_of(pieces.begin(), pieces.end(), [&](const Rect& piece) {
      return texts_.overlap(piece) || (!piece.overlaps(cluster) && (lines_.overlap(piece) || marks_.overlap(piece)));
    });
  }

  void addLine(const LabelToPlace& label, const PlacedLabel& led) {
    for (const Rect& piece : piecesOf(label, radius_, led)) lines_.add(piece);
  }

  const std::vector<LabelToPlace>& labels_;
  double radius_;
  Rect bounds_;
  Obstacles marks_, texts_, lines_;
};

}  // namespace

std::vector<PlacedLabel> placeLabels(const std::vector<LabelToPlace>& labels, double radius, const Rect& bounds) {
  Placement placement(labels, radius, bounds);
  const auto keysOf = [&](auto key) {
    std::vector<double> keys;
    for (const LabelToPlace& label : labels) keys.push_back(key(label));
    return keys;
  };
  std::vector<PlacedLabel> best;
  std::size_t most = 0;
  // Which order serves a cluster depends on where it has room.
  for (const std::vector<double>& keys :
       {placement.crowding(), keysOf([](const LabelToPlace& label) { return -label.y; }),
        keysOf([](const LabelToPlace& label) { return label.y; }),
        keysOf([](const LabelToPlace& label) { return -label.x; }),
        keysOf([](const LabelToPlace& label) { return label.x; })}) {
    std::vector<std::size_t> order(labels.size());
    std::iota(order.begin(), order.end(), 0U);
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return keys[a] < keys[b]; });
    std::vector<PlacedLabel> placed = placement.run(order);
    const auto count = static_cast<std::size_t>(
        std::count_if(placed.begin(), placed.end(), [](const PlacedLabel& label) { return label.placed; }));
    if (best.empty() || count > most) {
      best = std::move(placed);
      most = count;
    }
    if (most == labels.size() || labels.size() > kMostTried) break;
  }
  return best;
}

}  // namespace tarvex
