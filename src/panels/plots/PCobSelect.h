#pragma once

#include <QString>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "plots/RunTable.h"
#include "toolkit/Panel.h"

namespace tarvex {

// The bounds of a cobweb's axes as numbers. What is typed for one axis is kept while another is looked at; nothing
// counts until it is applied.
class PCobSelect : public Panel {
 public:
  struct Bounds {
    std::size_t column = 0;
    std::optional<std::pair<double, double>> filter;  // nothing: the full range
  };

  // The table outlives the panel.
  PCobSelect(const Display& display, const RunTable& table, const std::vector<std::size_t>& columns,
             const std::vector<RunRange>& filters, QWidget* parent);

  // Of each column, once it was accepted.
  const std::vector<Bounds>& bounds() const { return bounds_; }

 private:
  // As it stands in the fields.
  struct Draft {
    QString lower, upper;
    QString fullLower, fullUpper;
  };

  std::size_t axis();
  void choose();
  void edited();
  void reset();
  void apply();
  // What is wrong with an axis, and its bounds where nothing is.
  QString read(std::size_t axis, Bounds& bounds) const;

  std::vector<Bounds> bounds_;
  std::vector<Draft> drafts_;
};

}  // namespace tarvex
