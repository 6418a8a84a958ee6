#pragma once

#include <cstdint>
#include <memory>

#include "toolkit/Panel.h"

namespace tarvex {

class FactorList;

// How the sample file lists the sample: run by run or factor by factor.
class POutputSelection : public Panel {
 public:
  POutputSelection(const Display& display, std::shared_ptr<const FactorList> factors, std::int32_t order,
                   QWidget* parent);

  // 0 by run, 1 by factor. Of use once the panel was accepted.
  std::int32_t order();

 private:
  void scroll(int by);

  std::shared_ptr<const FactorList> factors_;
};

}  // namespace tarvex
