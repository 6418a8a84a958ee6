#include "report/TextTable.h"

#include <algorithm>

#include "report/Document.h"

namespace tarvex {

namespace {

constexpr int kIndent = 2;

// Characters that a terminal shows for a UTF-8 text: its bytes without continuation bytes.
std::size_t shownLength(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

// A heading stands directly above what it heads, a remark directly under what it remarks on; else a line parts blocks.
struct BlockPrinter {
  std::ostream& out;
  bool first = true;
  bool close = true;  // nothing is to part the next block from what stands there

  void part() {
    if (!close) out << '\n';
    close = first = false;
  }
  void operator()(const Heading& heading) {
    close = first;
    part();
    out << heading.text << '\n';
    close = true;
  }
  void operator()(const Paragraph& paragraph) {
    part();
    out << paragraph.text << '\n';
  }
  void operator()(const Remark& remark) {
    close = first = false;
    out << std::string(kIndent, ' ') << remark.text << '\n';
  }
  void operator()(const Table& table) {
    part();
    printTable(out, table, kIndent);
  }
  void operator()(const Figure&) const {}
  void operator()(const Caption&) const {}
  void operator()(const Contents&) const {}
};

}  // namespace

void printTable(std::ostream& out, const Table& table, int indent) {
  const std::size_t columns = table.headings().size();
  std::vector<std::size_t> widths;
  for (std::size_t c = 0; c < columns; ++c) {
    widths.push_back(shownLength(table.headings()[c]));
    for (const auto& row : table.rows()) widths[c] = std::max(widths[c], shownLength(row[c]));
  }
  const auto printRow = [&](const std::vector<std::string>& row) {
    std::string line(static_cast<std::size_t>(indent), ' ');
    for (std::size_t c = 0; c < columns; ++c) {
      const std::string padding(widths[c] - shownLength(row[c]), ' ');
      line += table.align(c) == Table::Align::Left ? row[c] + padding : padding + row[c];
      line += "  ";
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
  };
  printRow(table.headings());
  for (const auto& row : table.rows()) printRow(row);
}

void printText(std::ostream& out, const Document& document) {
  BlockPrinter printer{out};
  for (const Block& block : document.blocks) std::visit(printer, block);
}

}  // namespace tarvex
