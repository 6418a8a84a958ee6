#pragma once

#include "factors/Factor.h"

namespace tarvex {

// A factor of one value.
class Constant : public Factor {
 public:
  Constant() : Factor("Constant", "nonameConst") {}
  std::unique_ptr<Factor> clone() const override;
  std::int32_t getType() const override { return 5; }
  std::vector<Parameter> parameters() const override { return {{"value", value_}}; }

  double value() const { return value_; }
  void setValue(double value) { value_ = value; }

 protected:
  Constant(const Constant&) = default;
  void readParameters(TextReader& in) override;

 private:
  double value_ = 1.0;
};

}  // namespace tarvex
