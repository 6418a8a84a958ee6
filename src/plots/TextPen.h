#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "plots/FigureFont.h"
#include "plots/Rect.h"

typedef struct _cairo cairo_t;
typedef struct _PangoLayout PangoLayout;

namespace tarvex {

struct TextStyle {
  double size = 11.0;  // of an em
  bool bold = false;
};

// Which point of a text's box stands at the given place.
enum class Anchor { Left, Centre, Right };

enum class Shorten { AtEnd, InMiddle };

// Measures and draws single lines of text in the current colour of the context. Extents are the same on every surface.
class TextPen {
 public:
  explicit TextPen(cairo_t* context, std::string family = FigureFont().family);

  double width(const std::string& text, const TextStyle& style);
  double widest(const std::vector<std::string>& texts, const TextStyle& style);
  double height(const TextStyle& style);
  // The lines that a text takes in a column of that width: broken between words, or inside one that is too long.
  std::vector<std::string> wrapped(const std::string& text, const TextStyle& style, double room);

  // The box is centred on `y`; a text wider than `room` is shortened by an ellipsis, or left out where not even that
  // has room. Returns the box.
  Rect draw(const std::string& text, const TextStyle& style, double x, double y, Anchor anchor, double room,
            Shorten shorten = Shorten::AtEnd);
  // The same upwards, along a vertical line: `anchor` counts from the lower end (Left) to the upper (Right).
  void drawUpward(const std::string& text, const TextStyle& style, double x, double y, Anchor anchor, double room,
                  Shorten shorten = Shorten::InMiddle);

 private:
  struct Unref {
    void operator()(PangoLayout* layout) const;
  };

  void set(const std::string& text, const TextStyle& style);
  // Sets the layout; the width that it takes, 0 for nothing.
  double fit(const std::string& text, const TextStyle& style, double room, Shorten shorten);

  std::string shownText(const TextStyle& style, double room, Shorten shorten);

  cairo_t* context_;
  std::string family_;
  std::unique_ptr<PangoLayout, Unref> layout_;
  std::map<std::pair<double, bool>, double> heights_;
};

}  // namespace tarvex
