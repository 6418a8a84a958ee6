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
constexpr double kRuleGap = 3.0;    // under the line below a table's headings
constexpr double kKeptText = 50.0;  // so much of a text or a table stands on the page of what is above it
constexpr double kKeptTable = 90.0;
constexpr double kWidestColumn = 0.42 * kTextWidth;  // of a table; longer cells break into lines
constexpr double kSecondLevel = 16.0;                // of what is second level in the contents

constexpr TextStyle kTitle = {21.0, true};
constexpr TextStyle kHeadings[] = {{16.0, true}, {13.0, true}};
constexpr TextStyle kBody = {12.0, false};
constexpr TextStyle kSmall = {10.0, false};
constexpr TextStyle kCaption = {10.0, true};
constexpr double kTableSize = 10.5;
constexpr double kLeastTableSize = 7.0;  // below it a wide table is parted instead

constexpr double kBlack = 0.12;
constexpr double kGray = 0.35;

// Lines keep the blanks that they are broken at; a line with them is wider than its room.
std::vector<std::string> withoutEnds(std::vector<std::string> lines) {
  for (std::string& line : lines) line.erase(line.find_last_not_of(' ') + 1);
  return lines;
}

void setGray(cairo_t* context, double gray) {
  cairo_set_source_rgb(context, gray, gray, gray);
}

}  // namespace

PageWriter::PageWriter(cairo_t* context, const Document& document, const std::vector<int>* pages)
    : context_(context), pen_(context), document_(document), pages_(pages), y_(kMargin) {
  text(document.title, kTitle, kBlack);
  if (const std::string under = byline(document); !under.empty()) text(under, kBody, kGray);
  space(kBlockGap);
}

void PageWriter::write(std::size_t block) {
  block_ = block;
  std::visit(*this, document_.blocks[block]);
}

// A figure that is a little too high for two to stand on a page is made smaller.
double PageWriter::figureScale(const Figure& figure) const {
  constexpr double kPageRoom = kBottom - kMargin - 4.0 * kBlockGap;  // its caption stands under it
  constexpr double kHalfRoom = kPageRoom / 2.0 - 2.0 * kBlockGap;
  constexpr double kLeastShrink = 0.75;
  const double scale = std::min({1.0, kTextWidth / figure.width, kPageRoom / figure.height});
  const double height = figure.height * scale;
  return height > kHalfRoom && kLeastShrink * height <= kHalfRoom ? kHalfRoom / figure.height : scale;
}

