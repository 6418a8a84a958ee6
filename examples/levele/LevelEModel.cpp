#include "levele/LevelEModel.h"

#include <cmath>

namespace levele {
namespace {

enum Factor { kT, kKI, kKC, kV1, kV2, kL1, kL2, kRI1, kRI2, kRC1, kRC2, kW };

// OECD Nuclear Energy Agency, PSACOIN Level E intercomparison, Paris 1989.
constexpr double kWaterIntake = 0.73;                       // m3/yr, of one person
constexpr std::array<double, 2> kDispersion = {10.0, 5.0};  // m

// clang-format off
const std::vector<Nuclide> kIodine = {
    {.inventory = 100.0,  .decay = 4.41e-8, .doseFactor = 56.0,  .retention = 1.0},    // I-129
};
const std::vector<Nuclide> kChain = {
    {.inventory = 1000.0, .decay = 3.24e-7, .doseFactor = 6.8e3, .retention = 100.0},  // Np-237
    {.inventory = 100.0,  .decay = 4.37e-6, .doseFactor = 5.9e3, .retention = 10.0},   // U-233
    {.inventory = 1000.0, .decay = 9.44e-5, .doseFactor = 1.8e6, .retention = 100.0},  // Th-229
};
// clang-format on

std::array<Layer, 2> layersOf(const Inputs& x, double retention1, double retention2) {
  return {{{.velocity = x[kV1], .length = x[kL1], .retention = retention1, .dispersion = kDispersion[0]},
           {.velocity = x[kV2], .length = x[kL2], .retention = retention2, .dispersion = kDispersion[1]}}};
}

}  // namespace

LevelEModel::LevelEModel(const Inputs& inputs)
    : iodine_(kIodine, inputs[kKI], inputs[kT], layersOf(inputs, inputs[kRI1], inputs[kRI2])),
      chain_(kChain, inputs[kKC], inputs[kT], layersOf(inputs, inputs[kRC1], inputs[kRC2])),
      streamFlow_(inputs[kW]) {}

std::string LevelEModel::inputError(const Inputs& inputs) {
  for (std::size_t i = 0; i < kFactors; ++i) {
    const std::string name(kFactorNames[i]);
    if (!std::isfinite(inputs[i])) return name + " must be a number";
    if (i == kT && inputs[i] < 0.0) return name + " must not be below 0";
    if (i != kT && inputs[i] <= 0.0) return name + " must be above 0";
  }
  return {};
}

std::vector<double> LevelEModel::times() {
  std::vector<double> times;
  for (const double decade : {1e4, 1e5, 1e6})
    for (int i = decade == 1e4 ? 2 : 1; i <= 9; ++i) times.push_back(i * decade);
  return times;
}

Dose LevelEModel::dose(double time, int refinement) const {
  const double dilution = kWaterIntake / streamFlow_;
  return {.iodine = dilution * iodine_.doseFlow(time, refinement),
          .chain = dilution * chain_.doseFlow(time, refinement)};
}

}  // namespace levele
