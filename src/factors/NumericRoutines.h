#pragma once

namespace tarvex {

// The special functions of the factor family, at full double precision. Nothing here throws, allocates or prints.
//
// The cumulative routines compute p = P(X <= x) and q = 1 - p where `which` is 1, the only mode there is. `status` is 0
// on success; -k says that argument k is out of range, and `bound` is then the limit that it violates. A failed check
// leaves p and q alone.

void cdfNormal(int which, double& p, double& q, double x, double mean, double sd, int& status, double& bound);
// `scale` multiplies x: it is a rate.
void cdfGamma(int which, double& p, double& q, double x, double shape, double scale, int& status, double& bound);
// `y` is 1 - x; status 4 when it isn't.
void cdfBeta(int which, double& p, double& q, double x, double y, double a, double b, int& status, double& bound);

// Derivatives of the incomplete gamma and beta ratios at x: the densities of their kinds on the unit scale. inf at a
// pole.
double gammaSlope(double shape, double x);
double betaSlope(double a, double b, double x);

// ln of the gamma function, a > 0, and ln of the beta function, a, b > 0; nan otherwise.
double lnGamma(double a);
double lnBeta(double a, double b);

}  // namespace tarvex
