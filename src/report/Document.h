#pragma once

#include <string>
#include <variant>
#include <vector>

#include "plots/Figure.h"
#include "report/Table.h"

namespace tarvex {

// A text with tables and pictures, before it is known where it will be read: at a terminal, on a page of HTML, on
// paper.

struct Heading {
  std::string text;
  int level = 1;  // 1 or 2
};
struct Paragraph {
  std::string text;  // may have several lines
};
struct Remark {  // small, under what stands before it
  std::string text;
};

using Block = std::variant<Heading, Paragraph, Remark, Table, Figure>;

struct Document {
  std::string title;
  std::vector<Block> blocks;

  void add(Block block) { blocks.push_back(std::move(block)); }
};

// One page of HTML that needs no other file: pictures stand in it as SVG.
std::string htmlText(const Document& document);

// Pages of A4. Empty when it can't be made: no font, no memory.
std::string pdfContent(const Document& document);

}  // namespace tarvex
