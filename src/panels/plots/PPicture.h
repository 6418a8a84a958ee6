#pragma once

#include <cstddef>
#include <vector>

#include "panels/plots/RunPanel.h"
#include "plots/Figure.h"

namespace tarvex {

// A picture of several planes over runs, or of one that shows no single runs.
class PPicture : public RunPanel {
 public:
  // `columns`: of a matrix of scattergrams, in which a drag frames a region; empty for any other picture.
  PPicture(ResultDesk& desk, std::shared_ptr<Selection> selection, const QString& title, Figure figure,
           std::vector<std::size_t> columns);

 protected:
  void showSelection() override;

 private:
  // Of the plane of that number, row by row.
  std::size_t across(std::size_t chart) const { return columns_[chart % columns_.size()]; }
  std::size_t up(std::size_t chart) const { return columns_[chart / columns_.size()]; }

  std::vector<std::size_t> columns_;
};

}  // namespace tarvex
