#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "factors/Equation.h"
#include "factors/Factor.h"

namespace tarvex {

// A factor whose value in each run follows from other factors by an expression.
class Relation : public Factor {
 public:
  static constexpr LineRule kExpressionRule{"the expression", 254};

  Relation();
  std::unique_ptr<Factor> clone() const override;
  std::int32_t getType() const override;

  const std::string& expression() const { return expression_; }
  // The names that the expression uses, sorted, each once.
  const std::vector<std::string>& factorNames() const { return factorNames_; }
  // What a file holds as expression and setExpression() refuses. The relation then has none, and its record is written
  // as it was read.
  const std::string& refusedExpression() const { return refused_; }

  // Accepts `text` when the record can hold it and a dry run with every name at 0 succeeds; so a division by a plain
  // name is refused. On failure the old expression stays and errorText has the reason.
  [[nodiscard]] bool setExpression(const std::string& text);
  // Finds the places of the used names among those of all factors. Of equal ones the first counts.
  void bindNames(const std::vector<std::string>& names);
  // The value of one run, `values` in the order of the names last bound. They enter at six significant digits. False,
  // with value 0.0, when the evaluation fails.
  [[nodiscard]] bool evaluate(const double* values, double& value);
  // The same for several runs, Equation::kBlockRows at most: enter() notes the values of each, evaluateEntered() gives
  // theirs and how many of them failed.
  void enter(std::size_t place, const double* values);
  std::int32_t evaluateEntered(std::size_t count, double* results);
  bool usesFactor(std::string_view name) const;
  // Replaces every occurrence of the old name's letters, inside other names too. False, with nothing changed, when the
  // expression doesn't use `oldName` or setExpression() refuses the new text.
  [[nodiscard]] bool renameFactor(const std::string& oldName, const std::string& newName);

 protected:
  Relation(const Relation&) = default;
  void writeParameters(TextWriter& out) const override;
  void readParameters(TextReader& in) override;

 private:
  std::string expression_;
  std::vector<std::string> factorNames_;
  std::string refused_;

  // Of bindNames().
  std::vector<std::size_t> positions_;  // of the values that enter the equation
  std::vector<double> entering_;        // a block of each
  Equation equation_;
};

}  // namespace tarvex
