#include "panels/prep/PRelation.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QFont>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTextCursor>
#include <QTextEdit>
#include <algorithm>

#include "factors/EvaluatorOperations.h"
#include "factors/FactorList.h"
#include "factors/Relation.h"
#include "factors/RelationPreview.h"
#include "panels/prep/ExpressionColours.h"
#include "plots/RunTable.h"
#include "plots/histogramPlots.h"
#include "toolkit/ChartView.h"
#include "toolkit/Dialogs.h"
#include "toolkit/expressionField.h"
#include "toolkit/oneLine.h"

namespace tarvex {
namespace {

constexpr const char* kTitle = "Error in expression";
constexpr const char* kEmpty = " Empty relation field not admitted.";

}  // namespace

PRelation::PRelation(const Display& display, const Factor& factor, const DefinitionContext& context, QWidget* parent)
    : PDefinition(display, definitionKind("Relation"), factor, context, parent),
      former_(static_cast<const Relation&>(factor).expression()) {
  for (std::int32_t i = 0; context.list != nullptr && i < context.list->factorCount(); ++i)
    if (i != context.place) names_.push_back(context.list->factor(i).name);
  for (const std::string& name : names_) gadget<QListWidget>("SlFactors")->addItem(QString::fromStdString(name));
  auto* const functions = gadget<QComboBox>("OFunctions");
  for (const std::string_view name : functionNames())
    functions->addItem(QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size())));
  new ExpressionColours(field()->document(), names_);  // the document owns it
  gadget<ChartView>("boundGraph")
      ->setEmptyText("The values of the relation appear here as soon as it can be computed.");
  keepOneLine(*field());
  start({{"operation", [this] { insertLabel(); }},
         {"number", [this] { insertLabel(); }},
         {"dot", [this] { insert("."); }},
         {"openPar", [this] { insert("("); }},
         {"closePar", [this] { insert(")"); }},
         {"power", [this] { insert("**"); }},
         {"selFunction", [this] { selFunction(); }},
         {"addFactor", [this] { addFactor(); }},
         {"moved", [this] { moved(); }}});
}

QPlainTextEdit* PRelation::field() {
  return gadget<QPlainTextEdit>("TeRelation");
}

std::string PRelation::expression() {
  return oneLineOf(*field());
}

// Judges the expression and marks the character at which it is wrong.
ExpressionCheck PRelation::check() {
  ExpressionCheck found = checkExpression(expression(), names_);
  markMistake(*field(), found.outcome == Trial::kGood ? std::nullopt : std::optional(found.place));
  return found;
}

int PRelation::caretOf(const ExpressionCheck& found) {
  return static_cast<int>(std::min(found.place, static_cast<std::size_t>(field()->toPlainText().size())));
}

Refusal PRelation::refusalOf(const ExpressionCheck& found, const char* text) {
  const QString where = QString("\n%1, at character %2").arg(QString::fromStdString(found.reason)).arg(found.place + 1);
  return {kTitle, text + where, field(), caretOf(found)};
}

// An expression that its own factor refuses, such as a quotient by a plain name, leaves the former one in force.
std::unique_ptr<Factor> PRelation::readParameters(Refusal& refusal) {
  const std::string text = expression();
  if (text.empty()) {
    refusal = {kTitle, kEmpty, field()};
    return nullptr;
  }
  const ExpressionCheck found = check();
  auto relation = std::make_unique<Relation>();
  if (found.outcome != Trial::kGood) {
    refusal = refusalOf(found, " Error in expression, unknown factor or wrong expression name.");
    return nullptr;
  }
  if (!relation->setExpression(text)) static_cast<void>(relation->setExpression(former_));  // told by confirm()
  return relation;
}

void PRelation::showParameters(const Factor& factor) {
  field()->setPlainText(QString::fromStdString(static_cast<const Relation&>(factor).expression()));
}

bool PRelation::confirm(const Factor& draft) {
  if (static_cast<const Relation&>(draft).expression() == expression()) return true;
  Relation refused;
  static_cast<void>(refused.setExpression(expression()));  // for its reason
  return Dialogs::current().question(
      kTitle,
      "The expression can't be kept: with every name at 0 it fails.\n" + QString::fromStdString(refused.errorText) +
          "\nKeep the former one: " + (former_.empty() ? "none?" : QString::fromStdString(former_) + " ?"),
      "^Yes", "^No", window());
}

void PRelation::apply() {
  const std::string text = expression();
  if (text.empty()) return refuse({kTitle, kEmpty, field()});
  const ExpressionCheck found = check();
  if (found.outcome != Trial::kGood)
    return refuse(
        refusalOf(found, " Current expression cannot be evaluated.\n  Error in expression or unknown factor."));
  showValues();
}

void PRelation::showDraft(const Factor&) {
  showValues();
}

void PRelation::showValues() {
  auto* const chart = gadget<ChartView>("boundGraph");
  auto* const summary = gadget<QLabel>("MlSummary");
  RelationPreview preview;
  std::string message;
  if (context().list == nullptr || !previewRelation(*context().list, expression(), context().place, preview, message)) {
    chart->show(Figure());
    summary->setText("No values: " + QString::fromStdString(message));
    return;
  }
  const auto [least, most] = std::minmax_element(preview.values.begin(), preview.values.end());
  summary->setText(
      QString("From %1 to %2 over %3 draws%4")
          .arg(*least, 0, 'g', 4)
          .arg(*most, 0, 'g', 4)
          .arg(RelationPreview::kRows)
          .arg(preview.failures == 0 ? QString() : QString("; %1 fail and read as 0").arg(preview.failures)));
  const RunColumn column{expression(), true, preview.values};
  Figure figure = histogramPlot({&column}, HistogramForm::Area, kLinearScale);
  figure.title.clear();
  chart->show(std::move(figure));
}

void PRelation::moved() {
  if (expression() == shown_) return;
  shown_ = expression();
  edited();
}

void PRelation::insert(const QString& text, int caretBack) {
  if (field()->isReadOnly()) return;
  insertAtCaret(*field(), text, caretBack);
}

// The digit or the operation that the button says.
void PRelation::insertLabel() {
  if (const auto* const button = qobject_cast<QAbstractButton*>(sender())) insert(button->text().remove('&'));
}

void PRelation::addFactor() {
  const auto* const item = gadget<QListWidget>("SlFactors")->currentItem();
  if (item != nullptr) insert(item->text());
}

void PRelation::selFunction() {
  insert(gadget<QComboBox>("OFunctions")->currentText() + "()", 1);
}

}  // namespace tarvex
