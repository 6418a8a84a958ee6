#pragma once

#include <QCheckBox>
#include <QPlainTextEdit>
#include <QSpinBox>

#include "panels/PrepFixture.h"
#include "panels/model/PIntModel.h"
#include "toolkit/TableView.h"

namespace tarvex::test {

constexpr const char* kDiscards =
    "Warning: existing configuration: An internal model is already loaded.\n Do you wish to discard it? "
    "[^Proceed/^Cancel]";

// The panels of the model, over a study of the factors x1, x2, x3 with a sample of two rows.
class ModelTest : public PrepTest {
 protected:
  static ModelContext study() {
    return {{"x1", "x2", "x3"}, 2, [](std::int32_t row, TrialRow& trial, std::string&) {
              const std::vector<double> rows[] = {{2.5, 1.0, 4.5}, {1.0, 2.0, 3.0}, {4.0, 0.0, 6.0}};
              trial = {row < 0 ? "the means" : "row " + std::to_string(row + 1), {"x1", "x2", "x3"}, rows[row + 1]};
              return true;
            }};
  }
  // The panel of a model, shown.
  template <class ModelPanel, class Model>
  std::unique_ptr<ModelPanel> shown(const Model& model) {
    auto panel = std::make_unique<ModelPanel>(display_, model, study(), nullptr);
    EXPECT_EQ(panel->problems(), QStringList());
    panel->window()->show();
    return panel;
  }
  // name, text, type (output unless it begins with a '-')
  static InternalModel modelOf(const std::vector<std::pair<std::string, std::string>>& equations) {
    InternalModel model;
    for (const char* const name : {"x1", "x2", "x3"}) EXPECT_TRUE(model.addVariable(name));
    for (const auto& [name, text] : equations) {
      const std::size_t isInternal = name.front() == '-' ? 1 : 0;
      EXPECT_TRUE(model.addExpression(model.numExpressions(), name.substr(isInternal), text, isInternal == 0 ? 1 : 0));
    }
    return model;
  }
  static std::string described(const InternalModel& model) {
    std::string text;
    for (const ModelVariable& variable : model.variables()) text += variable.name + ' ';
    for (const ModelExpression& equation : model.expressions())
      text += "| " + equation.name + (equation.type == 1 ? " = " : " := ") + equation.text + ' ';
    return text;
  }
  // The cells of a column, apart by blanks.
  static std::string column(Panel& panel, const char* table, int column) {
    auto& model = panel.gadget<TableView>(table)->tableModel();
    std::string text;
    for (int row = 0; row < model.rowCount(); ++row)
      text += model.data(model.index(row, column), Qt::DisplayRole).toString().toStdString() + ' ';
    return text;
  }
  // Writes into a cell; false where that is refused.
  static bool put(Panel& panel, const char* table, int row, int column, const std::string& text) {
    auto* const cells = panel.gadget<TableView>(table)->model();
    return cells->setData(cells->index(row, column), QString::fromStdString(text));
  }
  static std::string said(const QWidget& window, const char* label = "MlMessage") {
    return window.findChild<QLabel*>(label)->text().toStdString();
  }
  static void select(Panel& panel, const char* table, int row) {
    auto* const view = panel.gadget<TableView>(table);
    view->clearSelection();
    if (row >= 0) view->selectRow(row);
  }
};

}  // namespace tarvex::test
