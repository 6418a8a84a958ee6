#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarvex {

// The calculator language of relations, model equations and output expressions. It evaluates while it parses, in one
// pass; all that outlives a call is the table of named values.
class Evaluator {
 public:
  struct Symbol {
    std::string name;
    double value;
  };
  static constexpr std::size_t kMaxSymbols = 499;

  // Parses and computes the whole text, which ends at a NUL if it holds one. False on failure: what was assigned before
  // it stays in the table and evalErrorText says why. Requires: no other use of the table between the binding of values
  // and this call.
  [[nodiscard]] bool evaluate(std::string_view text);
  void clearSymbols() { symbolTable_.clear(); }

  // Sorted by name in byte order.
  const std::vector<Symbol>& symbolTable() const { return symbolTable_; }
  // The value of a name; null when the table doesn't hold it.
  const double* find(std::string_view name) const;
  // Binds a value before a text is evaluated, as an assignment in front of it would. False when the table is full.
  [[nodiscard]] bool bind(std::string_view name, double value);

  // Of the last call; empty and 0 after a success. Lines and columns count from 1, tabs stand at every eighth column.
  const std::string& evalErrorText() const { return evalErrorText_; }
  int evalErrorLine() const { return evalErrorLine_; }
  int evalErrorColumn() const { return evalErrorColumn_; }

 private:
  class Machine;

  // The value of `name`, inserted as 0.0 when it is new; null when the table is full. Valid until the next insertion.
  double* lookup(std::string_view name);

  std::vector<Symbol> symbolTable_;
  std::string evalErrorText_;
  int evalErrorLine_ = 0;
  int evalErrorColumn_ = 0;
};

}  // namespace tarvex
