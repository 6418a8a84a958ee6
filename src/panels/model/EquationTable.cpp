#include "panels/model/EquationTable.h"

#include <limits>

#include "base/NumberText.h"
#include "model/ModelUses.h"

namespace tarvex {

QString kindWord(bool isOutput) {
  return isOutput ? "output" : "internal";
}

void EquationTable::setModel(const InternalModel& model, std::vector<EquationValue> values, const std::string& row) {
  equations_.clear();
  for (std::size_t i = 0; i < model.expressions().size(); ++i) {
    const ModelExpression& expression = model.expressions()[i];
    equations_.push_back({QString::fromStdString(expression.name), QString::fromStdString(expression.text),
                          expression.type == 1, QString::fromStdString(missingNames(model, i)),
                          i < values.size() ? std::move(values[i]) : EquationValue()});
  }
  run_ = QString::fromStdString(row);
}

QString EquationTable::header(int column) const {
  static const char* const kHeaders[kColumns] = {"Name", "Equation", "Kind", "Value"};
  return kHeaders[column];
}

QString EquationTable::headerToolTip(int column) const {
  if (column == kKind) return "An output is a result of the model; an internal equation serves others.";
  return column == kValue && !run_.isEmpty() ? "The value at " + run_ : QString();
}

QString EquationTable::text(int row, int column) const {
  const Row& equation = at(row);
  switch (column) {
    case kName:
      return equation.name;
    case kText:
      return equation.text;
    case kKind:
      return kindWord(equation.isOutput);
    default:
      return equation.value.isKnown ? QString::fromStdString(numberText(equation.value.value))
                                    : QString::fromStdString(equation.value.reason);
  }
}

double EquationTable::number(int row, int column) const {
  const EquationValue& value = at(row).value;
  return column == kValue && value.isKnown ? value.value : std::numeric_limits<double>::quiet_NaN();
}

QColor EquationTable::ink(int row, int column) const {
  if (column != kName) return {};
  return at(row).isOutput ? QColor("blue") : QColor("red");
}

QColor EquationTable::paper(int /*row*/, int column) const {
  return column == kName ? QColor("white") : QColor();
}

QString EquationTable::problem(int row, int column) const {
  return column == kText ? at(row).problem : QString();
}

QString EquationTable::setBlock(int row, int column, const std::vector<QStringList>& block) {
  return column == kName ? changes_.paste(block) : EditableTableSource::setBlock(row, column, block);
}

}  // namespace tarvex
