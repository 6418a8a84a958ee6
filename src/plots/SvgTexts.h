#pragma once

#include <string>
#include <vector>

typedef struct _cairo cairo_t;
typedef struct _cairo_surface cairo_surface_t;

namespace tarvex {

struct TextStyle;

// The texts of a drawing in SVG, which cairo would write as outlines: kept as they are drawn, and written as texts, so
// that they can be searched, read aloud and edited.
class SvgTexts {
 public:
  // From now on texts on the surface are kept here. The object outlives the surface's drawing.
  void listen(cairo_surface_t* surface);
  // Who listens to the surface of a context; null for any other.
  static SvgTexts* of(cairo_t* context);

  // A text in the current colour, whose baseline begins at (x, y) and which takes `width`.
  void add(cairo_t* context, const std::string& text, const TextStyle& style, const std::string& family, double x,
           double y, double width);
  // Puts them into the picture, over all else.
  void writeInto(std::string& svg) const;

 private:
  std::vector<std::string> elements_;
};

}  // namespace tarvex
