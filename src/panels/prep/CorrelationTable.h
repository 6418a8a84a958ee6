#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "toolkit/TableSource.h"

namespace tarvex {

class CorrelationDraft;

// The rank correlation matrix of a draft, with the names of the factors above and beside it. Who has the draft makes
// the changes.
class CorrelationTable : public EditableTableSource {
 public:
  // Each answers why not, or nothing.
  struct Changes {
    std::function<QString(int row, int column, const QString& text)> edit;
    std::function<QString(int row, int column, const std::vector<QStringList>& block)> paste;
  };

  // Without changes the table is for reading. The draft outlives it.
  CorrelationTable(const CorrelationDraft& draft, Changes changes);

  int rows() const override;
  int columns() const override { return rows(); }
  QString header(int column) const override { return names_[column]; }
  QString rowName(int row) const override { return names_[row]; }
  QString text(int row, int column) const override;
  double number(int row, int column) const override;

  bool isEditable(int row, int column) const override { return changes_.edit && row != column; }
  QString setText(int row, int column, const QString& text) override;
  QString setBlock(int row, int column, const std::vector<QStringList>& block) override;

 private:
  const CorrelationDraft& draft_;
  Changes changes_;
  QStringList names_;
};

}  // namespace tarvex
