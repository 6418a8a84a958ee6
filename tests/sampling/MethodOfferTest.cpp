#include <gtest/gtest.h>

#include "sampling/Designs.h"

namespace tarvex {
namespace {

struct Row {
  CorrelationMode mode;
  int factors;  // stochastic ones; a constant and a relation stand beside them
  const char*
      offered;  // by method number: first letters of Fast, Fixed, Latin, LpTau, Morris, Random, replicated, Sobol
};

TEST(MethodOffer, dependsOnCorrelationAndFactorCount) {
  for (const Row& row : {
           // clang-format off
           Row{kNoCorrelation,  0,   "........"},
           Row{kNoCorrelation,  1,   ".XLQMR.."},
           Row{kNoCorrelation,  2,   "FXLQMR.S"},
           Row{kNoCorrelation,  370, "FXLQMR.S"},
           Row{kNoCorrelation,  371, "FXL.MR.."},
           Row{kDependenceTree, 0,   "........"},
           Row{kDependenceTree, 1,   ".XL..R.."},
           Row{kDependenceTree, 5,   ".XL..R.."},
           Row{kImanConover,    1,   ".XL..R.."},
           Row{kImanConover,    2,   ".XL..RP."},
           Row{kImanConover,    500, ".XL..RP."},
           Row{kSteinSample,    1,   "..L....."},
           Row{kSteinSample,    2,   "..L...P."},
           // clang-format on
       }) {
    FactorList factors = listOf(std::string(static_cast<std::size_t>(row.factors), 's') + "cr");
    factors.correlationMode = row.mode;
    for (std::int32_t method = 0; method < kMethodCount; ++method) {
      std::string reason = "untouched";
      EXPECT_EQ(isMethodOffered(method, factors, &reason), row.offered[method] != '.')
          << row.mode << ' ' << row.factors << ' ' << methodNameOf(method);
      EXPECT_EQ(reason == "untouched", row.offered[method] != '.');
    }
  }
}

TEST(MethodOffer, reasons) {
  FactorList factors = listOf("sssc");
  factors.correlationMode = kDependenceTree;
  std::string reason;
  EXPECT_FALSE(isMethodOffered(kMorris, factors, &reason));
  EXPECT_EQ(reason,
            "Morris can't be used with a dependence tree. On offer for these factors: Random, Latin Hypercube, Fixed "
            "samples.");
  factors.correlationMode = kNoCorrelation;
  EXPECT_FALSE(isMethodOffered(kRepLatin, factors, &reason));
  EXPECT_EQ(reason,
            "Replicated Latin Hypercube can't be used without correlation. On offer for these factors: Random, Latin "
            "Hypercube, Fixed samples, Morris, Fast, QuasiRandom LpTau, Sobol.");
  FactorList one = listOf("s");
  EXPECT_FALSE(isMethodOffered(kSobol, one, &reason));
  EXPECT_EQ(reason.substr(0, reason.find('.')), "Sobol needs at least 2 factors that are sampled");
  FactorList many = listOf(std::string(371, 's'));
  EXPECT_FALSE(isMethodOffered(kLpTau, many, &reason));
  EXPECT_EQ(reason.substr(0, reason.find('.')), "QuasiRandom LpTau takes at most 370 factors that are sampled");
  EXPECT_FALSE(isMethodOffered(9, one, &reason));
  EXPECT_EQ(reason.substr(0, reason.find('.')), "There is no such method");
  EXPECT_FALSE(isMethodOffered(kRandom, one = listOf("cr"), &reason));
  EXPECT_EQ(reason, "There is nothing to sample: every factor is a constant or a relation.");
}

}  // namespace
}  // namespace tarvex
