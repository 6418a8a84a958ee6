#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "factors/Equation.h"
#include "postproc/OutputReference.h"

namespace tarvex {

// What one selected text asks of a run: an output, a derived name of it, or an expression of the calculator language
// over such references.
class OutputExpression {
 public:
  // Takes a text that the user typed or a file held. False when it can't be understood for these outputs: `reason` is
  // then a sentence for the user, and the expression unusable.
  [[nodiscard]] bool set(const std::string& text, const std::vector<std::string>& outputNames, std::string& reason);

  // The value in a run, `values` as ModelConfiguration::readRun gives them. False, with 0.0, when the expression can't
  // be evaluated there; a single reference always has its value.
  [[nodiscard]] bool evaluate(const ModelConfiguration& model, std::int32_t run, const std::vector<double>& values,
                              double& result);

 private:
  bool compile(std::string_view text, const std::vector<std::string>& outputNames);
  std::size_t indexOf(const OutputReference& reference);
  bool tryOut();

  std::vector<OutputReference> references_;  // each once
  bool single_ = true;                       // one reference, no equation
  Equation equation_;
  std::vector<double> bound_;  // scratch: the references' values as they enter the equation
};

}  // namespace tarvex
