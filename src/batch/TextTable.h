#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace tarvex {

// An aligned table for people: a header line, then rows; columns of numbers stand to the right.
class TextTable {
 public:
  enum class Align { Left, Right };

  void addColumn(std::string heading, Align align = Align::Right);
  // Fewer cells than columns leave the rest empty.
  void addRow(std::vector<std::string> cells);
  bool empty() const { return rows_.empty(); }
  // Each line after `indent` blanks, without blanks at its end.
  void print(std::ostream& out, int indent = 2) const;

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
