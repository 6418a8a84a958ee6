#pragma once

#include <QStringList>
#include <vector>

#include "panels/prep/CorrelationDraft.h"

namespace tarvex {

// What a user writes for correlations. A text that is refused comes with a reason that says the rule and the text;
// nothing is ever rounded into the range.

// One number: from -1 to 1 and not 0.
[[nodiscard]] bool readCorrelation(const QString& text, double& value, QString& why);

// A block of texts whose first stands at (row, column) of the matrix, or one with names of factors above and beside it,
// whose numbers go where these say. Empty texts say nothing, 0 is no correlation, the diagonal is 1, and two numbers of
// one pair are the same. All or nothing.
[[nodiscard]] bool readCorrelationBlock(const std::vector<QStringList>& block, int row, int column,
                                        const QStringList& names, std::vector<CorrelationCell>& cells, QString& why);

}  // namespace tarvex
