#pragma once

#include "panels/plots/PHistogram.h"

namespace tarvex {

// The histogram of one column, which can be changed for another.
class PSingleFactor : public PHistogram {
 public:
  // Requires: a column that there is.
  PSingleFactor(ResultDesk& desk, std::shared_ptr<Selection> selection, std::size_t column);

 protected:
  void showColumns(std::vector<std::size_t> columns) override;
};

}  // namespace tarvex
