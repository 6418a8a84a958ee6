#pragma once

#include "panels/prep/PDefinition.h"

namespace tarvex {

// The name that a new factor of the kind starts with: the kind's own, or "noname1", "noname2", ... where that is taken.
std::string newFactorName(const FactorList& list, const std::string& type);

// The definition panel for the factor's kind.
std::unique_ptr<PDefinition> makeDefinition(const Display& display, const Factor& factor,
                                            const DefinitionContext& context, QWidget* parent);

// Lets the user define a factor, on the panels of as many kinds as it takes. Null when nothing was accepted.
std::unique_ptr<Factor> editFactor(const Display& display, const Factor& factor, const DefinitionContext& context,
                                   QWidget* parent);

}  // namespace tarvex
