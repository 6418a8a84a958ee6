#pragma once

#include <string>
#include <vector>

#include "toolkit/Panel.h"

namespace tarvex {

// Which value of an output that has times is taken: its maximum, its value at a time, or those at several times.
class PSelectVariable : public Panel {
 public:
  // `times` are those of the results, upwards and at least one.
  PSelectVariable(const Display& display, const std::string& output, const std::vector<double>& times, QWidget* parent);

  // After acceptance: the names of the variables, or of the one that goes into an expression.
  const std::vector<std::string>& variables() const { return variables_; }
  bool forExpression() const { return forExpression_; }

 private:
  enum Position { kMaximum, kSingle, kMultiple };

  void changeSel();
  void edited();
  void take(bool forExpression);
  QString problem(std::vector<std::string>& variables);
  QString singleProblem(std::vector<std::string>& variables);
  QString rangeProblem(std::vector<std::string>& variables);
  std::string named(double time) const;

  std::string output_;
  double first_;
  double last_;
  std::vector<std::string> variables_;
  bool forExpression_ = false;
};

}  // namespace tarvex
