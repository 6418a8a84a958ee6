#pragma once

#include "panels/vels/PSaResult.h"

namespace tarvex {

// The regression measures: one of the seven at a time, with ranks, significance and the coefficients of determination.
class PSaRandom : public PSaResult {
 public:
  PSaRandom(ResultDesk& desk, const SaKind& kind);

 protected:
  std::vector<std::int32_t> slots(SaForm form) const override;
  void showState() override;

 private:
  void indexChanged();
  void alphaChanged();
  void visualSA();
  void showAll();
  void showDetermination();
  void showAlpha();

  std::int32_t measure_;
};

}  // namespace tarvex
