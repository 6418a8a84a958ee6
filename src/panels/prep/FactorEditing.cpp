#include "panels/prep/FactorEditing.h"

#include <algorithm>

#include "factors/TruncatedDistribution.h"
#include "factors/changeKind.h"
#include "factors/factorFields.h"
#include "factors/makeFactor.h"
#include "panels/prep/FactorTable.h"
#include "panels/prep/PDefinition.h"

namespace tarvex {
namespace {

double defaultLeft() {
  return TruncatedDistribution::defaultLeftTruncation();
}

double defaultRight() {
  return TruncatedDistribution::defaultRightTruncation();
}

QString counted(std::size_t count, const QString& one) {
  return count == 1 ? one : QString::number(count) + " factors";
}

// False, with the reason, where the factor of the place can't become this one.
bool mayBecome(const FactorList& list, int place, const Factor& factor, QString& problem) {
  if (factor.isStochastic() || !list.isCorrelated(place)) return true;
  problem = kCorrelatedKind;
  return false;
}

// The factor of the place with another name, kind or parameters.
bool setCell(FactorList& list, int place, int column, const QString& text, QString& problem) {
  const Factor& old = list.factor(place);
  std::string message;
  if (column == FactorTable::kName) {
    if (list.renameFactor(place, text.trimmed().toStdString(), message)) return true;
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
  if (!factor || !mayBecome(list, place, *factor, problem)) return false;
  factor->name = old.name;
  factor->note = old.note;
  list.replaceFactor(place, std::move(factor));
  return true;
}

bool isHeading(const QStringList& row) {
  const QString first = row.value(0).trimmed().toLower();
  return (first == "name" || first == "factor") && kindOfWord(row.value(1).toStdString()).empty();
}

bool pasteRow(FactorList& list, const QStringList& row, const std::string& usualKind, QString& problem) {
  const std::string name = row.value(0).trimmed().toStdString();
  const int place = list.indexOf(name);
  const Factor* const old = place == -1 ? nullptr : &list.factor(place);
  std::string message = Factor::kNameRule.problem(name);
  std::string kind = row.value(1).trimmed().isEmpty() ? old != nullptr ? old->typeName : usualKind
                                                      : kindOfWord(row.value(1).toStdString());
  QStringList cells;
  for (const QString& cell : row.mid(2))
    if (!cell.trimmed().isEmpty()) cells << cell.trimmed();
  std::unique_ptr<Factor> factor;
  if (message.empty() && kind.empty()) message = '\'' + row.value(1).trimmed().toStdString() + "' is no distribution";
  if (message.empty())
    factor = cells.isEmpty() ? makeFactor(kind) : readFactorFields(kind, cells.join(' ').toStdString(), old, message);
  problem = QString::fromStdString(message);
  if (!factor || (old != nullptr && !mayBecome(list, place, *factor, problem))) return false;
  factor->name = name;
  if (old == nullptr) {
    list.addFactor(std::move(factor));
    return true;
  }
  factor->note = old->note;
  list.replaceFactor(place, std::move(factor));
  return true;
}

}  // namespace

FactorEditing::FactorEditing(std::shared_ptr<const FactorList> list, std::function<void()> changed)
    : state_{std::move(list), defaultLeft(), defaultRight()}, start_(state_), changed_(std::move(changed)) {}

void FactorEditing::restoreDefaults() const {
  static_cast<void>(TruncatedDistribution::setDefaultTruncations(start_.left, start_.right));  // they were in force
}

void FactorEditing::set(const State& state) {
  state_ = state;
  static_cast<void>(TruncatedDistribution::setDefaultTruncations(state.left, state.right));  // they were in force
  modified_ = true;
  changed_();
}

void FactorEditing::enter(const QString& name, const State& after) {
  const State before = state_;
  const auto setter = [this](const State& state) {
    return [this, state] {
      set(state);
      return true;
    };
  };
  undo_.push(name, setter(before), setter(after));
  set(after);
}

bool FactorEditing::change(const QString& name, const Operation& operation, QString& problem) {
  const auto list = std::make_shared<FactorList>();
  std::string message;
  if (!list->copyFrom(*state_.list, message)) {
    problem = QString::fromStdString(message);
    return false;
  }
  if (!operation(*list, problem)) return false;
  enter(name, {list, defaultLeft(), defaultRight()});
  return true;
}

bool FactorEditing::dropsStein(int place, const Factor& factor) const {
  if (!list().hasStein()) return false;
  return place < 0 || list().factor(place).isStochastic() != factor.isStochastic();
}

bool FactorEditing::add(std::unique_ptr<Factor> factor, QString& problem) {
  const QString name = QString::fromStdString(factor->name);
  return change(
      "Add " + name,
      [&](FactorList& list, QString&) {
        list.dropStein();
        list.addFactor(std::move(factor));
        return true;
      },
      problem);
}

bool FactorEditing::replace(int place, std::unique_ptr<Factor> factor, QString& problem) {
  const QString name = QString::fromStdString(list().factor(place).name);
  return change(
      "Change " + name,
      [&](FactorList& list, QString& why) {
        std::string message;
        if (!mayBecome(list, place, *factor, why)) return false;
        if (!list.renameFactor(place, factor->name, message)) {
          why = QString::fromStdString(message);
          return false;
        }
        if (dropsStein(place, *factor)) list.dropStein();
        list.replaceFactor(place, std::move(factor));
        return true;
      },
      problem);
}

bool FactorEditing::setCells(const std::vector<int>& places, int column, const QString& text, QString& problem) {
  static constexpr const char* kNames[] = {"Rename ", "Distribution of ", "Parameters of "};
  const auto set = [&](FactorList& list, QString& why) {
    for (const int place : places) {
      const bool was = list.isCorrelatable(place) == 1;
      if (!setCell(list, place, column, text, why)) {
        if (places.size() > 1) why = QString::fromStdString(list.factor(place).name) + ": " + why.trimmed();
        return false;
      }
      if (list.hasStein() && was != (list.isCorrelatable(place) == 1)) list.dropStein();
    }
    return true;
  };
  const QString one = QString::fromStdString(list().factor(places.front()).name);
  return change(kNames[column] + counted(places.size(), one), set, problem);
}

bool FactorEditing::paste(const std::vector<QStringList>& rows, const std::string& kind, QString& problem) {
  const auto set = [&](FactorList& list, QString& why) {
    const std::int32_t sampled = list.correlatableCount();
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (rows[i].join("").trimmed().isEmpty() || (i == 0 && isHeading(rows[i]))) continue;
      if (pasteRow(list, rows[i], kind, why)) continue;
      why = QString("Nothing was pasted. Row %1: ").arg(i + 1) + why.trimmed();
      return false;
    }
    if (list.correlatableCount() != sampled) list.dropStein();
    return true;
  };
  return change("Paste " + counted(rows.size(), "a factor"), set, problem);
}

bool FactorEditing::remove(const std::vector<int>& places, QString& problem) {
  const QString one = QString::fromStdString(list().factor(places.front()).name);
  return change(
      "Delete " + counted(places.size(), one),
      [&](FactorList& list, QString&) {
        std::vector<std::int32_t> kept;
        for (std::int32_t i = 0; i < list.factorCount(); ++i)
          if (std::ranges::find(places, i) == places.end()) kept.push_back(i);
        list.dropStein();
        list.arrange(kept);
        return true;
      },
      problem);
}

bool FactorEditing::move(const std::vector<int>& places, int before, QString& problem) {
  const int count = list().factorCount();
  std::vector<std::int32_t> order;
  const auto isMoved = [&](int place) { return std::ranges::find(places, place) != places.end(); };
  for (int i = 0; i <= count; ++i) {
    if (i == before) order.insert(order.end(), places.begin(), places.end());
    if (i < count && !isMoved(i)) order.push_back(i);
  }
  if (order.size() != static_cast<std::size_t>(count) || std::ranges::is_sorted(order)) return true;  // as they are
  const QString one = QString::fromStdString(list().factor(places.front()).name);
  return change(
      "Move " + counted(places.size(), one),
      [&](FactorList& list, QString&) {
        list.dropStein();
        list.arrange(order);
        return true;
      },
      problem);
}

void FactorEditing::take(const QString& name, FactorList list) {
  enter(name, {std::make_shared<FactorList>(std::move(list)), defaultLeft(), defaultRight()});
}

bool FactorEditing::setTruncations(const std::vector<int>& places, double left, double right, QString& problem) {
  return change(
      "Default truncations",
      [&](FactorList& list, QString& why) {
        for (const int place : places) {
          std::vector<double> numbers;
          for (const Parameter& parameter : list.factor(place).parameters())
            numbers.push_back(std::string(parameter.name) == "left truncation"    ? left
                              : std::string(parameter.name) == "right truncation" ? right
                                                                                  : parameter.value);
          std::unique_ptr<Factor> factor = makeFactorOf(list.factor(place).typeName, numbers);
          if (!factor || !factor->parameterProblem().empty()) {
            why = "Error setting default truncations";
            return false;
          }
          factor->name = list.factor(place).name;
          factor->note = list.factor(place).note;
          list.replaceFactor(place, std::move(factor));
        }
        return true;
      },
      problem);
}

}  // namespace tarvex
