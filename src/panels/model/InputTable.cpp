#include "panels/model/InputTable.h"

#include <limits>

#include "model/InternalModel.h"
#include "model/ModelUses.h"

namespace tarvex {

void InputTable::setModel(const InternalModel& model) {
  inputs_.clear();
  for (const ModelVariable& variable : model.variables())
    inputs_.push_back(
        {QString::fromStdString(variable.name), QString::fromStdString(listed(equationsUsing(model, variable.name)))});
}

double InputTable::number(int /*row*/, int /*column*/) const {
  return std::numeric_limits<double>::quiet_NaN();  // no column has numbers
}

}  // namespace tarvex
