#include "levele/ChainTransport.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace levele {
namespace {

using Complex = std::complex<double>;

// (1 - exp(-z)) / z
Complex decreasing(Complex z) {
  if (std::abs(z) > 1e-2) return (1.0 - std::exp(-z)) / z;
  return 1.0 - z / 2.0 * (1.0 - z / 3.0 * (1.0 - z / 4.0 * (1.0 - z / 5.0)));  // next term below 1e-12
}

double retentionOf(const Nuclide& nuclide, const Layer& layer) {
  return layer.retention * nuclide.retention;
}

}  // namespace

ChainTransport::ChainTransport(std::vector<Nuclide> chain, double leachRate, double containment,
                               const std::array<Layer, 2>& layers)
    : chain_(std::move(chain)), leachRate_(leachRate), containment_(containment), layers_(layers) {
  decayInContainment();
}

// H. Bateman, Proc. Cambridge Phil. Soc. 15, 1910. All decay constants of a chain differ.
void ChainTransport::decayInContainment() {
  const std::vector<Nuclide> start = chain_;
  for (std::size_t i = 0; i < chain_.size(); ++i) {
    double amount = 0.0;
    for (std::size_t j = 0; j <= i; ++j) {
      double share = start[j].inventory;
      for (std::size_t k = j; k < i; ++k) share *= start[k].decay;
      for (std::size_t k = j; k <= i; ++k) {
        double term = share * std::exp(-start[k].decay * containment_);
        for (std::size_t m = j; m <= i; ++m)
          if (m != k) term /= start[m].decay - start[k].decay;
        amount += term;
      }
    }
    chain_[i].inventory = amount;
  }
}

double ChainTransport::rightmostSingularity() const {
  double rightmost = -HUGE_VAL;
  for (const Nuclide& nuclide : chain_) {
    rightmost = std::max(rightmost, -nuclide.decay - leachRate_);  // pole of the source
    for (const Layer& layer : layers_)                             // branch point of the layer
      rightmost =
          std::max(rightmost, -nuclide.decay - layer.velocity / (4.0 * layer.dispersion * retentionOf(nuclide, layer)));
  }
  return rightmost;
}

// The flow F of nuclide i through a layer obeys
//   R_i dF_i/dt + v dF_i/dx - v a d2F_i/dx2 = -decay_i R_i F_i + decay_(i-1) R_(i-1) F_(i-1),
// F(0, t) given, F(infinity, t) = 0. With sigma_i = R_i (s + decay_i) and h(sigma) = exp(x (1 - q) / (2 a)),
// q = sqrt(1 + 4 a sigma / v), its transform is the sum over the ancestors j of
//   F_j(0) * (-decay_j R_j) ... (-decay_(i-1) R_(i-1)) * h[sigma_j, ..., sigma_i],
// a divided difference, which stays smooth where two sigma meet. Returns the exponent that all flows are to be scaled
// with.
double ChainTransport::passLayer(const Layer& layer, Complex s, Amounts& flow) const {
  const std::size_t n = chain_.size();
  Amounts sigma;
  Amounts root;
  Amounts exponent;
  for (std::size_t i = 0; i < n; ++i) {
    sigma[i] = retentionOf(chain_[i], layer) * (s + chain_[i].decay);
    root[i] = std::sqrt(1.0 + 4.0 * layer.dispersion / layer.velocity * sigma[i]);
    exponent[i] = -2.0 * layer.length / layer.velocity * sigma[i] / (1.0 + root[i]);
  }
  double scale = exponent[0].real();
  for (std::size_t i = 1; i < n; ++i) scale = std::max(scale, exponent[i].real());

  std::array<Amounts, kLongestChain> difference;  // [order][first]
  for (std::size_t i = 0; i < n; ++i) difference[0][i] = std::exp(exponent[i] - scale);
  for (std::size_t i = 0; i + 1 < n; ++i) {
    // (h_i - h_(i+1)) / (sigma_i - sigma_(i+1)) without its cancellation, from the larger of the two.
    const std::size_t large = exponent[i].real() > exponent[i + 1].real() ? i : i + 1;
    const std::size_t small = 2 * i + 1 - large;
    const Complex slope = 2.0 * layer.length / layer.velocity / (root[i] + root[i + 1]);
    difference[1][i] = -slope * difference[0][large] * decreasing(exponent[large] - exponent[small]);
  }
  if (n == 3) difference[2][0] = (difference[1][0] - difference[1][1]) / (sigma[0] - sigma[2]);

  for (std::size_t i = n; i-- > 0;) {
    Complex sum = 0.0;
    double ingrowth = 1.0;
    for (std::size_t j = i + 1; j-- > 0;) {
      sum += ingrowth * flow[j] * difference[i - j][j];
      if (j > 0) ingrowth *= -chain_[j - 1].decay * retentionOf(chain_[j - 1], layer);
    }
    flow[i] = sum;
  }
  return scale;
}

ScaledValue ChainTransport::transform(Complex s, const std::vector<double>& weights) const {
  Amounts flow;
  Complex left = 0.0;  // of the parent in the vault
  for (std::size_t i = 0; i < chain_.size(); ++i) {
    const double ingrowth = i ? chain_[i - 1].decay : 0.0;
    left = (chain_[i].inventory + ingrowth * left) / (s + chain_[i].decay + leachRate_);
    flow[i] = leachRate_ * left;
  }
  ScaledValue result;
  for (const Layer& layer : layers_) result.exponent += passLayer(layer, s, flow);
  for (std::size_t i = 0; i < chain_.size(); ++i) result.value += weights[i] * flow[i];
  return result;
}

double ChainTransport::outflow(double time, const std::vector<double>& weights, int refinement) const {
  if (time <= containment_) return 0.0;
  LaplaceTransform laplace;
  laplace.at = [&](Complex s) { return transform(s, weights); };
  laplace.singularity = rightmostSingularity();
  for (const Layer& layer : layers_) {
    double slowest = 0.0;
    for (const Nuclide& nuclide : chain_) slowest = std::max(slowest, retentionOf(nuclide, layer));
    laplace.reach += layer.length * std::sqrt(slowest / (layer.velocity * layer.dispersion));
  }
  return invertLaplace(laplace, time - containment_, refinement);
}

double ChainTransport::doseFlow(double time, int refinement) const {
  std::vector<double> weights;
  for (const Nuclide& nuclide : chain_) weights.push_back(nuclide.doseFactor);
  return outflow(time, weights, refinement);
}

}  // namespace levele
