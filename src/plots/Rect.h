#pragma once

namespace tarvex {

struct Rect {
  double x = 0.0, y = 0.0;  // the upper left corner
  double width = 0.0, height = 0.0;

  double right() const { return x + width; }
  double bottom() const { return y + height; }
  double centreX() const { return x + width / 2.0; }
  double centreY() const { return y + height / 2.0; }
  bool empty() const { return !(width > 0.0 && height > 0.0); }
  bool holds(double px, double py) const { return px >= x && px <= right() && py >= y && py <= bottom(); }
  bool within(const Rect& outer) const {
    return x >= outer.x && y >= outer.y && right() <= outer.right() && bottom() <= outer.bottom();
  }
  bool overlaps(const Rect& other) const {
    return x < other.right() && other.x < right() && y < other.bottom() && other.y < bottom();
  }
  // Larger by `margin` on each side.
  Rect grown(double margin) const { return {x - margin, y - margin, width + 2.0 * margin, height + 2.0 * margin}; }
};

}  // namespace tarvex
