#include "factors/NumericRoutines.h"

#include <boost/math/policies/policy.hpp>
#include <boost/math/special_functions/beta.hpp>
#include <boost/math/special_functions/erf.hpp>
#include <boost/math/special_functions/gamma.hpp>
#include <cmath>
#include <limits>

namespace tarvex {
namespace {

namespace policies = boost::math::policies;

// Results alike on every machine, long double or not, and a returned nan or inf instead of an exception.
using NumericPolicy = policies::policy<
    policies::promote_float<false>, policies::promote_double<false>, policies::domain_error<policies::ignore_error>,
    policies::pole_error<policies::ignore_error>, policies::overflow_error<policies::ignore_error>,
    policies::underflow_error<policies::ignore_error>, policies::denorm_error<policies::ignore_error>,
    policies::evaluation_error<policies::ignore_error>, policies::rounding_error<policies::ignore_error>,
    policies::indeterminate_result_error<policies::ignore_error>>;
constexpr NumericPolicy kPolicy;

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();
constexpr double kSqrt2 = 1.4142135623730950488;

// The selector's check, then that of one argument after the other: the first failure stands.
class Checks {
 public:
  Checks(int which, int& status, double& bound) : status_(status), bound_(bound) {
    status_ = 0;
    require(which >= 1, -1, 1.0);
    require(which <= 1, -1, 4.0);
  }
  Checks& require(bool holds, int status, double bound) {
    if (status_ == 0 && !holds) {
      status_ = status;
      bound_ = bound;
    }
    return *this;
  }
  bool passed() const { return status_ == 0; }

 private:
  int& status_;
  double& bound_;
};

// One tail as it was computed, and the other.
void setTails(double computed, double& tail, double& other) {
  tail = computed;
  other = 1.0 - computed;
}

}  // namespace

void cdfNormal(int which, double& p, double& q, double x, double mean, double sd, int& status, double& bound) {
  if (!Checks(which, status, bound).require(sd > 0.0, -6, 0.0).passed()) return;
  // The smaller tail is computed, the other is its complement: both keep their full precision.
  const double z = (x - mean) / sd;
  if (z <= 0.0) {
    setTails(0.5 * boost::math::erfc(-z / kSqrt2, kPolicy), p, q);
  } else {
    setTails(0.5 * boost::math::erfc(z / kSqrt2, kPolicy), q, p);
  }
}

void cdfGamma(int which, double& p, double& q, double x, double shape, double scale, int& status, double& bound) {
  Checks checks(which, status, bound);
  checks.require(x >= 0.0, -4, 0.0).require(shape > 0.0, -5, 0.0).require(scale > 0.0, -6, 0.0);
  if (!checks.passed()) return;
  const double z = x * scale;
  if (z <= 0.0) {
    setTails(0.0, p, q);
  } else if (std::isinf(z)) {
    setTails(0.0, q, p);
  } else if (z < shape) {
    setTails(boost::math::gamma_p(shape, z, kPolicy), p, q);
  } else {
    setTails(boost::math::gamma_q(shape, z, kPolicy), q, p);
  }
}

void cdfBeta(int which, double& p, double& q, double x, double y, double a, double b, int& status, double& bound) {
  Checks checks(which, status, bound);
  checks.require(x >= 0.0, -4, 0.0).require(x <= 1.0, -4, 1.0);
  checks.require(y >= 0.0, -5, 0.0).require(y <= 1.0, -5, 1.0);
  checks.require(a > 0.0, -6, 0.0).require(b > 0.0, -7, 0.0);
  const double sum = x + y;
  checks.require(std::fabs(sum - 0.5 - 0.5) <= 3.0 * kEpsilon, 4, sum < 1.0 ? 0.0 : 1.0);
  if (!checks.passed()) return;
  if (x <= 0.0) {
    setTails(0.0, p, q);
  } else if (y <= 0.0) {
    setTails(0.0, q, p);
  } else if (x * b < y * a) {
    setTails(boost::math::ibeta(a, b, x, kPolicy), p, q);
  } else {
    setTails(boost::math::ibeta(b, a, y, kPolicy), q, p);
  }
}

double gammaSlope(double shape, double x) {
  if (std::isinf(x)) return 0.0;
  return boost::math::gamma_p_derivative(shape, x, kPolicy);
}

double betaSlope(double a, double b, double x) {
  return boost::math::ibeta_derivative(a, b, x, kPolicy);
}

// Arguments that are not above 0 come from files whose parameters nobody checked. The library would reflect them, and
// count the periods of large ones in an int.
double lnGamma(double a) {
  return a > 0.0 ? boost::math::lgamma(a, kPolicy) : std::numeric_limits<double>::quiet_NaN();
}

double lnBeta(double a, double b) {
  if (!(a > 0.0 && b > 0.0)) return std::numeric_limits<double>::quiet_NaN();
  // The difference of three logarithms loses digits; it serves only where the function itself underflows.
  const double value = boost::math::beta(a, b, kPolicy);
  if (value >= std::numeric_limits<double>::min() && std::isfinite(value)) return std::log(value);
  return lnGamma(a) + lnGamma(b) - lnGamma(a + b);
}

}  // namespace tarvex
