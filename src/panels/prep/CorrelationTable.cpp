#include "panels/prep/CorrelationTable.h"

#include "base/NumberText.h"
#include "panels/prep/CorrelationDraft.h"

namespace tarvex {
namespace {

constexpr const char* kOnlyRead = "These correlations are for reading.";

}  // namespace

CorrelationTable::CorrelationTable(const CorrelationDraft& draft, Changes changes)
    : draft_(draft), changes_(std::move(changes)), names_(draft.names()) {}

int CorrelationTable::rows() const {
  return draft_.order();
}

QString CorrelationTable::text(int row, int column) const {
  return QString::fromStdString(numberText(number(row, column)));
}

double CorrelationTable::number(int row, int column) const {
  return static_cast<double>(draft_.at(row, column));
}

QString CorrelationTable::setText(int row, int column, const QString& text) {
  return changes_.edit ? changes_.edit(row, column, text) : QString(kOnlyRead);
}

QString CorrelationTable::setBlock(int row, int column, const std::vector<QStringList>& block) {
  return changes_.paste ? changes_.paste(row, column, block) : QString(kOnlyRead);
}

}  // namespace tarvex
