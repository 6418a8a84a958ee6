#pragma once

#include <QStringList>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "factors/FactorList.h"

namespace tarvex {

// Factors of a list as a user writes them into cells: typed one by one or pasted in rows. Each operation is false, with
// the reason, for what isn't taken; of the list nothing is changed then.
class FactorCells {
 public:
  explicit FactorCells(FactorList& list);

  // Another name, kind or other parameters for the factor of the place; the columns are those of FactorTable.
  bool set(int place, int column, const QString& text, QString& problem);
  // Name, kind, parameters. A name that is known changes that factor, of which what isn't said stays; another adds one,
  // of the usual kind where none is said.
  bool pasteFactor(const QStringList& row, const std::string& usualKind, QString& problem);
  // The same from a column behind the name on, for the factor of the place.
  bool pasteParameters(int place, int column, QStringList cells, QString& problem);

  static bool isHeading(const QStringList& row);
  // False, with the reason, where the factor of the place can't become this one.
  static bool mayBecome(const FactorList& list, int place, const Factor& factor, QString& problem);

 private:
  FactorList& list_;
  std::unordered_map<std::string, int> places_;  // of the factors that were there
  std::unordered_set<std::string> pasted_;       // names
};

}  // namespace tarvex
