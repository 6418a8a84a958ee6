#include "panels/prep/PDistribution.h"

#include <QLineEdit>
#include <cmath>

#include "base/NumberText.h"
#include "factors/factorFields.h"
#include "factors/makeFactor.h"

namespace tarvex {

PDistribution::PDistribution(const Display& display, const Factor& factor, const DefinitionContext& context,
                             QWidget* parent)
    : PDefinition(display, definitionKind(factor.typeName), factor, context, parent) {
  start({});
}

// Field by field, and group by group what the kind says of the numbers together; those not read yet are the defaults.
std::unique_ptr<Factor> PDistribution::readParameters(Refusal& refusal) {
  std::vector<double> numbers;
  for (const Parameter& parameter : makeFactor(kind().type)->parameters()) numbers.push_back(parameter.value);
  std::unique_ptr<Factor> draft;
  for (const NumberGadget& field : kind().fields) {
    auto* const edit = gadget<QLineEdit>(field.gadget);
    double& number = numbers[field.parameter];
    if (!isNumber(edit->text().toStdString(), number) || !std::isfinite(number)) {
      refusal = {"Error", field.refused, edit};
      return nullptr;
    }
    if (!field.closesGroup) continue;
    draft = makeFactorOf(kind().type, numbers);
    const std::string problem = draft ? draft->parameterProblem() : std::string(field.refused);
    if (problem.empty()) continue;
    refusal = {"Error", (kind().quotesSetter ? "Error: " : "") + QString::fromStdString(problem), edit};
    return nullptr;
  }
  return draft;
}

void PDistribution::showParameters(const Factor& factor) {
  constexpr int kDigits = 15;  // as the user wrote them
  const std::vector<Parameter> parameters = factor.parameters();
  for (const NumberGadget& field : kind().fields)
    gadget<QLineEdit>(field.gadget)
        ->setText(QString::fromStdString(numberText(parameters[field.parameter].value, kDigits)));
}

}  // namespace tarvex
