#include "panels/prep/definitionKinds.h"

#include <algorithm>

namespace tarvex {

// clang-format off
const std::vector<DefinitionKind>& definitionKinds() {
  static const std::vector<DefinitionKind> kinds{
      {"Normal", "PDistNorm", "Normal Distribution", "Normal distribution",
       "InspectorNorm", "NormInsp", "Inspector: Normal", "nonameNorm", true, nullptr,
       {{"NMean", 0, "Mean value out of range!", true},
        {"NStdDeviation", 1, "Standard deviation value out of range!", true},
        {"NLeftTrunc", 2, "Left Truncation value out of range!", false},
        {"NRightTrunc", 3, "Right Truncation value out of range!", true}},
       "f(x) = exp(-(x - mean)² / (2 s²)) / (√(2π) s)\n\n"
       "The mean and the standard deviation s are those of x. Truncations are cumulative probabilities."},
      {"LogNormal", "PDistNorm", "LogNormal Distribution", "LogNormal distribution",
       "InspectorNorm", "LogNormInsp", "Inspector: LogNormal", "nonameLogNorm", true, "^LogNormal",
       {{"NMean", 0, "Mean value out of range!", true},
        {"NStdDeviation", 1, "Standard deviation value out of range!", true},
        {"NLeftTrunc", 2, "Left Truncation value out of range!", false},
        {"NRightTrunc", 3, "Right Truncation value out of range!", true}},
       "f(x) = exp(-(ln x - mean)² / (2 s²)) / (√(2π) s x), x > 0\n\n"
       "The mean and the standard deviation s are those of ln x; x itself has the mean exp(mean + s²/2). "
       "Truncations are cumulative probabilities."},
      {"Uniform", "PDistUnif", "UniformDistribution", "Uniform distribution",
       "InspectorUnif", "UniformInsp", "Inspector: Uniform", "nonameUnif", true, nullptr, {},
       "f(x) = weight / (right - left) within each interval, 0 elsewhere\n\n"
       "Intervals stand in ascending order and may touch or leave gaps. Their weights are probabilities with the sum 1."},
      {"LogUniform", "PDistUnif", "LogUniformDistribution", "LogUniform distribution",
       "InspectorUnif", "LogUniformInsp", "Inspector: LogUniform", "nonameLogUnif", true, "^LogUniform", {},
       "f(x) = weight / ((ln right - ln left) x) within each interval, 0 elsewhere\n\n"
       "ln x is uniform in each interval, whose ends are above 0. Weights are probabilities with the sum 1."},
      {"Weibull", "PDistWeib", "Weibull Distribution", "Weibull distribution",
       "InspectorWeib", "WeibInsp", "Inspector: Weibull", "nonameWeib", true, nullptr,
       {{"NBeta", 0, "Beta value out of range!", true},
        {"NB", 2, "B value out of range!", true},
        {"NN", 1, "N value out of range!", true},
        {"NRightTrunc", 3, "Right truncation value out of range!", true}},
       "f(x) = (beta/n) ((x - b)/n)^(beta - 1) exp(-((x - b)/n)^beta), x > b\n\n"
       "beta is the shape, n the scale, b the location. The truncation is a cumulative probability."},
      {"Constant", "PConstant", "Constant", "Constant",
       "InspectorConst", "ConstInsp", "Inspector: Constant", "nonameConstant", true, nullptr,
       {{"NValue", 0, "Value out of range!", true}}, ""},
      {"Exponential", "PDistExp", "Exponential Distribution", "Exponential distribution",
       "InspectorExp", "ExpInsp", "Inspector: Exponential", "nonameExpo", true, nullptr,
       {{"NLambda", 0, "Lambda value out of range!", true},
        {"NB", 1, "b value out of range!", true},
        {"NRightTrunc", 2, "Right Truncation bound out of range!", true}},
       "f(x) = lambda exp(-lambda (x - b)), x >= b\n\n"
       "lambda is the rate, so that the mean is 1/lambda + b; b is the location. "
       "The truncation is a cumulative probability."},
      {"Gamma", "PDistGamma", "Gamma Distribution", "Gamma distribution",
       "InspectorGamma", "GammaInsp", "Inspector: Gamma", "nonameGamma", true, nullptr,
       {{"NR", 0, "R value out of range!", true},
        {"NLambda", 1, "Lambda out of range!", true},
        {"NB", 2, "B value out of range!", true},
        {"NRightTrunc", 3, "Right truncation bound out of range!", true}},
       "f(x) = lambda/Γ(r) t^(r - 1) exp(-t), t = lambda (x - b), x >= b\n\n"
       "r is the shape, lambda the rate, b the location: the mean is r/lambda + b. "
       "The truncation is a cumulative probability."},
      {"Beta", "PDistBeta", "BetaDistribution", "Beta distribution",
       "InspectorBeta", "BetaInsp", "Inspector: Beta", "nonameBeta", false, nullptr,
       {{"NAlfa", 0, "Alfa value out of range!", true},
        {"NBeta", 1, "Beta value out of range!", true},
        {"NLeftBound", 2, "Left bound value out of range!", false},
        {"NRightBound", 3, "Right bound value out of range!", true}},
       "f(x) = z^(alfa - 1) (1 - z)^(beta - 1) / (B(alfa, beta) (b - a)), z = (x - a)/(b - a)\n\n"
       "alfa and beta are the shapes, a and b the bounds: the mean is a + (b - a) alfa/(alfa + beta)."},
      {"Triangular", "PDistTriang", "Triangular Distribution", "Triangular distribution",
       "InspectorTriang", "TriangInsp", "Inspector: Triangular", "nonameTriang", false, nullptr,
       {{"NAlfa", 0, "Alfa value out of range!", false},
        {"NBeta", 1, "Beta value out of range!", false},
        {"NGamma", 2, "Gamma value out of range!", true}},
       "f(x) = 2 (x - alfa) / ((gamma - alfa) (beta - alfa)) up to beta, "
       "2 (gamma - x) / ((gamma - alfa) (gamma - beta)) above\n\n"
       "alfa is the left end, beta the mode, gamma the right end: the mean is (alfa + beta + gamma)/3."},
      {"Relation", "PRelation", "Relation", "Relation",
       "InspectorRelat", "RelatInsp", "Inspector: Relation", "nonameRelat", true, nullptr, {}, ""},
      {"Discrete", "PDistDisc", "Discrete Distribution", "Discrete distribution",
       "InspectorDisc", "DiscreteInsp", "Inspector: Discrete", "nonameDisc", true, nullptr, {},
       "P(x = value) = weight\n\n"
       "Values stand in ascending order, each once. Their weights are probabilities with the sum 1."},
  };
  return kinds;
}
// clang-format on

const DefinitionKind& definitionKind(const std::string& type) {
  const auto found =
      std::ranges::find_if(definitionKinds(), [&](const DefinitionKind& kind) { return type == kind.type; });
  return found == definitionKinds().end() ? definitionKinds().front() : *found;
}

}  // namespace tarvex
