#include "panels/prep/PInspector.h"

#include <QKeySequence>
#include <QLabel>
#include <QPlainTextEdit>

#include "base/NumberText.h"
#include "factors/IntervalDistribution.h"
#include "factors/factorFields.h"
#include "panels/prep/definitionKinds.h"
#include "panels/prep/factorGraph.h"
#include "toolkit/ChartView.h"

namespace tarvex {
namespace {

// A parameter a line; of a list a row, of a relation its expression.
QString parametersOf(const Factor& factor) {
  const std::vector<Parameter> parameters = factor.parameters();
  if (parameters.empty()) return QString::fromStdString(factorFields(factor)).replace("; ", "\n");
  QStringList lines;
  for (const Parameter& parameter : parameters)
    lines << parameter.name + (": " + QString::fromStdString(numberText(parameter.value)));
  return lines.join('\n');
}

}  // namespace

PInspector::PInspector(const Display& display, const Factor& factor, QWidget* parent)
    : Panel(display, definitionKind(factor.typeName).inspectorFile, definitionKind(factor.typeName).inspectorName,
            definitionKind(factor.typeName).inspectorTitle, parent) {
  gadget<QLabel>("LaName")->setText(QString::fromStdString(factor.name));
  gadget<QLabel>("LaFactorType")->setText(QString::fromStdString(factor.typeName));
  gadget<QPlainTextEdit>("LaDist")->setPlainText(parametersOf(factor));
  gadget<QPlainTextEdit>("TeNote")->setPlainText(QString::fromStdString(factor.note));
  if (window()->findChild<QWidget*>("boundGraph") != nullptr) {
    const FactorPicture picture = pictureOf(factor);
    gadget<ChartView>("boundGraph")->show(picture.figure);
    gadget<QLabel>("MlSummary")->setText(picture.sampled);
  }
  registerCallbacks({{"dismiss", [this] { end(true); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(true); });
}

}  // namespace tarvex
