#include "panels/model/PNewExpression.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QFontDatabase>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTextCursor>
#include <QTextEdit>
#include <algorithm>
#include <limits>

#include "base/NumberText.h"
#include "model/EquationValues.h"
#include "model/InternalModel.h"
#include "model/ModelUses.h"
#include "panels/model/NameCompletion.h"
#include "panels/prep/ExpressionColours.h"
#include "toolkit/Dialogs.h"
#include "toolkit/expressionField.h"
#include "toolkit/oneLine.h"

namespace tarvex {
namespace {

// With the place, where the reason doesn't tell it.
QString reasonOf(const EquationTrial& trial) {
  const QString reason = QString::fromStdString(trial.reason);
  return reason.contains("at character") ? reason : QString("%1, at character %2").arg(reason).arg(trial.place + 1);
}

}  // namespace

PNewExpression::PNewExpression(const Display& display, const Task& task, QWidget* parent)
    : Panel(display, "PNewExpression", "PNewExpression", "Expression Editor", parent),
      accept_(task.accept),
      bound_(namesAbove(task.model, task.position)),
      run_(task.run),
      inputs_(task.model.variables().size()) {
  for (const ModelExpression& expression : task.model.expressions()) known_.push_back(expression.name);
  if (!task.run.empty()) {
    values_ = task.inputs;
    const std::vector<EquationValue> above = evaluateEquations(task.model, task.inputs);
    for (std::size_t i = 0; i < task.position && i < above.size(); ++i)
      values_.push_back(above[i].isKnown ? above[i].value : std::numeric_limits<double>::quiet_NaN());
  }
  EquationDraft equation;
  if (task.position < task.model.expressions().size()) {
    const ModelExpression& expression = task.model.expressions()[task.position];
    equation = {expression.name, expression.text, expression.type};
    former_ = expression.name;
    users_ = listed(equationsUsing(task.model, former_));
  }
  fillNames();
  show(equation);
  registerCallbacks({{"add", [this] { add(); }},
                     {"changeResultType", [this] { edited(); }},
                     {"operation", [this] { insertLabel(); }},
                     {"selResCalc", [this] { insertItem("SlResults"); }},
                     {"cancel", [this] { end(false); }},
                     {"power", [this] { insert("**"); }},
                     {"openPar", [this] { insert("("); }},
                     {"closePar", [this] { insert(")"); }},
                     {"selFunction", [this] { selFunction(); }},
                     {"selFactors", [this] { insertItem("SlFactors"); }},
                     {"edited", [this] { edited(); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
  edited();
  if (former_.empty())
    gadget<QLineEdit>("TExprName")->setFocus();
  else
    field()->setFocus();
}

QPlainTextEdit* PNewExpression::field() {
  return gadget<QPlainTextEdit>("TExpr");
}

void PNewExpression::show(const EquationDraft& equation) {
  gadget<QLineEdit>("TExprName")->setText(QString::fromStdString(equation.name));
  gadget<QComboBox>("SeOutType")->setCurrentIndex(equation.type);
  field()->setPlainText(QString::fromStdString(equation.text));
  field()->moveCursor(QTextCursor::End);
}

void PNewExpression::fillNames() {
  QStringList names;
  for (const std::string& name : bound_) names << QString::fromStdString(name);
  const auto inputs = static_cast<int>(inputs_);
  gadget<QListWidget>("SlFactors")->addItems(names.mid(0, inputs));
  gadget<QListWidget>("SlResults")->addItems(names.mid(inputs));
  gadget<QComboBox>("OFunctions")->addItems(functionList());
  gadget<QComboBox>("SeOutType")->addItems({"Internal variable", "Output variable"});  // by type
  field()->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  new ExpressionColours(field()->document(), bound_);  // the document owns it
  keepOneLine(*field());
  new NameCompletion(*field(), names + functionList());
}

EquationDraft PNewExpression::draft() {
  return {gadget<QLineEdit>("TExprName")->text().trimmed().toStdString(), oneLineOf(*field()),
          static_cast<std::int16_t>(gadget<QComboBox>("SeOutType")->currentIndex())};
}

QString PNewExpression::nameProblem(const std::string& name) const {
  if (name == former_) return {};
  if (!isModelName(name)) return "Incorrect expression name";
  if (std::ranges::find(known_, name) != known_.end()) return "Expression name already in the list";
  const auto input = std::find(bound_.begin(), bound_.begin() + static_cast<std::ptrdiff_t>(inputs_), name);
  if (input == bound_.begin() + static_cast<std::ptrdiff_t>(inputs_)) return {};
  return QString::fromStdString(name) + " is an input, too: equations below this one read the input.";
}

void PNewExpression::edited() {
  const EquationDraft now = draft();
  const QString all = QString::fromStdString(now.name + '\n' + now.text + '\n') + QString::number(now.type);
  if (all == shown_) return;  // colours count as a change of the text
  shown_ = all;
  judge();
}

void PNewExpression::judge() {
  const EquationDraft now = draft();
  const EquationTrial trial = now.text.empty() ? EquationTrial() : tryEquation(now.text, bound_, known_);
  markMistake(*field(), trial.outcome == Trial::kGood ? std::nullopt : std::optional(trial.place));
  showValue(trial);
  QString problem = now.name.empty() ? QString() : nameProblem(now.name);
  if (problem.isEmpty() && trial.outcome != Trial::kGood) problem = reasonOf(trial);
  if (problem.isEmpty() && !former_.empty() && now.name != former_ && !users_.empty())
    problem = QString::fromStdString(former_ + " is used by " + users_ +
                                     ": the first use in each of them that the model has noted is renamed, too.");
  if (problem.isEmpty() && !trial.reason.empty())
    problem = "It fails at some values: " + QString::fromStdString(trial.reason);
  gadget<QLabel>("MlMessage")->setText(problem);
}

void PNewExpression::showValue(const EquationTrial& trial) {
  QString text;
  const std::string expression = draft().text;
  if (run_.empty())
    text = "There are no factors to try it with.";
  else if (!expression.empty() && trial.outcome == Trial::kGood) {
    const EquationValue value = evaluateEquation(expression, bound_, values_);
    text = QString::fromStdString("At " + run_ + ": " + (value.isKnown ? numberText(value.value) : value.reason));
  }
  gadget<QLabel>("MlValue")->setText(text);
}

void PNewExpression::refuse(const QString& text, QWidget* where) {
  Dialogs::current().message(DialogKind::Error, "Error", text, window());
  where->setFocus();
}

void PNewExpression::add() {
  const EquationDraft now = draft();
  auto* const name = gadget<QLineEdit>("TExprName");
  if (now.name.empty()) return refuse("Expression name field empty", name);
  if (now.text.empty()) return refuse("Expression field empty", field());
  QString problem;
  if (accept_(now, problem)) return end(true);
  const EquationTrial trial = tryEquation(now.text, bound_, known_);
  if (trial.outcome == Trial::kGood) return refuse(problem, name);
  QTextCursor caret = field()->textCursor();
  caret.setPosition(std::min(static_cast<int>(trial.place), static_cast<int>(field()->toPlainText().size())));
  field()->setTextCursor(caret);
  refuse(problem, field());
}

void PNewExpression::insert(const QString& text, int caretBack) {
  insertAtCaret(*field(), text, caretBack);
}

// The operation that the button says.
void PNewExpression::insertLabel() {
  if (const auto* const button = qobject_cast<QAbstractButton*>(sender())) insert(button->text().remove('&'));
}

void PNewExpression::insertItem(const char* list) {
  if (const auto* const item = gadget<QListWidget>(list)->currentItem()) insert(item->text());
}

void PNewExpression::selFunction() {
  insert(gadget<QComboBox>("OFunctions")->currentText() + "()", 1);
}

}  // namespace tarvex
