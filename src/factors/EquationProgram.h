#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "factors/EvaluatorOperations.h"

namespace tarvex {

// A text of the calculator language as a list of steps over numbered registers, compiled once and run over blocks of
// rows. Nothing in the language branches, so each name is a register from one assignment to the next. The steps compute
// what the evaluator computes, in its order; a step over numbers alone is taken once, by the compiler.
class EquationProgram {
 public:
  static constexpr std::size_t kBlockRows = 128;

  // A name that has a value before the text begins; `column` tells where run() finds it, nothing for a 0.0 that only
  // takes a place in the table of symbols.
  struct Input {
    std::string_view name;
    bool hasColumn;
    std::size_t column;
  };

  // Takes the text; its value is what `result` holds at its end. False for one that the evaluator refuses whatever the
  // values are; there is nothing to run then.
  [[nodiscard]] bool compile(std::string_view text, const std::vector<Input>& inputs, std::string_view result);

  // `rows` of kBlockRows at most. Where an input isn't finite or a division fails, `failed` is 1.0 and the value of no
  // meaning; elsewhere it is 0.0.
  void run(const double* const* columns, std::size_t rows, double* values, double* failed);

 private:
  class Compiler;

  enum class Kind {
    kCombine,       // by `operation`; a division by 0.0 fails the row
    kQuotient,      // a division that doesn't
    kIntegerPower,  // to `c`, which is no register
    kPower,
    kNegate,
    kMagnitude,
    kInvert,
    kChoose,
    kOne,  // function of one argument
    kTwo
  };
  struct Step {
    Kind kind;
    Operation operation;
    const Function* function;
    std::size_t a, b, c;  // registers; those that the kind doesn't need are a
    std::size_t out;
  };
  struct Loaded {
    std::size_t place;
    std::size_t column;
  };

  void runStep(const Step& step, std::size_t rows, double* failed);

  std::vector<Step> steps_;
  std::vector<Loaded> inputs_;
  std::size_t registers_ = 0;
  std::size_t result_ = 0;
  std::vector<double> numbers_;       // kBlockRows of each register; constants stay in theirs
  std::vector<const double*> begin_;  // scratch: where the rows of each register begin
};

}  // namespace tarvex
