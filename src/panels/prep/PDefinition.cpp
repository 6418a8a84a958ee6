#include "panels/prep/PDefinition.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include "factors/FactorList.h"
#include "factors/factorFields.h"
#include "factors/makeFactor.h"
#include "panels/prep/factorGraph.h"
#include "toolkit/ChartView.h"
#include "toolkit/Dialogs.h"
#include "toolkit/allow.h"

namespace tarvex {
namespace {

constexpr int kMaxNameField = 1023;  // characters of it that are read
constexpr const char* kWrongName =
    "Wrong factor name, The name must begin with a letter and can contain only numbers and letters.";
constexpr const char* kWrongConstantName =
    "   Invalid factor name. The name must begin vith a letter and must contain numbers and letters only";

QString titleOf(const DefinitionKind& kind, bool demo) {
  return QString(kind.title) + (demo ? " (Demo mode)" : "");
}

}  // namespace

std::string nameIn(const QLineEdit& field) {
  return field.text().left(kMaxNameField).trimmed().toStdString();
}

PDefinition::PDefinition(const Display& display, const DefinitionKind& kind, const Factor& factor,
                         const DefinitionContext& context, QWidget* parent)
    : Panel(display, kind.file, kind.name, titleOf(kind, context.demo), parent),
      kind_(kind),
      context_(context),
      opened_(factor.clone()),
      factor_(factor.clone()) {}

void PDefinition::start(std::vector<PanelCallback> table) {
  auto* const kinds = gadget<QComboBox>("ODistType");
  for (const std::string& type : factorKinds()) kinds->addItem(QString::fromStdString(type));
  if (kind_.formulaButton != nullptr) gadget<QPushButton>("BFormula")->setText(buttonLabel(kind_.formulaButton));
  table.insert(table.end(), {{"cancel", [this] { end(false); }},
                             {"apply", [this] { apply(); }},
                             {"distType", [this] { distType(); }},
                             {"ok", [this] { ok(); }},
                             {"formula", [this] { formula(); }},
                             {"reset", [this] { reset(); }},
                             {"edited", [this] { edited(); }}});
  showFactor(*opened_);
  if (context_.demo) setReadOnly();
  registerCallbacks(std::move(table));
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
  gadget<QLineEdit>("TName")->setFocus();
  gadget<QLineEdit>("TName")->selectAll();
}

// Everything but what closes the panel or only shows.
void PDefinition::setReadOnly() {
  static const QStringList reads{"ok", "cancel", "apply", "formula", "reset", "save"};
  const QString reason = "A demonstration case keeps its factors.";
  for (auto* const field : window()->findChildren<QLineEdit*>()) field->setReadOnly(true);
  for (auto* const field : window()->findChildren<QPlainTextEdit*>()) field->setReadOnly(true);
  for (auto* const list : window()->findChildren<QComboBox*>()) allow(*list, reason);
  for (auto* const button : window()->findChildren<QAbstractButton*>()) {
    const QString callback = button->property("callback").toString();
    if (!callback.isEmpty() && !reads.contains(callback)) allow(*button, reason);
  }
}

void PDefinition::showFactor(const Factor& factor) {
  gadget<QLineEdit>("TName")->setText(QString::fromStdString(factor.name));
  gadget<QLineEdit>("TNote")->setText(QString::fromStdString(factor.note));
  gadget<QLineEdit>("TNote")->setCursorPosition(0);  // its beginning is what is read
  gadget<QComboBox>("ODistType")->setCurrentText(QString::fromStdString(kind_.type));
  showParameters(factor);
  edited();
}

Refusal PDefinition::nameRefusal(const std::string& name) const {
  const QString problem = QString::fromStdString(Factor::kNameRule.problem(name));
  if (!problem.isEmpty() && kind_.type == std::string("Constant"))
    return {"Error: Invalid name", QString(kWrongConstantName) + '\n' + problem};
  if (!problem.isEmpty()) return {"Error", QString(kWrongName) + '\n' + problem};
  const std::int32_t holder = context_.list != nullptr ? context_.list->indexOf(name) : -1;
  if (holder != -1 && holder != context_.place) return {"Error: wrong name", kNameInUse};
  return {};
}

// An empty name is refused by ok alone: the parameters can be tried without one.
std::unique_ptr<Factor> PDefinition::read(Refusal& refusal) {
  auto* const nameField = gadget<QLineEdit>("TName");
  auto* const noteField = gadget<QLineEdit>("TNote");
  const std::string name = nameIn(*nameField);
  if (!name.empty()) refusal = nameRefusal(name);
  refusal.where = nameField;
  if (!refusal.isEmpty()) return nullptr;
  const std::string note = noteField->text().toStdString();
  if (const std::string problem = Factor::kNoteRule.problem(note); !problem.empty()) {
    refusal = {"Error", QString::fromStdString("Error: " + problem), noteField};
    return nullptr;
  }
  std::unique_ptr<Factor> draft = readParameters(refusal);
  if (!draft) return nullptr;
  draft->note = note;
  draft->name = name;
  return draft;
}

void PDefinition::edited() {
  Refusal refusal;
  std::unique_ptr<Factor> draft = read(refusal);
  QString message = refusal.text.trimmed();
  if (message.isEmpty() && nameIn(*gadget<QLineEdit>("TName")).empty()) message = "The factor needs a name.";
  gadget<QLabel>("MlMessage")->setText(message.section('\n', 0, 1));
  if (!draft) return;
  factor_ = std::move(draft);
  showDraft(*factor_);
}

void PDefinition::showDraft(const Factor& draft) {
  if (window()->findChild<QWidget*>("boundGraph") == nullptr) return;
  const FactorPicture picture = pictureOf(draft);
  gadget<ChartView>("boundGraph")->show(picture.figure, true);
  gadget<QLabel>("MlSummary")->setText(picture.sampled);
  if (window()->findChild<QLabel*>("MlTruncation") != nullptr)
    gadget<QLabel>("MlTruncation")->setText(truncationText(draft));
}

void PDefinition::refuse(const Refusal& refusal) {
  Dialogs::current().message(DialogKind::Error, refusal.title.isEmpty() ? "Error" : refusal.title, refusal.text,
                             window());
  if (refusal.where == nullptr) return;
  refusal.where->setFocus();
  auto* const text = qobject_cast<QPlainTextEdit*>(refusal.where);
  if (text == nullptr || refusal.caret < 0) return;
  QTextCursor cursor = text->textCursor();
  cursor.setPosition(refusal.caret);
  text->setTextCursor(cursor);
}

void PDefinition::apply() {
  Refusal refusal;
  std::unique_ptr<Factor> draft = read(refusal);
  if (!draft) return refuse(refusal);
  factor_ = std::move(draft);
  showDraft(*factor_);
  if (pictureOf(*factor_).figure.charts.empty())
    Dialogs::current().message(DialogKind::Warning, "Warning", "Warning. Can't display function graph: undeflow error",
                               window());
}

void PDefinition::ok() {
  if (context_.demo) return end(false);
  auto* const nameField = gadget<QLineEdit>("TName");
  if (nameIn(*nameField).empty())
    return refuse({"Error: Invalid name", "   Empty name field not admitted.", nameField});
  Refusal refusal;
  std::unique_ptr<Factor> draft = read(refusal);
  if (!draft) return refuse(refusal);
  if (!confirm(*draft)) return;
  factor_ = std::move(draft);
  result_ = kAccepted;
  end(true);
}

void PDefinition::reset() {
  showFactor(*opened_);
}

void PDefinition::distType() {
  auto* const kinds = gadget<QComboBox>("ODistType");
  const std::string chosen = kinds->currentText().toStdString();
  if (chosen == kind_.type) return;
  const std::unique_ptr<Factor> other = makeFactor(chosen);
  const bool isCorrelated = context_.list != nullptr && context_.list->isCorrelated(context_.place);
  if (!other || (isCorrelated && !other->isStochastic())) {
    kinds->setCurrentText(kind_.type);
    return refuse({"Error", kCorrelatedKind, kinds});
  }
  // The texts go along, whatever may be said of them.
  factor_->name = nameIn(*gadget<QLineEdit>("TName"));
  factor_->note = gadget<QLineEdit>("TNote")->text().toStdString();
  chosenKind_ = chosen;
  result_ = kOtherKind;
  end(true);
}

void PDefinition::formula() {
  Dialogs::current().message(DialogKind::Information, kind_.title, QString::fromUtf8(kind_.formula), window());
}

}  // namespace tarvex
