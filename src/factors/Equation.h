#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "factors/EquationProgram.h"
#include "factors/Evaluator.h"
#include "factors/ValueBindings.h"

namespace tarvex {

// The value of one text of the calculator language over named values: made once, evaluated for many rows. All that
// computes rows goes through here.
class Equation {
 public:
  Equation() = default;
  // `names` may be bound; those that `text` doesn't use cost nothing.
  Equation(std::string_view text, const std::vector<std::string>& names);

  // `values` holds one per name, in the same order and already as they enter an equation (see enteringValue). On false
  // `value` is left alone.
  [[nodiscard]] bool evaluate(const double* values, double& value);

  // The same over `rows` rows, kBlockRows at most: a column per name. `failed` is 1.0 where evaluate() gives false, and
  // the value is then of no meaning; 0.0 elsewhere.
  static constexpr std::size_t kBlockRows = EquationProgram::kBlockRows;
  void evaluateRows(const double* const* columns, std::size_t rows, double* values, double* failed);
  // Whether the text uses the name at this place of the list; one that it doesn't needs no column.
  bool uses(std::size_t position) const;

 private:
  bool evaluateText(const double* values, double& value);

  std::string text_;
  ValueBindings bindings_;
  EquationProgram program_;
  bool isCompiled_ = false;
  Evaluator evaluator_;                 // for what doesn't compile
  std::vector<const double*> columns_;  // scratch
};

// How a text fares when every bound name has a throw-away value.
enum class Trial { kGood, kFailed, kUnknownName };

// Evaluates `text` once with a trialRandom() for each of `bound`, drawn in their order. Every name that the text uses
// must then be one of `bound` or of `known`.
Trial tryExpression(std::string_view text, const std::vector<std::string>& bound,
                    const std::vector<std::string>& known = {});

}  // namespace tarvex
