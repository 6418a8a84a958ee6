#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "levele/ChainTransport.h"

namespace levele {

inline constexpr std::size_t kFactors = 12;
// In the order in which a table without names has them.
inline constexpr std::array<std::string_view, kFactors> kFactorNames = {"T",  "kI",  "kC",  "v1",  "v2",  "l1",
                                                                        "l2", "RI1", "RI2", "RC1", "RC2", "W"};
using Inputs = std::array<double, kFactors>;  // units: README.md

struct Dose {  // Sv/yr
  double iodine = 0.0;
  double chain = 0.0;
  double total() const { return iodine + chain; }
};

// Release from a waste vault through two layers of the geosphere into a stream that people drink from.
class LevelEModel {
 public:
  // Requires: inputError gives no text for the inputs.
  explicit LevelEModel(const Inputs& inputs);

  // Why the model can't take them ("v1 must be above 0"); empty when it can.
  static std::string inputError(const Inputs& inputs);
  // 26 times from 2e4 to 9e6 yr: 2, 3, ... 9 in each decade.
  static std::vector<double> times();

  Dose dose(double time, int refinement = 0) const;

  const ChainTransport& iodine() const { return iodine_; }
  const ChainTransport& chain() const { return chain_; }

 private:
  ChainTransport iodine_;
  ChainTransport chain_;
  double streamFlow_;
};

}  // namespace levele
