#include "panels/prep/FactorEditing.h"

#include <algorithm>
#include <string>

#include "factors/factorFields.h"
#include "panels/prep/FactorCells.h"

namespace tarvex {
namespace {

QString counted(std::size_t count, const QString& one) {
  return count == 1 ? one : QString::number(count) + " factors";
}

// Whether the columns of a Stein sample, one a factor, stand for what they stood for.
bool fitsStein(const FactorList& before, const FactorList& after) {
  if (before.factorCount() != after.factorCount()) return false;
  for (std::int32_t i = 0; i < before.factorCount(); ++i)
    if (before.isCorrelatable(i) != after.isCorrelatable(i)) return false;
  return true;
}

// All rows of a block but empty ones, from `first` on; false, with the row and its reason, at the first that isn't
// taken.
bool allRows(const std::vector<QStringList>& rows, std::size_t first, const std::function<bool(std::size_t)>& paste,
             QString& problem) {
  for (std::size_t i = first; i < rows.size(); ++i) {
    if (rows[i].join("").trimmed().isEmpty() || paste(i)) continue;
    problem = QString("Nothing was pasted. Row %1: ").arg(i + 1) + problem.trimmed();
    return false;
  }
  return true;
}

}  // namespace

FactorEditing::FactorEditing(std::shared_ptr<const FactorList> list, Asks asks)
    : state_{std::move(list)}, saved_(state_.list), asks_(std::move(asks)) {}

void FactorEditing::set(const State& state) {
  state_ = state;
  state_.defaults.restore();
  asks_.changed();
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

bool FactorEditing::change(const QString& name, const Operation& operation, QString& problem, Order order) {
  const auto list = std::make_shared<FactorList>();
  std::string message;
  bool done = list->copyFrom(*state_.list, message);
  if (!done) problem = QString::fromStdString(message);
  done = done && operation(*list, problem);
  if (done && list->hasStein() && (order == Order::Changed || !fitsStein(*state_.list, *list))) {
    done = asks_.mayDropStein();
    list->dropStein();
  }
  if (done)
    enter(name, {list});
  else
    state_.defaults.restore();
  return done;
}

bool FactorEditing::add(std::unique_ptr<Factor> factor, QString& problem) {
  const QString name = QString::fromStdString(factor->name);
  return change(
      "Add " + name,
      [&](FactorList& list, QString&) {
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
        if (!FactorCells::mayBecome(list, place, *factor, why)) return false;
        if (!list.renameFactor(place, factor->name, message)) {
          why = QString::fromStdString(message);
          return false;
        }
        list.replaceFactor(place, std::move(factor));
        return true;
      },
      problem);
}

bool FactorEditing::setCells(const std::vector<int>& places, int column, const QString& text, QString& problem) {
  static constexpr const char* kNames[] = {"Rename ", "Distribution of ", "Parameters of "};
  const auto set = [&](FactorList& list, QString& why) {
    for (const int place : places) {
      if (FactorCells(list).set(place, column, text, why)) continue;
      if (places.size() > 1) why = QString::fromStdString(list.factor(place).name) + ": " + why.trimmed();
      return false;
    }
    return true;
  };
  const QString one = QString::fromStdString(list().factor(places.front()).name);
  return change(kNames[column] + counted(places.size(), one), set, problem);
}

bool FactorEditing::paste(const std::vector<QStringList>& rows, const std::string& kind, QString& problem) {
  const auto set = [&](FactorList& list, QString& why) {
    FactorCells cells(list);
    const auto paste = [&](std::size_t i) { return cells.pasteFactor(rows[i], kind, why); };
    return allRows(rows, FactorCells::isHeading(rows.front()) ? 1 : 0, paste, why);
  };
  return change("Paste " + counted(rows.size(), "a factor"), set, problem);
}

bool FactorEditing::pasteCells(int place, int column, const std::vector<QStringList>& rows, QString& problem) {
  const auto set = [&](FactorList& list, QString& why) {
    FactorCells cells(list);
    const auto paste = [&](std::size_t i) {
      return cells.pasteParameters(place + static_cast<int>(i), column, rows[i], why);
    };
    return allRows(rows, 0, paste, why);
  };
  return change("Paste " + counted(rows.size(), "cells of a factor"), set, problem);
}

bool FactorEditing::remove(const std::vector<int>& places, QString& problem) {
  const QString one = QString::fromStdString(list().factor(places.front()).name);
  return change(
      "Delete " + counted(places.size(), one),
      [&](FactorList& list, QString&) {
        std::vector<std::int32_t> kept;
        for (std::int32_t i = 0; i < list.factorCount(); ++i)
          if (!std::ranges::binary_search(places, i)) kept.push_back(i);
        list.arrange(kept);
        return true;
      },
      problem);
}

bool FactorEditing::move(const std::vector<int>& places, int before, QString& problem) {
  const int count = list().factorCount();
  std::vector<std::int32_t> order;
  const auto isMoved = [&](int place) { return std::ranges::binary_search(places, place); };
  for (int i = 0; i <= count; ++i) {
    if (i == before) order.insert(order.end(), places.begin(), places.end());
    if (i < count && !isMoved(i)) order.push_back(i);
  }
  if (order.size() != static_cast<std::size_t>(count) || std::ranges::is_sorted(order)) return true;  // as they are
  const QString one = QString::fromStdString(list().factor(places.front()).name);
  return change(
      "Move " + counted(places.size(), one),
      [&](FactorList& list, QString&) {
        list.arrange(order);
        return true;
      },
      problem, Order::Changed);
}

void FactorEditing::take(const QString& name, FactorList list) {
  enter(name, {std::make_shared<FactorList>(std::move(list))});
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
