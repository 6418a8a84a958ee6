#include "panels/prep/editFactor.h"

#include <QWidget>

#include "factors/FactorList.h"
#include "factors/changeKind.h"
#include "panels/prep/PDistribution.h"
#include "panels/prep/PRelation.h"
#include "panels/prep/PTabulated.h"

namespace tarvex {

std::string newFactorName(const FactorList& list, const std::string& type) {
  std::string name = definitionKind(type).defaultName;
  for (int i = 1; list.indexOf(name) != -1; ++i) name = "noname" + std::to_string(i);
  return name;
}

std::unique_ptr<PDefinition> makeDefinition(const Display& display, const Factor& factor,
                                            const DefinitionContext& context, QWidget* parent) {
  if (factor.isRelation()) return std::make_unique<PRelation>(display, factor, context, parent);
  if (dynamic_cast<const IntervalDistribution*>(&factor) != nullptr)
    return std::make_unique<PTabulated>(display, factor, context, parent);
  return std::make_unique<PDistribution>(display, factor, context, parent);
}

std::unique_ptr<Factor> editFactor(const Display& display, const Factor& factor, const DefinitionContext& context,
                                   QWidget* parent) {
  std::unique_ptr<Factor> current = factor.clone();
  QRect place;
  while (true) {
    const std::unique_ptr<PDefinition> panel = makeDefinition(display, *current, context, parent);
    if (place.isValid())
      panel->window()->setGeometry(QRect(place.topLeft(), panel->window()->size()));
    else
      panel->centre();
    if (!panel->runModal() || panel->result() == PDefinition::kCancelled) return nullptr;
    place = panel->window()->geometry();
    std::unique_ptr<Factor> edited = panel->takeFactor();
    if (panel->result() == PDefinition::kAccepted) return edited;
    // A name that nobody chose becomes that of the other kind.
    if (edited->name == definitionKind(current->typeName).defaultName)
      edited->name = definitionKind(panel->chosenKind()).defaultName;
    current = changeKind(*edited, panel->chosenKind());
  }
}

}  // namespace tarvex
