#pragma once

#include <string>
#include <variant>
#include <vector>

#include "base/Progress.h"
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
// Over the table that follows, or under the figure before. Pages show it with its number, a terminal doesn't.
struct Caption {
  enum class Of { Table, Figure };
  Of of = Of::Table;
  std::string text;
  int number = 0;  // from 1, apart for tables and figures: add() gives it
};
struct Contents {};  // where its headings are; a terminal shows none

using Block = std::variant<Heading, Paragraph, Remark, Table, Figure, Caption, Contents>;

struct Document {
  std::string title;
  std::string author = {};  // empty: unknown
  std::string date = {};    // as it is written; empty: none
  std::vector<Block> blocks = {};

  void add(Block block);

 private:
  int tables_ = 0;
  int figures_ = 0;
};

// "Table 3. Moments of the sample"
std::string captionText(const Caption& caption);
// "A. Author, 22 November 2026": what stands under the title; empty where neither is known.
std::string byline(const Document& document);
// The headings that contents list: all, or where these are too many for a reader the ones of the first level.
bool isInContents(const Document& document, const Heading& heading);

// One page of HTML that needs no other file: pictures stand in it as SVG. Empty after a stop.
std::string htmlText(const Document& document, const Progress& progress = {});

// Pages of A4. Empty when it can't be made: no font, no memory, a stop.
std::string pdfContent(const Document& document, const Progress& progress = {});

}  // namespace tarvex
