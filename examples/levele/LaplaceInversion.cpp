#include "levele/LaplaceInversion.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace levele {
namespace {

using Complex = std::complex<double>;

constexpr int kSaddleSteps = 24;       // of golden section: the saddle to 1e-4 of its distance
constexpr double kSaddleLower = 0.5;   // times 1 / time: nearer to a singularity the path would have to bend around it
constexpr double kOpening = 12.0;      // times 1 / time: least focal distance of the path
constexpr double kTolerance = 1e-5;    // of two step sizes; the error of the finer one is about its square
constexpr double kNegligible = 1e-13;  // of the largest term
constexpr int kNegligibleInARow = 8;   // terms that end the sum
constexpr int kHalvings = 8;
constexpr int kMaximumTerms = 20000;

// The integrand of the Bromwich integral along the parabola s = vertex + focal * (2 i y - y^2), which is open to the
// left. The vertex is the saddle on the real axis: there, and nowhere else on a vertical line, the integrand of a
// positive function is largest, so that the sum has no cancellation (method of steepest descent; for one
// layer the parabola with its focus in the branch point is the exact path).
class Path {
 public:
  Path(const LaplaceTransform& transform, double time) : transform_(transform), time_(time) {
    findSaddle();
    focal_ = std::max(vertex_ - transform.singularity, kOpening / time);
    // Standard deviation of the function weighted with exp(-vertex * t), turned into a step of y.
    const double d = 0.1 * (vertex_ - transform.singularity);
    const double curvature = (logarithm(vertex_ + d) - 2.0 * peak_ + logarithm(vertex_ - d)) / (d * d);
    step_ = 1.0 / (std::sqrt(std::max(curvature, 1e-300)) * 2.0 * focal_);
  }

  double peak() const { return peak_; }
  double focal() const { return focal_; }
  double step() const { return step_; }

  // Relative to the size of the integrand at the vertex.
  double term(double y) const {
    const Complex s(vertex_ - focal_ * y * y, 2.0 * focal_ * y);
    const ScaledValue f = transform_.at(s);
    return std::real(f.value * std::exp(Complex(f.exponent - peak_, 0.0) + s * time_) * Complex(1.0, y));
  }

 private:
  double logarithm(double s) const {
    const ScaledValue f = transform_.at(s);
    return std::log(f.value.real()) + f.exponent + s * time_;
  }

  // The logarithm of the integrand is convex on the real axis.
  void findSaddle() {
    const double ratio = transform_.reach / time_;
    double left = std::log(kSaddleLower / time_);
    double right = std::log(ratio * ratio + 20.0 / time_);
    const double golden = std::numbers::phi - 1.0;
    const auto valueAt = [&](double u) { return logarithm(transform_.singularity + std::exp(u)); };
    double a = right - golden * (right - left);
    double b = left + golden * (right - left);
    double atA = valueAt(a);
    double atB = valueAt(b);
    for (int i = 0; i < kSaddleSteps; ++i) {
      if (atA < atB) {
        right = b;
        b = a;
        atB = atA;
        a = right - golden * (right - left);
        atA = valueAt(a);
      } else {
        left = a;
        a = b;
        atA = atB;
        b = left + golden * (right - left);
        atB = valueAt(b);
      }
    }
    vertex_ = transform_.singularity + std::exp(0.5 * (left + right));
    peak_ = logarithm(vertex_);
  }

  const LaplaceTransform& transform_;
  double time_;
  double vertex_ = 0.0;
  double peak_ = 0.0;  // logarithm of the integrand at the vertex
  double focal_ = 0.0;
  double step_ = 0.0;
};

// Terms at first, first + step, ... until they don't count any more.
double sumTerms(const Path& path, double first, double step) {
  double sum = 0.0;
  double largest = 0.0;
  int negligible = 0;
  for (int i = 0; i < kMaximumTerms && negligible < kNegligibleInARow; ++i) {
    const double term = path.term(first + i * step);
    sum += term;
    largest = std::max(largest, std::abs(term));
    negligible = std::abs(term) < kNegligible * largest ? negligible + 1 : 0;
  }
  return sum;
}

}  // namespace

double invertLaplace(const LaplaceTransform& transform, double time, int refinement) {
  const Path path(transform, time);
  constexpr double kUnderflow = -700.0;
  if (path.peak() < kUnderflow) return 0.0;

  // The trapezoidal rule converges geometrically; a finer sum keeps the terms of the coarser one.
  double step = path.step();
  double sum = sumTerms(path, step, step) + 0.5 * path.term(0.0);
  for (int i = 0; i < kHalvings; ++i) {
    const double coarse = sum * step;
    sum += sumTerms(path, 0.5 * step, step);
    step *= 0.5;
    if (std::abs(sum * step - coarse) <= kTolerance * std::abs(coarse) && refinement-- <= 0) break;
  }
  const double result = 2.0 * path.focal() / std::numbers::pi * sum * step * std::exp(path.peak());
  return result < 0.0 ? 0.0 : result;
}

}  // namespace levele
