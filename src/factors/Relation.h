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
  Relation();
  std::unique_ptr<Factor> clone() const override;
  std::int32_t getType() const override;

  const std::string& expression() const { return expression_; }
  // The names that the expression uses, sorted, each once.
  const std::vector<std::string>& factorNames() const { return factorNames_; }

  // Accepts `text` when a dry run with every name at 0 succeeds; so a division by a plain name is refused. On failure
  // the old expression stays.
  bool setExpression(const std::string& text);
  // The value of one run: `names` of all factors, `values` the run in the same order. Values enter at six significant
  // digits. Returns false, with value 0.0, when the evaluation fails.
  bool evaluate(const std::vector<std::string>& names, const double* values, double& value) const;
  bool usesFactor(std::string_view name) const;
  // Replaces every occurrence of the old name's letters, inside other names too. False when the expression doesn't use
  // `oldName`.
  bool renameFactor(const std::string& oldName, const std::string& newName);

 protected:
  Relation(const Relation&) = default;
  void writeParameters(TextWriter& out) const override;
  void readParameters(TextReader& in) override;

 private:
  void prepare(const std::vector<std::string>& names) const;

  std::string expression_;
  std::vector<std::string> factorNames_;

  // What evaluate() found out about the last list of names, kept from run to run.
  mutable bool prepared_ = false;
  mutable std::vector<std::string> preparedNames_;
  mutable std::vector<std::size_t> positions_;  // of the values that enter the equation
  mutable std::vector<double> entering_;
  mutable Equation equation_;
};

}  // namespace tarvex
