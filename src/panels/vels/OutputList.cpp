#include "panels/vels/OutputList.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "base/NumberText.h"

namespace tarvex {

bool OutputList::setOutputs(std::vector<VelsOutputRecord> outputs) {
  const bool same = std::ranges::equal(outputs, outputs_, {}, &VelsOutputRecord::name, &VelsOutputRecord::name);
  outputs_ = std::move(outputs);
  return !same;
}

QString OutputList::headerToolTip(int column) const {
  return column == kWeight ? "Kept with the study; no measure reads it" : QString();
}

QString OutputList::text(int row, int column) const {
  const VelsOutputRecord& output = outputs_[static_cast<std::size_t>(row)];
  return QString::fromStdString(column == kName ? output.name : numberText(static_cast<double>(output.weight)));
}

double OutputList::number(int row, int column) const {
  return column == kWeight ? static_cast<double>(outputs_[static_cast<std::size_t>(row)].weight)
                           : std::numeric_limits<double>::quiet_NaN();
}

QString OutputList::setText(int row, int /*column*/, const QString& text) {
  double weight = 0.0;
  if (!isNumber(text.toStdString(), weight) || !std::isfinite(static_cast<float>(weight)))
    return "A weight is a number.";
  if (weight < 0.0) return "A weight is not negative.";
  return setWeight_(row, static_cast<float>(weight));
}

}  // namespace tarvex
