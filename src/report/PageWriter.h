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

  // `context` is scaled to the units; each page is shown on it as soon as it is full.
  PageWriter(cairo_t* context, const std::string& title);

  void operator()(const Heading& heading);
  void operator()(const Paragraph& paragraph);
  void operator()(const Remark& remark);
  void operator()(const Table& table);
  void operator()(const Figure& figure);

  // Shows the last page.
  void finish();

 private:
  // The columns from `first` up to, not including, `last`, behind the first of all.
  struct TablePart {
    const Table& table;
    std::vector<std::size_t> columns;
    std::vector<double> widths;  // of all columns of the table
    TextStyle style;
  };

  // Goes to the next page unless so much of this one is left.
  void need(double height);
  void space(double height) { y_ += height; }
  void text(const std::string& text, const TextStyle& style, double gray);
  void setPart(const TablePart& part);
  void setRow(const TablePart& part, const std::vector<std::string>& cells, bool heading);
  void rule(double width);

  cairo_t* context_;
  TextPen pen_;
  double y_;
  int page_ = 1;
};

}  // namespace tarvex
