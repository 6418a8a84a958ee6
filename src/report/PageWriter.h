#pragma once

#include <string>
#include <vector>

#include "plots/TextPen.h"
#include "report/Document.h"

typedef struct _cairo cairo_t;

namespace tarvex {

// Sets the blocks of a document on pages of A4, one under the other. Units are those of figures: 96 to an inch.
class PageWriter {
 public:
  static constexpr double kPageWidth = 793.7;
  static constexpr double kPageHeight = 1122.5;

  // `context` is scaled to the units; each page is shown on it as soon as it is full. `pages` are those of the
  // headings, by their order, as an earlier pass over the same document found them; that one had none and drew no
  // figures.
  PageWriter(cairo_t* context, const Document& document, const std::vector<int>* pages);

  // Writes the block of that number: each in turn.
  void write(std::size_t block);
  // Shows the last page.
  void finish();
  // On which page each heading stands, as far as they are written.
  const std::vector<int>& headingPages() const { return headingPages_; }

  void operator()(const Heading& heading);
  void operator()(const Paragraph& paragraph);
  void operator()(const Remark& remark);
  void operator()(const Caption& caption);
  void operator()(const Contents& contents);
  void operator()(const Table& table);
  void operator()(const Figure& figure);

 private:
  // The columns of a table that stand side by side: the first of all, and some of the others.
  struct TablePart {
    const Table& table;
    std::vector<std::size_t> columns;
    std::vector<double> widths;  // of all columns of the table
    TextStyle style;
  };

  // The texts of a row's cells, line by line.
  struct RowLines {
    std::vector<std::vector<std::string>> cells = {};
    std::size_t most = 1;
  };

  bool isDraft() const { return pages_ == nullptr; }
  // Goes to the next page unless so much of this one is left.
  void need(double height);
  void space(double height) { y_ += height; }
  double figureScale(const Figure& figure) const;
  double kept(std::size_t block);  // the height that has to stand with what is above the block
  void text(const std::string& text, const TextStyle& style, double gray);
  std::vector<double> columnWidths(const Table& table, double size);
  void setPart(const TablePart& part);
  RowLines rowLines(const TablePart& part, const std::vector<std::string>& cells, const TextStyle& style);
  void setLines(const TablePart& part, const RowLines& row, std::size_t first, std::size_t last,
                const TextStyle& style);
  void setHeadings(const TablePart& part);
  void rule(double width);

  cairo_t* context_;
  TextPen pen_;
  const Document& document_;
  const std::vector<int>* pages_;
  std::vector<int> headingPages_;
  std::size_t block_ = 0;  // that is written now
  double y_;
  int page_ = 1;
};

}  // namespace tarvex
