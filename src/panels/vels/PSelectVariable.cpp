#include "panels/vels/PSelectVariable.h"

#include <QComboBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <cmath>

#include "base/NumberText.h"
#include "postproc/OutputReference.h"
#include "postproc/OutputVariables.h"
#include "toolkit/Dialogs.h"
#include "toolkit/allow.h"

namespace tarvex {
namespace {

// As the range of times is shown: "%.3f" from 0.001 up to 1000, else "%7.3g".
QString timeText(double time) {
  constexpr double kFixedFrom = 0.001;
  constexpr double kFixedBelow = 1000.0;
  constexpr int kShort = 3;
  const bool isFixed = time >= kFixedFrom && time < kFixedBelow;
  return isFixed ? QString::number(time, 'f', kShort) : QString::fromStdString(numberText(time, kShort));
}

bool isValid(const QLineEdit& field, double& value) {
  return isNumber(field.text().toStdString(), value) && std::isfinite(value);
}

}  // namespace

PSelectVariable::PSelectVariable(const Display& display, const std::string& output, const std::vector<double>& times,
                                 QWidget* parent)
    : Panel(display, "PSelectVariable", "SelVar", "Adding variable " + QString::fromStdString(output), parent),
      output_(output),
      first_(times.front()),
      last_(times.back()) {
  gadget<QLabel>("MlMin")->setText(timeText(first_));
  gadget<QLabel>("MlMax")->setText(timeText(last_));
  gadget<QComboBox>("SelTime")->addItems({"Maximum over time", "At a time", "At several times"});
  constexpr int kAllDigits = 20;
  auto* const available = gadget<QComboBox>("ScTimesAvail");
  for (const double time : times) available->addItem(QString::number(time, 'g', kAllDigits));
  available->setInsertPolicy(QComboBox::NoInsert);
  const QString isPoint = first_ < last_ ? QString() : "The results have one time.";
  for (const char* const name : {"SelTime", "FSingle", "FMulti"}) allow(*gadget<QWidget>(name), isPoint);
  registerCallbacks({{"changeSel", [this] { changeSel(); }},
                     {"edited", [this] { edited(); }},
                     {"cancel", [this] { end(false); }},
                     {"newExpr", [this] { take(true); }},
                     {"newVar", [this] { take(false); }}});
  connect(available, &QComboBox::editTextChanged, this, [this] { edited(); });
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
  changeSel();
}

void PSelectVariable::changeSel() {
  const int position = gadget<QComboBox>("SelTime")->currentIndex();
  if (first_ < last_) {
    allow(*gadget<QWidget>("FSingle"), position == kSingle ? QString() : "Choose \"At a time\" above.");
    allow(*gadget<QWidget>("FMulti"), position == kMultiple ? QString() : "Choose \"At several times\" above.");
  }
  edited();
}

void PSelectVariable::edited() {
  const int position = gadget<QComboBox>("SelTime")->currentIndex();
  std::vector<std::string> variables;
  const QString wrong = problem(variables);
  gadget<QLabel>("MlMessage")
      ->setText(!wrong.isEmpty() ? wrong.section('\n', -1)
                                 : QString::fromStdString(variables.front()) +
                                       (variables.size() > 1 ? QString(" and %1 more").arg(variables.size() - 1) : ""));
  allow(*gadget<QPushButton>("BNewExpr"),
        position == kSingle ? QString() : "An expression takes the value at one time: choose \"At a time\".");
}

std::string PSelectVariable::named(double time) const {
  return timeName(output_, time);
}

QString PSelectVariable::problem(std::vector<std::string>& variables) {
  const int position = gadget<QComboBox>("SelTime")->currentIndex();
  if (position == kSingle) return singleProblem(variables);
  if (position == kMultiple) return rangeProblem(variables);
  variables = {maximumName(output_)};
  return {};
}

QString PSelectVariable::singleProblem(std::vector<std::string>& variables) {
  double time = 0.0;
  if (!isNumber(gadget<QComboBox>("ScTimesAvail")->currentText().toStdString(), time) ||
      !(time >= first_ && time <= last_))
    return QString("Wrong value\n\nThe time is a number from %1 to %2.").arg(timeText(first_), timeText(last_));
  variables = {named(time)};
  return {};
}

QString PSelectVariable::rangeProblem(std::vector<std::string>& variables) {
  double lower = 0.0;
  double upper = 0.0;
  double step = 0.0;
  const auto isWithin = [this](double bound) { return bound >= first_ && bound <= last_; };
  if (!isValid(*gadget<QLineEdit>("NLower"), lower) || !isValid(*gadget<QLineEdit>("NUpper"), upper) ||
      !isWithin(lower) || !isWithin(upper) || upper < lower)
    return QString("Wrong bound value\n\nThe bounds are numbers from %1 to %2, the second not below the first.")
        .arg(timeText(first_), timeText(last_));
  if (!isValid(*gadget<QLineEdit>("NNumPoints"), step) || !(step > 0.0))
    return "Wrong interval value\n\nThe step is a number above 0.";
  const std::vector<double> times = OutputVariables::timeRange(lower, upper, step);
  if (times.empty()) return "Wrong interval value\n\nNo time lies below the upper bound, or far too many do.";
  for (const double time : times)
    if (variables.empty() || variables.back() != named(time)) variables.push_back(named(time));
  return {};
}

void PSelectVariable::take(bool forExpression) {
  if (forExpression && gadget<QComboBox>("SelTime")->currentIndex() != kSingle) return;
  std::vector<std::string> variables;
  if (const QString wrong = problem(variables); !wrong.isEmpty())
    return Dialogs::current().message(DialogKind::Error, "Error", wrong, window());
  variables_ = std::move(variables);
  forExpression_ = forExpression;
  end(true);
}

}  // namespace tarvex
