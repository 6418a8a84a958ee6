#include "factors/EvaluatorParser.h"

#include <algorithm>

namespace tarvex {

namespace {

bool isSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

}  // namespace

bool EvaluatorParser::isNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool EvaluatorParser::isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool EvaluatorParser::isNameCharacter(char c) {
  return isNameStart(c) || isDigit(c);
}

std::size_t EvaluatorParser::behindSpace(std::string_view text, std::size_t position) {
  while (position < text.size()) {
    if (isSpace(text[position])) {
      ++position;
    } else if (text.compare(position, 2, "/*") == 0) {
      position = text.find("*/", position + 2);
      if (position == std::string_view::npos) return position;
      position += 2;
    } else if (text.compare(position, 2, "//") == 0) {
      position = std::min(text.find('\n', position), text.size());
    } else {
      break;
    }
  }
  return position;
}

EvaluatorParser::BinaryOperator EvaluatorParser::binaryOperator() const {
  const char c = peek();
  const char next = peek(1);
  switch (c) {
    case '|':
      return next == '|' ? BinaryOperator{kOr, 2, Operation::kOr} : BinaryOperator{};
    case '&':
      return next == '&' ? BinaryOperator{kAnd, 2, Operation::kAnd} : BinaryOperator{};
    case '=':
      return next == '=' ? BinaryOperator{kEquality, 2, Operation::kEqual} : BinaryOperator{};
    case '!':
      return next == '=' ? BinaryOperator{kEquality, 2, Operation::kUnequal} : BinaryOperator{};
    case '<':
      return next == '=' ? BinaryOperator{kRelation, 2, Operation::kLessEqual}
                         : BinaryOperator{kRelation, 1, Operation::kLess};
    case '>':
      return next == '=' ? BinaryOperator{kRelation, 2, Operation::kGreaterEqual}
                         : BinaryOperator{kRelation, 1, Operation::kGreater};
    case '+':
      return {kSum, 1, Operation::kAdd};
    case '-':
      return {kSum, 1, Operation::kSubtract};
    case '*':
      return {kProduct, 1, Operation::kMultiply};
    case '/':
      return {kProduct, 1, Operation::kDivide};
    default:
      return {};
  }
}

bool EvaluatorParser::advance(std::size_t count) {
  const std::size_t next = behindSpace(text_, position_ + count);
  position_ = std::min(next, text_.size());
  return next != std::string_view::npos || unexpected();
}

bool EvaluatorParser::expect(char c) {
  return peek() == c ? advance(1) : unexpected();
}

bool EvaluatorParser::readName(std::string_view& name) {
  const std::size_t start = position_;
  while (isNameCharacter(peek())) ++position_;
  name = text_.substr(start, position_ - start);
  nameCharacters_ += name.size();
  if (nameCharacters_ > kMaxNameCharacters) return fail("Character Stack Overflow");
  return advance(0);
}

char EvaluatorParser::assignmentOperator() const {
  const char c = peek();
  const char next = peek(1);
  if (c == '=') return next == '=' ? '\0' : '=';
  return next == '=' && (c == '+' || c == '-' || c == '*' || c == '/') ? c : '\0';
}

bool EvaluatorParser::fail(std::string_view message) {
  constexpr int kTabWidth = 8;
  int line = 1;
  int column = 1;
  for (const char c : text_.substr(0, position_)) {
    if (c == '\n') {
      ++line;
      column = 1;
    } else {
      column = c == '\t' ? (column - 1) / kTabWidth * kTabWidth + kTabWidth + 1 : column + 1;
    }
  }
  error_ = {std::string(message), line, column};
  return false;
}

bool EvaluatorParser::unexpected() {
  const char c = peek();
  if (position_ == text_.size()) return fail("Unexpected end of text");
  if (isNameStart(c)) return fail("Unexpected name");
  if (isDigit(c)) return fail("Unexpected real");
  if (c >= ' ' && c <= '~' && c != '\\') return fail(std::string("Unexpected '") + c + '\'');
  return fail("Unexepected input");
}

}  // namespace tarvex
