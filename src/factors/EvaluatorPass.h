#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

#include "factors/EvaluatorParser.h"
#include "factors/NumberLiteral.h"

namespace tarvex {

// One pass over one text, by recursive descent. The lookahead is the next character behind white space; an operation is
// carried out, by the machine, once its right side is known not to go on. Every step returns false once the pass has
// failed.
//
// The machine computes with its own Value: number(), read() and assign() of names, which are false when there is no
// room for another name, combine(), which is false for a division that fails, power(), negate(), invert(), choose(),
// call().
template <class Machine>
class EvaluatorPass : public EvaluatorParser {
 public:
  using Value = typename Machine::Value;

  EvaluatorPass(Machine& machine, std::string_view text) : EvaluatorParser(text), machine_(machine) {}
  [[nodiscard]] bool parse();

  static constexpr std::string_view kStackOverflow = "Parser stack overflow";

 private:
  static constexpr int kMaxNesting = 37;
  static constexpr std::size_t kMaxArguments = 200;  // pending in all open calls

  bool expression(Value& value);
  bool conditional(Value& value);
  bool binary(int minLevel, Value& value);
  bool factor(Value& value);
  bool primary(Value& value);
  bool nameOrCall(std::string_view name, Value& value);
  bool call(std::string_view name, Value& value);
  bool arguments(Value& last);  // onto arguments_; `last` is scratch
  bool apply(std::string_view name, std::size_t count, Value& value);
  bool nested(bool (EvaluatorPass::*rule)(Value&), Value& value);  // `rule` one level deeper

  Machine& machine_;
  std::string_view pendingName_;  // read by expression() and found to be no assignment's: the next primary
  int nesting_ = 0;
  std::size_t argumentCount_ = 0;
  std::array<Value, kMaxArguments> arguments_;
};

template <class Machine>
bool EvaluatorPass<Machine>::parse() {
  if (!advance(0)) return false;
  if (position_ == text_.size()) return fail("Missing expressions");
  Value value{};
  while (expression(value)) {
    if (position_ == text_.size()) return true;
    if (!expect(';')) return false;
  }
  return false;
}

template <class Machine>
bool EvaluatorPass<Machine>::expression(Value& value) {
  if (!isNameStart(peek())) return conditional(value);
  std::string_view name;
  if (!readName(name)) return false;
  const char operation = assignmentOperator();
  if (operation == '\0') {
    pendingName_ = name;
    return conditional(value);
  }
  Value right{};
  if (!advance(operation == '=' ? 1 : 2) || !nested(&EvaluatorPass::expression, right)) return false;
  nameCharacters_ -= name.size();
  // Only now, when the right side has been computed, does the name enter the table.
  return machine_.assign(operation, name, right, value) || fail("Symbol Table Full");
}

template <class Machine>
bool EvaluatorPass<Machine>::conditional(Value& value) {
  if (!binary(kOr, value)) return false;
  if (peek() != '?') return true;
  Value yes{};
  Value no{};
  if (!advance(1) || !nested(&EvaluatorPass::expression, yes)) return false;
  if (!expect(':') || !nested(&EvaluatorPass::conditional, no)) return false;
  value = machine_.choose(value, yes, no);
  return true;
}

template <class Machine>
bool EvaluatorPass<Machine>::binary(int minLevel, Value& value) {
  if (!factor(value)) return false;
  while (true) {
    const BinaryOperator found = binaryOperator();
    if (found.level < minLevel) return true;
    Value right{};
    if (!advance(found.length) || !binary(found.level + 1, right)) return false;
    if (!machine_.combine(found.operation, right, value)) return fail("Divide by Zero");
  }
}

template <class Machine>
bool EvaluatorPass<Machine>::factor(Value& value) {
  if (!primary(value)) return false;
  if (peek() != '*' || peek(1) != '*') return true;
  Value exponent{};
  if (!advance(2) || !nested(&EvaluatorPass::factor, exponent)) return false;
  value = machine_.power(value, exponent);
  return true;
}

template <class Machine>
bool EvaluatorPass<Machine>::primary(Value& value) {
  if (!pendingName_.empty()) return nameOrCall(std::exchange(pendingName_, {}), value);
  const char c = peek();
  if (isNameStart(c)) {
    std::string_view name;
    return readName(name) && nameOrCall(name, value);
  }
  if (isDigit(c) || c == '.') {
    double number = 0.0;
    if (!readNumberLiteral(text_, position_, number)) return fail("Missing integer");
    value = machine_.number(number);
    return advance(0);
  }
  switch (c) {
    case '(':
      return advance(1) && nested(&EvaluatorPass::expression, value) && expect(')');
    case '+':
      return advance(1) && nested(&EvaluatorPass::primary, value);
    case '-':
      // Kept: a sign binds tighter than "**", so -2 ** 2 is 4.
      if (!advance(1) || !nested(&EvaluatorPass::primary, value)) return false;
      value = machine_.negate(value);
      return true;
    case '!':
      if (!advance(1) || !nested(&EvaluatorPass::primary, value)) return false;
      value = machine_.invert(value);
      return true;
    default:
      return position_ == text_.size() ? fail("Missing expression") : unexpected();
  }
}

template <class Machine>
bool EvaluatorPass<Machine>::nameOrCall(std::string_view name, Value& value) {
  if (peek() == '(') {
    if (!call(name, value)) return false;
    nameCharacters_ -= name.size();
    return true;
  }
  nameCharacters_ -= name.size();
  return machine_.read(name, value) || fail("Symbol Table Full");
}

template <class Machine>
bool EvaluatorPass<Machine>::call(std::string_view name, Value& value) {
  const std::size_t before = argumentCount_;
  if (!advance(1) || !nested(&EvaluatorPass::arguments, value) || !expect(')')) return false;
  const std::size_t count = argumentCount_ - before;
  argumentCount_ = before;
  return apply(name, count, value);
}

template <class Machine>
bool EvaluatorPass<Machine>::arguments(Value& last) {
  if (peek() == ')') return true;
  while (expression(last)) {
    if (argumentCount_ == kMaxArguments) return fail("Argument Stack Full");
    arguments_[argumentCount_++] = last;
    if (peek() != ',') return true;
    if (!advance(1)) return false;
  }
  return false;
}

template <class Machine>
bool EvaluatorPass<Machine>::apply(std::string_view name, std::size_t count, Value& value) {
  const Function* function = functionOf(name);
  if (function == nullptr) return fail("Unknown Function");
  if (count != (function->one ? 1u : 2u)) return fail("Wrong Number of Arguments");
  value = machine_.call(*function, arguments_.data() + argumentCount_);
  return true;
}

template <class Machine>
bool EvaluatorPass<Machine>::nested(bool (EvaluatorPass::*rule)(Value&), Value& value) {
  if (nesting_ == kMaxNesting) return fail(kStackOverflow);
  ++nesting_;
  if (!(this->*rule)(value)) return false;
  --nesting_;
  return true;
}

}  // namespace tarvex
