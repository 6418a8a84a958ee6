#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "factors/EvaluatorOperations.h"

namespace tarvex {

// Why a text can't be evaluated, and where: lines and columns count from 1, tabs stand at every eighth column.
struct EvaluatorError {
  std::string text;
  int line = 0;
  int column = 0;
};

// What a pass over a text of the calculator language reads: its position, the tokens, the first error.
class EvaluatorParser {
 public:
  // The text ends at a NUL if it holds one.
  explicit EvaluatorParser(std::string_view text) : text_(text.substr(0, text.find('\0'))) {}

  // The text behind the white space and comments at `position`; npos when a comment isn't closed.
  static std::size_t behindSpace(std::string_view text, std::size_t position);
  static bool isNameStart(char c);
  static bool isNameCharacter(char c);
  static bool isDigit(char c);

  static constexpr std::size_t kMaxNameCharacters = 1000;  // of all names being read at once

  const EvaluatorError& error() const { return error_; }

 protected:
  // Binary operators by how tightly they bind; all of them associate to the left.
  enum Level { kOr, kAnd, kEquality, kRelation, kSum, kProduct };
  struct BinaryOperator {
    int level = -1;  // below every level: no operator
    std::size_t length = 0;
    Operation operation = Operation::kOr;
  };

  char peek(std::size_t ahead = 0) const { return position_ + ahead < text_.size() ? text_[position_ + ahead] : '\0'; }
  bool advance(std::size_t count);  // over a token and the white space behind it
  bool expect(char c);
  bool readName(std::string_view& name);
  char assignmentOperator() const;
  BinaryOperator binaryOperator() const;

  bool fail(std::string_view message);
  bool unexpected();  // syntax error at the current character

  std::string_view text_;  // holds no NUL
  std::size_t position_ = 0;
  std::size_t nameCharacters_ = 0;

 private:
  EvaluatorError error_;
};

}  // namespace tarvex
