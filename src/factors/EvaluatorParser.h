#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace tarvex {

class Evaluator;

// One pass of the evaluator over one text, by recursive descent. The lookahead is the next character behind white
// space; an operation is carried out once its right side is known not to go on. Every step returns false once the pass
// has failed, with the reason in the evaluator.
class EvaluatorParser {
 public:
  EvaluatorParser(Evaluator& evaluator, std::string_view text) : evaluator_(evaluator), text_(text) {}
  bool parse();

  // The text behind the white space and comments at `position`; npos when a comment isn't closed.
  static std::size_t behindSpace(std::string_view text, std::size_t position);
  static bool isNameStart(char c);
  static bool isNameCharacter(char c);

  static constexpr std::size_t kMaxNameCharacters = 1000;  // of all names being read at once

 private:
  static constexpr int kMaxNesting = 37;
  static constexpr std::size_t kMaxArguments = 200;  // pending in all open calls

  bool expression(double& value);
  bool conditional(double& value);
  bool binary(int minLevel, double& value);
  bool factor(double& value);
  bool primary(double& value);
  bool nameOrCall(std::string_view name, double& value);
  bool call(std::string_view name, double& value);
  bool arguments(double& last);  // onto arguments_; `last` is scratch
  bool apply(std::string_view name, std::size_t count, double& value);
  bool nested(bool (EvaluatorParser::*rule)(double&), double& value);  // `rule` one level deeper

  char peek(std::size_t ahead = 0) const { return position_ + ahead < text_.size() ? text_[position_ + ahead] : '\0'; }
  bool advance(std::size_t count);  // over a token and the white space behind it
  bool expect(char c);
  bool readName(std::string_view& name);
  char assignmentOperator() const;

  bool fail(std::string_view message);
  bool unexpected();  // syntax error at the current character

  Evaluator& evaluator_;
  std::string_view text_;  // holds no NUL
  std::size_t position_ = 0;
  std::string_view pendingName_;  // read by expression() and found to be no assignment's: the next primary
  std::size_t nameCharacters_ = 0;
  int nesting_ = 0;
  std::size_t argumentCount_ = 0;
  std::array<double, kMaxArguments> arguments_;
};

}  // namespace tarvex
