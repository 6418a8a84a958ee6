#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

// A table for people: a heading a column, then rows of texts. Columns of numbers stand to the right.
class Table {
 public:
  enum class Align { Left, Right };

  void addColumn(std::string heading, Align align = Align::Right) {
    headings_.push_back(std::move(heading));
    aligns_.push_back(align);
  }
  // Fewer cells than columns leave the rest empty.
  void addRow(std::vector<std::string> cells) {
    cells.resize(headings_.size());
    rows_.push_back(std::move(cells));
  }

  bool empty() const { return rows_.empty(); }
  const std::vector<std::string>& headings() const { return headings_; }
  const std::vector<std::vector<std::string>>& rows() const { return rows_; }  // each as wide as the headings
  Align align(std::size_t column) const { return aligns_[column]; }

 private:
  std::vector<std::string> headings_;
  std::vector<Align> aligns_;
  std::vector<std::vector<std::string>> rows_;
};

// A number for a table: six significant digits.
std::string cell(double value);
// "1 run", "2 runs".
std::string counted(std::int64_t count, const std::string& what);

}  // namespace tarvex
