#include "plots/TextPen.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <utility>

#include "plots/SvgTexts.h"

namespace tarvex {

namespace {

// No picture shows more of a text, and laying out a long one takes its time.
constexpr std::size_t kLongestText = 1000;

double units(int pango) {
  return static_cast<double>(pango) / PANGO_SCALE;
}

}  // namespace

void TextPen::Unref::operator()(PangoLayout* layout) const {
  g_object_unref(layout);
}

TextPen::TextPen(cairo_t* context, std::string family)
    : context_(context), family_(std::move(family)), layout_(pango_cairo_create_layout(context)) {
  PangoContext* pango = pango_layout_get_context(layout_.get());
  // Without hints and rounding the extents don't depend on the surface.
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  pango_cairo_context_set_font_options(pango, options);
  cairo_font_options_destroy(options);
  pango_cairo_context_set_resolution(pango, 96.0);
  pango_context_set_round_glyph_positions(pango, FALSE);
  pango_layout_context_changed(layout_.get());
  pango_layout_set_single_paragraph_mode(layout_.get(), TRUE);
}

void TextPen::set(const std::string& text, const TextStyle& style) {
  PangoFontDescription* font = pango_font_description_new();
  pango_font_description_set_family(font, family_.c_str());
  pango_font_description_set_weight(font, style.bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
  pango_font_description_set_absolute_size(font, style.size * PANGO_SCALE);
  pango_layout_set_font_description(layout_.get(), font);
  pango_font_description_free(font);
  gchar* valid = g_utf8_make_valid(text.data(), static_cast<gssize>(std::min(text.size(), kLongestText)));
  pango_layout_set_width(layout_.get(), -1);
  pango_layout_set_ellipsize(layout_.get(), PANGO_ELLIPSIZE_NONE);
  pango_layout_set_text(layout_.get(), valid, -1);
  g_free(valid);
}

double TextPen::width(const std::string& text, const TextStyle& style) {
  if (text.empty()) return 0.0;
  set(text, style);
  PangoRectangle logical;
  pango_layout_get_extents(layout_.get(), nullptr, &logical);
  return units(logical.width);
}

double TextPen::widest(const std::vector<std::string>& texts, const TextStyle& style) {
  double result = 0.0;
  for (const std::string& text : texts) result = std::max(result, width(text, style));
  return result;
}

double TextPen::height(const TextStyle& style) {
  double& known = heights_[{style.size, style.bold}];
  if (known == 0.0) {
    set("Ag", style);
    PangoRectangle logical;
    pango_layout_get_extents(layout_.get(), nullptr, &logical);
    known = units(logical.height);
  }
  return known;
}

std::vector<std::string> TextPen::wrapped(const std::string& text, const TextStyle& style, double room) {
  std::vector<std::string> lines;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    set(text.substr(start, end - start), style);
    pango_layout_set_width(layout_.get(), static_cast<int>(room * PANGO_SCALE));
    pango_layout_set_wrap(layout_.get(), PANGO_WRAP_WORD_CHAR);
    const char* const laidOut = pango_layout_get_text(layout_.get());
    for (GSList* line = pango_layout_get_lines_readonly(layout_.get()); line != nullptr; line = line->next) {
      const auto* part = static_cast<const PangoLayoutLine*>(line->data);
      lines.emplace_back(laidOut + part->start_index, static_cast<std::size_t>(part->length));
    }
    start = end + 1;
  }
  return lines;
}

double TextPen::fit(const std::string& text, const TextStyle& style, double room, Shorten shorten) {
  constexpr double kSlack = 0.01;  // of rounding, when the room is what the text was measured to take
  if (text.empty() || !(room > style.size / 2.0)) return 0.0;
  const double full = width(text, style);
  if (full <= room + kSlack) return full;
  pango_layout_set_ellipsize(layout_.get(), shorten == Shorten::AtEnd ? PANGO_ELLIPSIZE_END : PANGO_ELLIPSIZE_MIDDLE);
  pango_layout_set_width(layout_.get(), static_cast<int>(room * PANGO_SCALE));
  PangoRectangle logical;
  pango_layout_get_extents(layout_.get(), nullptr, &logical);
  return units(logical.width) <= room + kSlack ? units(logical.width) : 0.0;
}

// What of a text is seen where it has no room for all: pango keeps that to itself.
std::string TextPen::shownText(const TextStyle& style, double room, Shorten shorten) {
  std::string shown = pango_layout_get_text(layout_.get());  // valid UTF-8, and not too long
  if (pango_layout_is_ellipsized(layout_.get()) == 0) return shown;
  constexpr const char* kEllipsis = "\u2026";
  const long letters = g_utf8_strlen(shown.c_str(), -1);
  const std::string whole = shown;
  const auto bytes = [&](long count) {
    return static_cast<std::size_t>(g_utf8_offset_to_pointer(whole.c_str(), count) - whole.c_str());
  };
  for (long left = letters - 1; left > 0; --left) {
    const long head = shorten == Shorten::AtEnd ? left : (left + 1) / 2;
    shown = whole.substr(0, bytes(head)) + kEllipsis + whole.substr(bytes(letters - (left - head)));
    if (width(shown, style) <= room) break;
  }
  return shown;
}

Rect TextPen::draw(const std::string& text, const TextStyle& style, double x, double y, Anchor anchor, double room,
                   Shorten shorten) {
  const double tall = height(style);
  const double taken = fit(text, style, room, shorten);
  if (taken == 0.0) return {x, y, 0.0, 0.0};
  const double left = anchor == Anchor::Left ? x : anchor == Anchor::Right ? x - taken : x - taken / 2.0;
  if (SvgTexts* const texts = SvgTexts::of(context_)) {
    const double baseline = y - tall / 2.0 + units(pango_layout_get_baseline(layout_.get()));
    texts->add(context_, shownText(style, room, shorten), style, family_, left, baseline, taken);
    return {left, y - tall / 2.0, taken, tall};
  }
  cairo_move_to(context_, left, y - tall / 2.0);
  pango_cairo_show_layout(context_, layout_.get());
  cairo_new_path(context_);
  return {left, y - tall / 2.0, taken, tall};
}

void TextPen::drawUpward(const std::string& text, const TextStyle& style, double x, double y, Anchor anchor,
                         double room, Shorten shorten) {
  constexpr double kQuarterTurn = 1.57079632679489661923;
  cairo_save(context_);
  cairo_translate(context_, x, y);
  cairo_rotate(context_, -kQuarterTurn);
  draw(text, style, 0.0, 0.0, anchor, room, shorten);
  cairo_restore(context_);
}

}  // namespace tarvex
