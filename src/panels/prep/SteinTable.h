#pragma once

#include "toolkit/TableSource.h"

namespace tarvex {

class CorrelationDraft;

// The rows of a draft's Stein sample, a column a factor. The draft outlives it.
class SteinTable : public TableSource {
 public:
  explicit SteinTable(const CorrelationDraft& draft) : draft_(draft) {}

  int rows() const override;
  int columns() const override;
  QString header(int column) const override;
  QString text(int row, int column) const override;
  double number(int row, int column) const override;

 private:
  const CorrelationDraft& draft_;
};

}  // namespace tarvex
