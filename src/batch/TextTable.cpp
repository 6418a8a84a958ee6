#include "batch/TextTable.h"

#include <algorithm>

#include "base/NumberText.h"

namespace tarvex {

namespace {

// Characters that a terminal shows for a UTF-8 text: its bytes without continuation bytes.
std::size_t shownLength(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

}  // namespace

void TextTable::addColumn(std::string heading, Align align) {
  headings_.push_back(std::move(heading));
  aligns_.push_back(align);
}

void TextTable::addRow(std::vector<std::string> cells) {
  cells.resize(headings_.size());
  rows_.push_back(std::move(cells));
}

void TextTable::print(std::ostream& out, int indent) const {
  std::vector<std::size_t> widths;
  for (std::size_t c = 0; c < headings_.size(); ++c) {
    widths.push_back(shownLength(headings_[c]));
    for (const auto& row : rows_) widths[c] = std::max(widths[c], shownLength(row[c]));
  }
  const auto printRow = [&](const std::vector<std::string>& row) {
    std::string line(static_cast<std::size_t>(indent), ' ');
    for (std::size_t c = 0; c < row.size(); ++c) {
      const std::string padding(widths[c] - shownLength(row[c]), ' ');
      line += aligns_[c] == Align::Left ? row[c] + padding : padding + row[c];
      line += "  ";
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
  };
  printRow(headings_);
  for (const auto& row : rows_) printRow(row);
}

std::string cell(double value) {
  return numberText(value);
}

std::string counted(std::int64_t count, const std::string& what) {
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

}  // namespace tarvex
