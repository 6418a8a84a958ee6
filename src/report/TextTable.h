#pragma once

#include <ostream>

#include "report/Table.h"

namespace tarvex {

struct Document;

// Aligned, each line after `indent` blanks and without blanks at its end.
void printTable(std::ostream& out, const Table& table, int indent = 2);

// The document without its pictures.
void printText(std::ostream& out, const Document& document);

// A table that prints itself.
class TextTable : public Table {
 public:
  void print(std::ostream& out) const { printTable(out, *this); }
};

}  // namespace tarvex
