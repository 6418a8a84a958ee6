#include "panels/prep/FactorCells.h"

#include "factors/changeKind.h"
#include "factors/factorFields.h"
#include "factors/makeFactor.h"
#include "panels/prep/FactorTable.h"
#include "panels/prep/PDefinition.h"

namespace tarvex {
namespace {

// The cells behind a kind as one text. False, with the reason, where one in their middle is empty and others are left
// out, so that those behind it would count as parameters that they aren't.
bool joinParameters(const std::string& kind, const QStringList& cells, std::string& text, std::string& message) {
  QStringList texts;
  bool isGap = false;
  bool hasGap = false;
  for (const QString& cell : cells) {
    const QString trimmed = cell.trimmed();
    hasGap = hasGap || (isGap && !trimmed.isEmpty());
    isGap = trimmed.isEmpty();
    if (!isGap) texts << trimmed;
  }
  text = texts.join(' ').toStdString();
  const std::unique_ptr<Factor> factor = makeFactor(kind);
  if (!hasGap || (factor && factor->parameters().size() == static_cast<std::size_t>(texts.size()))) return true;
  message = "a cell between the parameters is empty";
  return false;
}

std::unique_ptr<Factor> readRow(const QStringList& row, const Factor* old, const std::string& usualKind,
                                std::string& message) {
  const QString word = row.value(1).trimmed();
  const std::string kind = !word.isEmpty()  ? kindOfWord(word.toStdString())
                           : old != nullptr ? old->typeName
                                            : usualKind;
  if (kind.empty()) message = '\'' + word.toStdString() + "' is no distribution";
  std::string parameters;
  if (kind.empty() || !joinParameters(kind, row.mid(2), parameters, message)) return nullptr;
  if (!parameters.empty()) return readFactorFields(kind, parameters, old, message);
  if (old == nullptr) return makeFactor(kind);
  return old->typeName == kind ? old->clone() : changeKind(*old, kind);
}

}  // namespace

FactorCells::FactorCells(FactorList& list) : list_(list) {}

bool FactorCells::mayBecome(const FactorList& list, int place, const Factor& factor, QString& problem) {
  if (factor.isStochastic() || !list.isCorrelated(place)) return true;
  problem = kCorrelatedKind;
  return false;
}

bool FactorCells::isHeading(const QStringList& row) {
  const QString first = row.value(0).trimmed().toLower();
  return (first == "name" || first == "factor") && kindOfWord(row.value(1).toStdString()).empty();
}

bool FactorCells::set(int place, int column, const QString& text, QString& problem) {
  const Factor& old = list_.factor(place);
  std::string message;
  if (column == FactorTable::kName) {
    if (list_.renameFactor(place, text.trimmed().toStdString(), message)) return true;
    problem = QString::fromStdString(message);
    return false;
  }
  std::unique_ptr<Factor> factor;
  if (column == FactorTable::kKind) {
    const std::string kind = kindOfWord(text.toStdString());
    if (kind == old.typeName) return true;
    factor = changeKind(old, kind);
    if (!factor) problem = '\'' + text + "' is no distribution";
  } else {
    factor = readFactorFields(old.typeName, text.toStdString(), &old, message);
    problem = QString::fromStdString(message);
  }
  if (!factor || !mayBecome(list_, place, *factor, problem)) return false;
  factor->name = old.name;
  factor->note = old.note;
  list_.replaceFactor(place, std::move(factor));
  return true;
}

bool FactorCells::pasteFactor(const QStringList& row, const std::string& usualKind, QString& problem) {
  if (pasted_.empty())
    for (std::int32_t i = 0; i < list_.factorCount(); ++i) places_.emplace(list_.factor(i).name, i);
  const std::string name = row.value(0).trimmed().toStdString();
  std::string message = Factor::kNameRule.problem(name);
  if (message.empty() && !pasted_.insert(name).second) message = "another row has the name " + name;
  const auto known = places_.find(name);
  const int place = known == places_.end() ? -1 : known->second;
  const Factor* const old = place == -1 ? nullptr : &list_.factor(place);
  std::unique_ptr<Factor> factor = message.empty() ? readRow(row, old, usualKind, message) : nullptr;
  problem = QString::fromStdString(message);
  if (!factor || (old != nullptr && !mayBecome(list_, place, *factor, problem))) return false;
  factor->name = name;
  if (old == nullptr) {
    list_.addFactor(std::move(factor));
    return true;
  }
  factor->note = old->note;
  list_.replaceFactor(place, std::move(factor));
  return true;
}

bool FactorCells::pasteParameters(int place, int column, QStringList cells, QString& problem) {
  if (place >= list_.factorCount()) {
    problem = "there is no factor to take it";
    return false;
  }
  if (column == FactorTable::kKind && !set(place, column, cells.takeFirst(), problem)) return false;
  std::string parameters;
  std::string message;
  const bool joined = joinParameters(list_.factor(place).typeName, cells, parameters, message);
  problem = QString::fromStdString(message);
  return joined &&
         (parameters.empty() || set(place, FactorTable::kParameters, QString::fromStdString(parameters), problem));
}

}  // namespace tarvex
