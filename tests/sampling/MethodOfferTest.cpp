#include "sampling/Designs.h"
#include "sampling/MethodOffer.h"
#include "sampling/SamplerFactory.h"
#include "support/Test.h"

namespace tarvex {
namespace {

struct Row {
  CorrelationMode mode;
  std::size_t factors;  // stochastic ones; a constant and a relation stand beside them
  const char* offered;  // a character per method, a dot where it isn't offered
};

TEST(MethodOffer, dependsOnCorrelationAndFactorCount) {
  // Fast, Fixed, Latin, lp-tau (Q), Morris, Random, rePlicated, Sobol
  for (const Row& row : {
           Row{kNoCorrelation, 0, "........"},
           Row{kNoCorrelation, 1, ".XLQMR.."},
           Row{kNoCorrelation, 2, "FXLQMR.S"},
           Row{kNoCorrelation, 370, "FXLQMR.S"},
           Row{kNoCorrelation, 371, "FXL.MR.."},
           Row{kDependenceTree, 0, "........"},
           Row{kDependenceTree, 1, ".XL..R.."},
           Row{kDependenceTree, 5, ".XL..R.."},
           Row{kImanConover, 1, ".XL..R.."},
           Row{kImanConover, 2, ".XL..RP."},
           Row{kImanConover, 500, ".XL..RP."},
           Row{kSteinSample, 1, "..L....."},
           Row{kSteinSample, 2, "..L...P."},
       }) {
    FactorList factors = listOf(std::string(row.factors, 's') + "cr");
    factors.correlationMode = row.mode;
    for (std::int32_t method = 0; method < kMethodCount; ++method) {
      std::string reason;
      EXPECT_EQ(isMethodOffered(method, factors, &reason), row.offered[method] != '.')
          << row.mode << ' ' << row.factors << ' ' << methodNameOf(method);
      EXPECT_EQ(reason.empty(), row.offered[method] != '.');
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
  FactorList none = listOf("cr");
  EXPECT_FALSE(isMethodOffered(kRandom, none, &reason));
  EXPECT_EQ(reason, "There is nothing to sample: every factor is a constant or a relation.");
}

}  // namespace
}  // namespace tarvex
