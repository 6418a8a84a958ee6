#pragma once

#include "panels/sampling/FixedTable.h"
#include "panels/sampling/PMethod.h"

namespace tarvex {

class TableView;

// The panel of the fixed samples: every run and every value, typed, pasted or read from a file.
class PFixed : public PMethod {
 public:
  // `usual` is the run that new rows begin with.
  PFixed(const Display& display, const MethodContext& context, const std::vector<double>& usual, QWidget* parent);

 protected:
  SamplerSettings read(Refusal& refusal) override;
  std::unique_ptr<Sampler> draft(Refusal& refusal) override;

 private:
  void add();
  void remove();
  void load();
  void save();
  void scrollTitle();
  void selectRow(int row);
  void rowsChanged(int selected);
  TableView* view();

  std::shared_ptr<FixedTable> table_;
};

}  // namespace tarvex