double PageWriter::kept(std::size_t block) {
  if (block >= document_.blocks.size()) return 0.0;
  if (const auto* const figure = std::get_if<Figure>(&document_.blocks[block]))
    return figure->height * figureScale(*figure) + kKeptText;
  if (const auto* const heading = std::get_if<Heading>(&document_.blocks[block]))
    return 2.0 * pen_.height(kHeadings[heading->level == 1 ? 0 : 1]) + kept(block + 1);
  if (std::holds_alternative<Table>(document_.blocks[block])) return kKeptTable;
  if (std::holds_alternative<Caption>(document_.blocks[block])) return pen_.height(kSmall) + kKeptTable;
  return kKeptText;
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
  for (const std::string& line : withoutEnds(pen_.wrapped(text, style, kTextWidth))) {
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
  need(2.0 * pen_.height(style) + kept(block_ + 1));
  headingPages_.push_back(page_);
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

void PageWriter::operator()(const Caption& caption) {
  if (caption.of == Caption::Of::Table) need(pen_.height(kCaption) + kept(block_ + 1));
  text(captionText(caption), kCaption, kGray);
  space(caption.of == Caption::Of::Table ? kBlockGap / 3.0 : kBlockGap);
}

void PageWriter::operator()(const Contents&) {
  const double height = pen_.height(kBody) * kLineSpacing;
  std::size_t number = 0;
  for (const Block& block : document_.blocks) {
    const auto* const heading = std::get_if<Heading>(&block);
    if (heading == nullptr) continue;
    const std::size_t place = number++;
    if (!isInContents(document_, *heading)) continue;
    need(height);
    setGray(context_, kBlack);
    const double left = kMargin + (heading->level == 1 ? 0.0 : kSecondLevel);
    const double middle = y_ + height / 2.0;
    pen_.draw(heading->text, kBody, left, middle, Anchor::Left, kMargin + kTextWidth - left - 4.0 * kSecondLevel);
    if (!isDraft() && place < pages_->size())
      pen_.draw(std::to_string((*pages_)[place]), kBody, kMargin + kTextWidth, middle, Anchor::Right,
                4.0 * kSecondLevel);
    y_ += height;
  }
  space(kBlockGap);
}

// The lines of each cell that the part shows.
PageWriter::RowLines PageWriter::rowLines(const TablePart& part, const std::vector<std::string>& cells,
                                          const TextStyle& style) {
  RowLines row;
  for (const std::size_t c : part.columns) {
    const bool fits = part.widths[c] < kWidestColumn || pen_.width(cells[c], style) <= part.widths[c];
    row.cells.push_back(fits ? std::vector<std::string>{cells[c]}
                             : withoutEnds(pen_.wrapped(cells[c], style, part.widths[c])));
    row.most = std::max(row.most, row.cells.back().size());
  }
  return row;
}

void PageWriter::setLines(const TablePart& part, const RowLines& row, std::size_t first, std::size_t last,
                          const TextStyle& style) {
  const double height = pen_.height(style) * kLineSpacing;
  y_ += height * static_cast<double>(last - first);
  if (isDraft()) return;
  const double top = y_ - height * static_cast<double>(last - first);
  double x = kMargin;
  setGray(context_, kBlack);
  for (std::size_t i = 0; i < row.cells.size(); ++i) {
    const double width = part.widths[part.columns[i]];
    const bool left = part.table.align(part.columns[i]) == Table::Align::Left;
    for (std::size_t line = first; line < std::min(last, row.cells[i].size()); ++line)
      pen_.draw(row.cells[i][line], style, left ? x : x + width,
                top + (static_cast<double>(line - first) + 0.5) * height, left ? Anchor::Left : Anchor::Right,
                width + kRuleGap);
    x += width + kColumnGap * style.size / kTableSize;
  }
}

void PageWriter::setHeadings(const TablePart& part) {
  const TextStyle style{part.style.size, true};
  const RowLines headings = rowLines(part, part.table.headings(), style);
  setLines(part, headings, 0, headings.most, style);
  double width = 0.0;
  for (const std::size_t c : part.columns) width += part.widths[c] + kColumnGap;
  rule(std::min(width, kTextWidth));
  space(kRuleGap);
}

// A row stands on one page, unless it is longer than that.
void PageWriter::setPart(const TablePart& part) {
  const double height = pen_.height(part.style) * kLineSpacing;
  const auto mostLines = static_cast<std::size_t>((kBottom - kMargin) / 2.0 / height);
  need(3.0 * height);
  setHeadings(part);
  for (const auto& cells : part.table.rows()) {
    const RowLines row = rowLines(part, cells, part.style);
    for (std::size_t first = 0; first < row.most; first += mostLines) {
      const std::size_t last = std::min(row.most, first + mostLines);
      const int page = page_;
      need(height * static_cast<double>(last - first));
      if (page_ != page) setHeadings(part);
      setLines(part, row, first, last, part.style);
    }
  }
  space(kBlockGap);
}

// Of the longest cell each, but no wider than lines are broken at.
std::vector<double> PageWriter::columnWidths(const Table& table, double size) {
  std::vector<double> widths;
  for (std::size_t c = 0; c < table.headings().size(); ++c) {
    double widest = pen_.width(table.headings()[c], {size, true});
    for (const auto& row : table.rows()) widest = std::max(widest, pen_.width(row[c], {size, false}));
    widths.push_back(std::min(widest, kWidestColumn));
  }
  return widths;
}

void PageWriter::operator()(const Table& table) {
  const std::size_t columns = table.headings().size();
  if (columns == 0) return;
  TablePart part{table, {}, columnWidths(table, kTableSize), {kTableSize, false}};
  double total = -kColumnGap;
  for (const double width : part.widths) total += width + kColumnGap;
  if (total > kTextWidth) {
    part.style.size = std::max(kLeastTableSize, kTableSize * kTextWidth / total);
    part.widths = columnWidths(table, part.style.size);
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
  const double scale = figureScale(figure);
  const bool hasCaption =
      block_ + 1 < document_.blocks.size() && std::holds_alternative<Caption>(document_.blocks[block_ + 1]);
  need(figure.height * scale + (hasCaption ? 2.0 * pen_.height(kCaption) : 0.0));
  if (!isDraft()) {
    cairo_save(context_);
    cairo_translate(context_, kMargin + (kTextWidth - figure.width * scale) / 2.0, y_);
    cairo_scale(context_, scale, scale);
    // Only a stop makes it fail, and nobody watches here.
    static_cast<void>(
        drawFigure(context_, figure, figure.width, figure.height, {Surface::VectorFile, kPrintPixelsPerUnit}));
    cairo_restore(context_);
  }
  y_ += figure.height * scale + (hasCaption ? kRuleGap : kBlockGap);
}

}  // namespace tarvex
