#include "report/PageWriter.h"

#include <cairo.h>

#include <algorithm>

#include "plots/drawFigure.h"

namespace tarvex {

namespace {

constexpr double kMargin = 68.0;
constexpr double kTextWidth = PageWriter::kPageWidth - 2.0 * kMargin;
constexpr double kBottom = PageWriter::kPageHeight - kMargin;
constexpr double kPrintPixelsPerUnit = 300.0 / 96.0;
constexpr double kLineSpacing = 1.25;
constexpr double kBlockGap = 10.0;
constexpr double kColumnGap = 14.0;
constexpr double kRuleGap = 3.0;           // under the line below a table's headings
constexpr double kKeptWithHeading = 90.0;  // so much of what it heads stands on a heading's page

constexpr TextStyle kTitle = {21.0, true};
constexpr TextStyle kHeadings[] = {{16.0, true}, {13.0, true}};
constexpr TextStyle kBody = {12.0, false};
constexpr TextStyle kSmall = {10.0, false};
constexpr double kTableSize = 10.5;
constexpr double kLeastTableSize = 7.0;  // below it a wide table is parted instead

constexpr double kBlack = 0.12;
constexpr double kGray = 0.35;

void setGray(cairo_t* context, double gray) {
  cairo_set_source_rgb(context, gray, gray, gray);
}

}  // namespace

PageWriter::PageWriter(cairo_t* context, const std::string& title) : context_(context), pen_(context), y_(kMargin) {
  text(title, kTitle, kBlack);
  space(kBlockGap);
}

void PageWriter::need(double height) {
  if (y_ + height <= kBottom || y_ <= kMargin) return;
  finish();
  ++page_;
  y_ = kMargin;
}

void PageWriter::finish() {
  setGray(context_, kGray);
  pen_.draw(std::to_string(page_), kSmall, kPageWidth / 2.0, kPageHeight - kMargin / 2.0, Anchor::Centre, kTextWidth);
  cairo_show_page(context_);
}

void PageWriter::text(const std::string& text, const TextStyle& style, double gray) {
  const double height = pen_.height(style) * kLineSpacing;
  for (const std::string& line : pen_.wrapped(text, style, kTextWidth)) {
    need(height);
    setGray(context_, gray);
    pen_.draw(line, style, kMargin, y_ + height / 2.0, Anchor::Left, kTextWidth);
    y_ += height;
  }
}

void PageWriter::rule(double width) {
  setGray(context_, kGray);
  cairo_set_line_width(context_, 0.7);
  cairo_move_to(context_, kMargin, y_);
  cairo_line_to(context_, kMargin + width, y_);
  cairo_stroke(context_);
}

void PageWriter::operator()(const Heading& heading) {
  const TextStyle& style = kHeadings[heading.level == 1 ? 0 : 1];
  space(heading.level == 1 ? 2.0 * kBlockGap : kBlockGap);
  need(pen_.height(style) + kKeptWithHeading);
  text(heading.text, style, kBlack);
  if (heading.level == 1) rule(kTextWidth);
  space(kBlockGap / 2.0);
}

void PageWriter::operator()(const Paragraph& paragraph) {
  text(paragraph.text, kBody, kBlack);
  space(kBlockGap);
}

void PageWriter::operator()(const Remark& remark) {
  text(remark.text, kSmall, kGray);
  space(kBlockGap / 2.0);
}

void PageWriter::setRow(const TablePart& part, const std::vector<std::string>& cells, bool heading) {
  const TextStyle style{part.style.size, heading};
  const double height = pen_.height(style) * kLineSpacing;
  double x = kMargin;
  setGray(context_, kBlack);
  for (const std::size_t c : part.columns) {
    const double width = std::min(part.widths[c], kTextWidth);
    const bool left = part.table.align(c) == Table::Align::Left;
    pen_.draw(cells[c], style, left ? x : x + width, y_ + height / 2.0, left ? Anchor::Left : Anchor::Right, width);
    x += width + kColumnGap * style.size / kTableSize;
  }
  y_ += height;
  if (!heading) return;
  rule(std::min(x - kMargin, kTextWidth));
  space(kRuleGap);
}

void PageWriter::setPart(const TablePart& part) {
  const double height = pen_.height(part.style) * kLineSpacing;
  need(3.0 * height);
  setRow(part, part.table.headings(), true);
  for (const auto& cells : part.table.rows()) {
    const int page = page_;
    need(height);
    if (page_ != page) setRow(part, part.table.headings(), true);
    setRow(part, cells, false);
  }
  space(kBlockGap);
}

void PageWriter::operator()(const Table& table) {
  const std::size_t columns = table.headings().size();
  if (columns == 0) return;
  const auto measure = [&](double size) {
    std::vector<double> widths;
    for (std::size_t c = 0; c < columns; ++c) {
      double widest = pen_.width(table.headings()[c], {size, true});
      for (const auto& row : table.rows()) widest = std::max(widest, pen_.width(row[c], {size, false}));
      widths.push_back(widest);
    }
    return widths;
  };
  TablePart part{table, {}, measure(kTableSize), {kTableSize, false}};
  double total = -kColumnGap;
  for (const double width : part.widths) total += width + kColumnGap;
  if (total > kTextWidth) {
    part.style.size = std::max(kLeastTableSize, kTableSize * kTextWidth / total);
    part.widths = measure(part.style.size);
  }
  // As many columns at a time as the page is wide, each part behind the column of names.
  const double gap = kColumnGap * part.style.size / kTableSize;
  double x = part.widths[0] + gap;
  part.columns = {0};
  for (std::size_t c = 1; c < columns; ++c) {
    if (x + part.widths[c] > kTextWidth + 0.5 && part.columns.size() > 1) {
      setPart(part);
      part.columns = {0};
      x = part.widths[0] + gap;
    }
    part.columns.push_back(c);
    x += part.widths[c] + gap;
  }
  setPart(part);
}

void PageWriter::operator()(const Figure& figure) {
  constexpr double kPageRoom = kBottom - kMargin;
  const double scale = std::min({1.0, kTextWidth / figure.width, kPageRoom / figure.height});
  need(figure.height * scale);
  cairo_save(context_);
  cairo_translate(context_, kMargin + (kTextWidth - figure.width * scale) / 2.0, y_);
  cairo_scale(context_, scale, scale);
  // Only a stop makes it fail, and nobody watches here.
  static_cast<void>(
      drawFigure(context_, figure, figure.width, figure.height, {Surface::VectorFile, kPrintPixelsPerUnit}));
  cairo_restore(context_);
  y_ += figure.height * scale + kBlockGap;
}

}  // namespace tarvex
