#include "factors/EvaluatorParser.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <utility>

#include "factors/Evaluator.h"
#include "factors/NumberLiteral.h"

namespace tarvex {

namespace {

struct Function {
  std::string_view name;
  double (*one)(double);
  double (*two)(double, double);
};

// clang-format off
constexpr Function kFunctions[] = {
    {"acos",  std::acos,  nullptr},
    {"asin",  std::asin,  nullptr},
    {"atan",  std::atan,  nullptr},
    {"atan2", nullptr,    std::atan2},
    {"cos",   std::cos,   nullptr},
    {"cosh",  std::cosh,  nullptr},
    {"exp",   std::exp,   nullptr},
    {"fabs",  std::fabs,  nullptr},
    {"fmod",  nullptr,    std::fmod},
    {"log",   std::log,   nullptr},
    {"log10", std::log10, nullptr},
    {"sin",   std::sin,   nullptr},
    {"sinh",  std::sinh,  nullptr},
    {"sqrt",  std::sqrt,  nullptr},
    {"tan",   std::tan,   nullptr},
    {"tanh",  std::tanh,  nullptr},
};
// clang-format on

// Binary operators by how tightly they bind; all of them associate to the left.
enum Level { kOr, kAnd, kEquality, kRelation, kSum, kProduct };
enum class Operation {
  kOr,
  kAnd,
  kEqual,
  kUnequal,
  kLess,
  kLessEqual,
  kGreater,
  kGreaterEqual,
  kAdd,
  kSubtract,
  kMultiply,
  kDivide
};

struct BinaryOperator {
  int level = -1;  // below every level: no operator
  std::size_t length = 0;
  Operation operation = Operation::kOr;
};

BinaryOperator binaryOperator(char c, char next) {
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

double combine(Operation operation, double a, double b) {
  switch (operation) {
    case Operation::kOr:
      return a != 0.0 || b != 0.0;
    case Operation::kAnd:
      return a != 0.0 && b != 0.0;
    case Operation::kEqual:
      return a == b;
    case Operation::kUnequal:
      return a != b;
    case Operation::kLess:
      return a < b;
    case Operation::kLessEqual:
      return a <= b;
    case Operation::kGreater:
      return a > b;
    case Operation::kGreaterEqual:
      return a >= b;
    case Operation::kAdd:
      return a + b;
    case Operation::kSubtract:
      return a - b;
    case Operation::kMultiply:
      return a * b;
    case Operation::kDivide:
      return a / b;
  }
  return 0.0;
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

}  // namespace

bool EvaluatorParser::isNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
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

bool EvaluatorParser::parse() {
  if (!advance(0)) return false;
  if (position_ == text_.size()) return fail("Missing expressions");
  double value = 0.0;
  while (expression(value)) {
    if (position_ == text_.size()) return true;
    if (!expect(';')) return false;
  }
  return false;
}

bool EvaluatorParser::expression(double& value) {
  if (!isNameStart(peek())) return conditional(value);
  std::string_view name;
  if (!readName(name)) return false;
  const char operation = assignmentOperator();
  if (operation == '\0') {
    pendingName_ = name;
    return conditional(value);
  }
  double right = 0.0;
  if (!advance(operation == '=' ? 1 : 2) || !nested(&EvaluatorParser::expression, right)) return false;
  nameCharacters_ -= name.size();
  // Only now, when the right side has been computed, does the name enter the table.
  double* symbol = evaluator_.lookup(name);
  if (!symbol) return fail("Symbol Table Full");
  switch (operation) {
    case '+':
      *symbol += right;
      break;
    case '-':
      *symbol -= right;
      break;
    case '*':
      *symbol *= right;
      break;
    case '/':
      *symbol /= right;  // Kept: unlike "/", no test of the divisor.
      break;
    default:
      *symbol = right;
  }
  value = *symbol;
  return true;
}

bool EvaluatorParser::conditional(double& value) {
  if (!binary(kOr, value)) return false;
  if (peek() != '?') return true;
  double yes = 0.0;
  double no = 0.0;
  if (!advance(1) || !nested(&EvaluatorParser::expression, yes)) return false;
  if (!expect(':') || !nested(&EvaluatorParser::conditional, no)) return false;
  value = value != 0.0 ? yes : no;
  return true;
}

bool EvaluatorParser::binary(int minLevel, double& value) {
  if (!factor(value)) return false;
  while (true) {
    const BinaryOperator found = binaryOperator(peek(), peek(1));
    if (found.level < minLevel) return true;
    double right = 0.0;
    if (!advance(found.length) || !binary(found.level + 1, right)) return false;
    if (found.operation == Operation::kDivide && right == 0.0) return fail("Divide by Zero");
    value = combine(found.operation, value, right);
  }
}

bool EvaluatorParser::factor(double& value) {
  if (!primary(value)) return false;
  if (peek() != '*' || peek(1) != '*') return true;
  double exponent = 0.0;
  if (!advance(2) || !nested(&EvaluatorParser::factor, exponent)) return false;
  value = std::pow(value, exponent);
  return true;
}

bool EvaluatorParser::primary(double& value) {
  if (!pendingName_.empty()) return nameOrCall(std::exchange(pendingName_, {}), value);
  const char c = peek();
  if (isNameStart(c)) {
    std::string_view name;
    return readName(name) && nameOrCall(name, value);
  }
  if (isDigit(c) || c == '.') {
    return readNumberLiteral(text_, position_, value) ? advance(0) : fail("Missing integer");
  }
  switch (c) {
    case '(':
      return advance(1) && nested(&EvaluatorParser::expression, value) && expect(')');
    case '+':
      return advance(1) && nested(&EvaluatorParser::primary, value);
    case '-':
      // Kept: a sign binds tighter than "**", so -2 ** 2 is 4.
      if (!advance(1) || !nested(&EvaluatorParser::primary, value)) return false;
      value = -value;
      return true;
    case '!':
      if (!advance(1) || !nested(&EvaluatorParser::primary, value)) return false;
      value = value == 0.0;
      return true;
    default:
      return position_ == text_.size() ? fail("Missing expression") : unexpected();
  }
}

bool EvaluatorParser::nameOrCall(std::string_view name, double& value) {
  if (peek() == '(') {
    if (!call(name, value)) return false;
    nameCharacters_ -= name.size();
    return true;
  }
  nameCharacters_ -= name.size();
  const double* symbol = evaluator_.lookup(name);
  if (!symbol) return fail("Symbol Table Full");
  value = *symbol;
  return true;
}

bool EvaluatorParser::call(std::string_view name, double& value) {
  const std::size_t before = argumentCount_;
  if (!advance(1) || !nested(&EvaluatorParser::arguments, value) || !expect(')')) return false;
  const std::size_t count = argumentCount_ - before;
  argumentCount_ = before;
  return apply(name, count, value);
}

bool EvaluatorParser::arguments(double& last) {
  if (peek() == ')') return true;
  while (expression(last)) {
    if (argumentCount_ == kMaxArguments) return fail("Argument Stack Full");
    arguments_[argumentCount_++] = last;
    if (peek() != ',') return true;
    if (!advance(1)) return false;
  }
  return false;
}

bool EvaluatorParser::apply(std::string_view name, std::size_t count, double& value) {
  const Function* function = std::find_if(std::begin(kFunctions), std::end(kFunctions),
                                          [name](const Function& entry) { return entry.name == name; });
  if (function == std::end(kFunctions)) return fail("Unknown Function");
  if (count != (function->one ? 1u : 2u)) return fail("Wrong Number of Arguments");
  const double* arguments = arguments_.data() + argumentCount_;
  value = function->one ? function->one(arguments[0]) : function->two(arguments[0], arguments[1]);
  return true;
}

bool EvaluatorParser::nested(bool (EvaluatorParser::*rule)(double&), double& value) {
  if (nesting_ == kMaxNesting) {
    fail("Parser stack overflow");
    std::fprintf(stderr, "\nParser stack overflow, line %d, column %d\n", evaluator_.evalErrorLine_,
                 evaluator_.evalErrorColumn_);
    return false;
  }
  ++nesting_;
  if (!(this->*rule)(value)) return false;
  --nesting_;
  return true;
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
  evaluator_.evalErrorText_ = message;
  evaluator_.evalErrorLine_ = line;
  evaluator_.evalErrorColumn_ = column;
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
