#include "levele/LevelEModel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

#include "support/Numbers.h"

namespace levele {
namespace {

using tarvex::test::agrees;

using Layers = std::array<Layer, 2>;

struct Case {
  const char* name;
  Inputs inputs;
  std::vector<double> times;
};

// clang-format off
//                                 T    kI    kC    v1    v2   l1   l2 RI1 RI2 RC1 RC2    W
const Case kCases[] = {
    {"middle",                  {550, 3e-3, 3e-6, 1e-2, 3e-2, 300, 125,  3,  3, 16, 16, 1e6}, {5e4, 1e5, 2e5, 8e5}},
    {"fastest",                 {100, 1e-2, 1e-5, 1e-1, 1e-1, 100,  50,  1,  1,  3,  3, 1e5}, {800, 1500, 3e3, 2e4}},
    {"fast, slow leaching",     {999, 1e-3, 1e-6, 1e-1, 1e-1, 100,  50,  1,  1,  3,  3, 1e5}, {1800, 3e3, 6e3, 2e4}},
    {"slowest",                 {999, 1e-3, 1e-6, 1e-3, 1e-2, 500, 200,  5,  5, 30, 30, 1e7}, {8e5, 2e6, 5e6, 9e6}},
    {"slow first, fast second", {100, 1e-2, 1e-6, 1e-3, 1e-1, 100,  50,  5,  1,  3,  3, 1e6}, {2e5, 5e5, 9e5, 3e6}},
    {"fast first, slow second", {500, 1e-3, 1e-5, 1e-1, 1e-2, 500, 200,  1,  5,  3, 30, 1e6}, {4e4, 1e5, 2e5, 9e5}},
};
// clang-format on

// First passage through one layer: the answer to a unit pulse (A. Ogata, R. B. Banks, USGS Prof. Paper 411-A, 1961).
double passage(const Layer& layer, double t) {
  const double v = layer.velocity / layer.retention;
  const double d = 4.0 * layer.dispersion * v * t;
  return layer.length / (t * std::sqrt(std::numbers::pi * d)) * std::exp(-std::pow(layer.length - v * t, 2) / d);
}

// Share that has come out per year at `span` years after the leaching began, without decay: exponential leaching and
// both passages convolved on a grid.
double outflowPerAtom(double leach, const Layers& layers, double span) {
  constexpr int kGrid = 400000;
  const double dt = span / kGrid;
  const double kept = std::exp(-leach * dt);
  const double newer = 1.0 + std::expm1(-leach * dt) / (leach * dt);  // weights of the ends of a straight piece
  const double older = 1.0 - kept - newer;
  double released = 0.0;  // from layer 1
  double before = 0.0;
  double sum = 0.0;
  for (int i = 1; i < kGrid; ++i) {
    const double now = passage(layers[0], i * dt);
    released = released * kept + now * newer + before * older;
    before = now;
    sum += released * passage(layers[1], span - i * dt);
  }
  return sum * dt;
}

// The grid of the convolution is what limits the agreement: where next to nothing comes it doesn't resolve what came.
TEST(LevelEModel, iodineIsTheAnalyticSolution) {
  for (const Case& c : kCases) {
    const Inputs& x = c.inputs;
    const Layers layers = {{{x[3], x[5], x[7], 10.0}, {x[4], x[6], x[8], 5.0}}};
    for (const double time : c.times) {
      const double expected =
          56.0 * 0.73 / x[11] * 100.0 * std::exp(-4.41e-8 * time) * outflowPerAtom(x[1], layers, time - x[0]);
      EXPECT_TRUE(agrees(LevelEModel(x).dose(time).iodine, expected, 2e-4, 1e-30)) << c.name << " at " << time;
    }
  }
}

// Reference: finite volumes in space (central differences, cells of 1/10 and 1/20 of the dispersion length), two-stage
// implicit Runge-Kutta steps of 1/250 and 1/500 of the time, extrapolated; the last digits written are in doubt.
TEST(LevelEModel, chainIsTheFiniteVolumeSolution) {
  const struct {
    const Case& set;
    double time, dose;
  } references[] = {
      {kCases[0], 3e6, 7.911196e-14}, {kCases[0], 9e6, 3.284426e-13}, {kCases[1], 2e4, 3.431180e-07},
      {kCases[1], 9e4, 6.346423e-05}, {kCases[1], 3e5, 7.513180e-05}, {kCases[1], 1e6, 6.371440e-06},
      {kCases[4], 1e6, 1.864081e-10}, {kCases[4], 3e6, 1.590579e-09}, {kCases[4], 9e6, 3.556889e-09},
  };
  for (const auto& r : references)
    EXPECT_TRUE(agrees(LevelEModel(r.set.inputs).dose(r.time).chain, r.dose, 2e-5)) << r.set.name << " at " << r.time;
}

// With the same retention for all three, an atom moves the same way whatever it is: decay and transport separate.
TEST(ChainTransport, equalRetentionSeparatesDecay) {
  const double a = 3e-6, b = 2e-5, c = 9e-5;
  const std::vector<Nuclide> chain = {{1000, a, 1, 20}, {0, b, 1, 20}, {0, c, 1, 20}};
  const Layers layers = {{{0.1, 100, 3, 10}, {0.05, 50, 2, 5}}};
  Layers slowed = layers;
  for (Layer& layer : slowed) layer.retention *= 20;
  for (const double t : {3e4, 6e4, 1e5, 3e5, 1e6}) {
    const double moved = 1000.0 * outflowPerAtom(1e-5, slowed, t - 900);
    const double ea = std::exp(-a * t), eb = std::exp(-b * t), ec = std::exp(-c * t);
    const double amounts[] = {ea, a / (b - a) * (ea - eb),
                              a * b * (ea / ((b - a) * (c - a)) + eb / ((a - b) * (c - b)) + ec / ((a - c) * (b - c)))};
    for (std::size_t i = 0; i < 3; ++i) {
      std::vector<double> only(3, 0.0);
      only[i] = 1.0;
      EXPECT_TRUE(agrees(ChainTransport(chain, 1e-5, 900, layers).outflow(t, only), moved * amounts[i], 1e-5))
          << t << ' ' << i;
    }
  }
}

// With hardly any dispersion, leached at once and through one layer: a daughter that moves ten times as fast, seen at
// t, comes from a decay at a place and time that t tells.
TEST(ChainTransport, plugFlowGivesTheDaughter) {
  const double parent = 1e-5, daughter = 3e-5, passing = 1000.0;  // yr, without retention
  const ChainTransport transport({{1, parent, 1, 100}, {0, daughter, 1, 10}}, 1e3, 0,
                                 {{{0.1, 100, 1, 0.05}, {1, 1e-3, 1, 1e-4}}});
  for (const double t : {1.5e4, 3e4, 5e4, 8e4}) {
    const double asParent = (t - 10 * passing) / (1.0 - 10.0 / 100.0);
    const double expected = parent * std::exp(-parent * asParent - daughter * (t - asParent)) / (1.0 - 10.0 / 100.0);
    EXPECT_TRUE(agrees(transport.outflow(t, {0, 1}), expected, 2e-3)) << t;
  }
}

// Three nuclides of which only the last one is stable: all atoms come out in the end, as whatever they are by then.
TEST(ChainTransport, noAtomIsLost) {
  const std::vector<Nuclide> chain = {{7, 1e-4, 1, 100}, {2, 3e-4, 1, 10}, {1, 1e-15, 1, 100}};
  for (const double containment : {0.0, 1e4}) {
    const ChainTransport transport(chain, 1e-3, containment, {{{0.1, 100, 1, 10}, {0.1, 200, 2, 5}}});
    double mol = 0.0;
    const double step = 0.02;
    for (double u = std::log(1e2); u < std::log(1e8); u += step)
      mol += step * std::exp(u) * transport.outflow(containment + std::exp(u), {1, 1, 1});
    EXPECT_TRUE(agrees(mol, 10.0, 1e-6)) << containment;
  }
}

TEST(LevelEModel, halvedStepsChangeNothing) {
  // Ends and middles of the twelve ranges, put together at random.
  const Inputs low = {100, 1e-3, 1e-6, 1e-3, 1e-2, 100, 50, 1, 1, 3, 3, 1e5};
  const Inputs high = {1000, 1e-2, 1e-5, 1e-1, 1e-1, 500, 200, 5, 5, 30, 30, 1e7};
  std::mt19937 random(1);
  for (int run = 0; run < 150; ++run) {
    Inputs x;
    for (std::size_t i = 0; i < kFactors; ++i)
      x[i] = low[i] * std::pow(high[i] / low[i], static_cast<double>(random() % 3) / 2.0);
    const LevelEModel model(x);
    for (const double time : LevelEModel::times()) {
      EXPECT_TRUE(agrees(model.dose(time).iodine, model.dose(time, 1).iodine, 1e-8)) << run << " at " << time;
      EXPECT_TRUE(agrees(model.dose(time).chain, model.dose(time, 1).chain, 1e-8)) << run << " at " << time;
    }
  }
}

}  // namespace
}  // namespace levele
