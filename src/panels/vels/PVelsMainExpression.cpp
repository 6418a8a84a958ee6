// The expression of the post-processor's main panel: written by keys or buttons, judged while it is typed.

#include <QAbstractButton>
#include <QComboBox>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTextCursor>
#include <QTextEdit>
#include <algorithm>

#include "app/RunController.h"
#include "panels/model/NameCompletion.h"
#include "panels/prep/ExpressionColours.h"
#include "panels/vels/OutputList.h"
#include "panels/vels/PVelsMain.h"
#include "postproc/OutputReference.h"
#include "postproc/VariableTrial.h"
#include "toolkit/TableView.h"
#include "toolkit/expressionField.h"
#include "toolkit/oneLine.h"

namespace tarvex {

QPlainTextEdit* PVelsMain::field() {
  return gadget<QPlainTextEdit>("TExpression");
}

void PVelsMain::fillFields() {
  auto* const outputs = gadget<TableView>("MaVariables");
  outputs->setEditable(outputs_);
  outputs->setEmptyText("The model has no results: run it, or open saved ones.");
  connect(outputs, &TableView::refused, this, [this](const QString& why) {
    if (!why.isEmpty()) say(why);
  });
  gadget<TableView>("MaSelected")->setEmptyText("Nothing is analysed yet: take an output from the left.");
  gadget<QComboBox>("OFunctions")->addItems(functionList());
  field()->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
}

// The names that can be written are those of the results in hand.
void PVelsMain::knowOutputs() {
  delete colours_.data();
  delete completion_.data();
  std::vector<std::string> known = outputNames_;
  known.emplace_back("max");
  colours_ = new ExpressionColours(field()->document(), known);
  QStringList offered;
  const bool hasTimes = controller().project().model.results.hasTimeAxis();
  for (const std::string& name : outputNames_) {
    offered << QString::fromStdString(name);
    if (hasTimes) offered << QString::fromStdString(maximumName(name));
  }
  completion_ = new NameCompletion(*field(), offered + functionList());
  judged_.clear();
  edited();
}

std::string PVelsMain::expression() {
  return oneLineOf(*field());
}

void PVelsMain::enterExpression(const QString& text, int caretBack) {
  insertAtCaret(*field(), text, caretBack);
}

// The operation that the button says.
void PVelsMain::insertLabel() {
  if (const auto* const button = qobject_cast<QAbstractButton*>(sender())) enterExpression(button->text().remove('&'));
}

void PVelsMain::selFunction() {
  enterExpression(gadget<QComboBox>("OFunctions")->currentText() + "()", 1);
}

void PVelsMain::edited() {
  const QString text = QString::fromStdString(expression());
  if (text == judged_) return;  // marks count as a change of the text
  judged_ = text;
  expressionMode_ = !text.isEmpty();
  const VariableTrial trial = text.isEmpty() ? VariableTrial() : tryVariable(text.toStdString(), outputNames_);
  markMistake(*field(), trial.reason.empty() ? std::nullopt : std::optional(trial.place));
  refreshGadgets();
  if (expressionMode_) say(QString::fromStdString(trial.reason).trimmed());
}

void PVelsMain::addExpr() {
  std::string text = expression();
  const VariableTrial trial = tryVariable(text, outputNames_);
  if (trial.reason.empty()) {
    text.erase(0, text.find_first_not_of(' '));
    const bool isNew = std::ranges::find(variables_, text) == variables_.end();
    const std::size_t before = variables_.size();
    append({text});
    if (isNew && variables_.size() > before) leaveExpression();
    return;
  }
  QTextCursor caret = field()->textCursor();
  caret.setPosition(std::min(static_cast<int>(trial.place), static_cast<int>(field()->toPlainText().size())));
  field()->setTextCursor(caret);
  QString reason = QString::fromStdString(trial.reason).trimmed();
  if (reason == "Expression can't be evaluated.") reason.clear();
  refuse("   Expression can't be evaluated." + (reason.isEmpty() ? QString() : "\n\n" + reason));
  field()->setFocus();
}

void PVelsMain::leaveExpression() {
  field()->clear();
  edited();
  refreshGadgets();
}

}  // namespace tarvex
