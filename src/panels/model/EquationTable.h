#pragma once

#include <functional>
#include <memory>

#include "model/EquationValues.h"
#include "model/InternalModel.h"
#include "toolkit/TableSource.h"

namespace tarvex {

// The equations of a model, a row each: name, equation, whether it is an output, and its value in the run that the
// model is tried with.
class EquationTable : public EditableTableSource {
 public:
  enum Column { kName = 0, kText = 1, kKind = 2, kValue = 3 };
  static constexpr int kColumns = 4;

  // What a user does in the grid; each answers why not, or nothing.
  struct Changes {
    std::function<QString(int row, int column, const QString& text)> edit;
    std::function<QString(const std::vector<QStringList>& rows)> paste;
    std::function<QString(int from, int to)> move;
  };

  explicit EquationTable(Changes changes) : changes_(std::move(changes)) {}
  void setModel(const InternalModel& model, std::vector<EquationValue> values, const std::string& row);

  int rows() const override { return static_cast<int>(equations_.size()); }
  int columns() const override { return kColumns; }
  QString header(int column) const override;
  QString headerToolTip(int column) const override;
  QString text(int row, int column) const override;
  bool isNumeric(int column) const override { return column == kValue; }
  double number(int row, int column) const override;
  QColor ink(int row, int column) const override;
  QColor paper(int row, int column) const override;

  bool isEditable(int /*row*/, int column) const override { return column != kValue; }
  QString setText(int row, int column, const QString& text) override { return changes_.edit(row, column, text); }
  QString problem(int row, int column) const override;
  bool canMoveRows() const override { return true; }
  bool moveRow(int from, int to) override { return changes_.move(from, to).isEmpty(); }
  QString setBlock(int row, int column, const std::vector<QStringList>& block) override;

 private:
  struct Row {
    QString name;
    QString text;
    bool isOutput;
    QString problem;
    EquationValue value;
  };
  const Row& at(int row) const { return equations_[static_cast<std::size_t>(row)]; }

  std::vector<Row> equations_;
  QString run_;
  Changes changes_;
};

// How the two kinds of equations are called.
QString kindWord(bool isOutput);

}  // namespace tarvex
