// What panels ask of factors and lists that are edited.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "factors/Distribution.h"
#include "factors/FactorList.h"
#include "factors/Relation.h"
#include "factors/RelationPreview.h"
#include "factors/SampledSummary.h"
#include "factors/changeKind.h"
#include "factors/factorFields.h"
#include "factors/makeFactor.h"

namespace tarvex {
namespace {

TEST(FactorEdit, AKindThatCanKeepsMeanAndDeviation) {
  for (const auto& [mean, deviation] : {std::pair{5.0, 1.25}, {5.0, 5.0}, {-2.0, 0.5}, {3.0, 0.01}}) {
    const std::unique_ptr<Factor> from = makeFactorOf("Normal", {mean, deviation});
    for (const std::string& kind : factorKinds()) {
      SCOPED_TRACE(testing::Message() << kind << ' ' << mean << ' ' << deviation);
      const std::unique_ptr<Factor> to = changeKind(*from, kind);
      ASSERT_NE(to, nullptr);
      const auto* const distribution = dynamic_cast<const Distribution*>(to.get());
      if (distribution == nullptr) continue;
      EXPECT_TRUE(to->parameterProblem().empty());
      static const std::set<std::string> positive{"LogNormal", "LogUniform", "Weibull", "Gamma"};
      const bool can = kind == "Exponential" ? mean >= deviation : mean > 0.0 || positive.count(kind) == 0;
      const double tolerance = 1e-7 * deviation;
      EXPECT_EQ(std::fabs(expectationOf(*distribution) - mean) < tolerance &&
                    std::fabs(distribution->stdDev() - deviation) < tolerance,
                can)
          << expectationOf(*distribution) << ' ' << distribution->stdDev();
    }
  }
}

TEST(FactorEdit, MomentsOfWhatIsSampled) {
  const double l = 0.1;
  const double r = 0.8;
  // A normal between two quantiles a and c: mean (f(a) - f(c)) / (r - l), mean square 1 + (a f(a) - c f(c)) / (r - l).
  const double a = -1.2815515655446004;
  const double c = 0.8416212335729143;
  const auto f = [](double x) { return std::exp(-x * x / 2.0) / std::sqrt(2.0 * 3.14159265358979323846); };
  const double mean = (f(a) - f(c)) / (r - l);
  const double deviation = std::sqrt(1.0 + (a * f(a) - c * f(c)) / (r - l) - mean * mean);
  // An exponential up to x: mean 1 - x (1 - r) / r, mean square 2 - x (x + 2) (1 - r) / r.
  const double x = -std::log(1.0 - 0.999);
  const double q = 0.001 / 0.999;
  const double expMean = 1.0 - x * q;
  const struct {
    std::unique_ptr<Factor> factor;
    double mean, deviation, low, high;
  } rows[] = {
      {makeFactorOf("Normal", {0.0, 1.0, l, r}), mean, deviation, -1.1031, 0.7225},
      {makeFactorOf("Exponential", {1.0, 0.0, 0.999}), expMean, std::sqrt(2.0 - x * (x + 2.0) * q - expMean * expMean),
       0.051242, 2.97692},
      {makeFactorOf("Beta", {2.0, 2.0, 10.0, 20.0}), 15.0, 10.0 / std::sqrt(20.0), 11.3535, 18.6465},
      {makeFactor("Discrete"), 0.5, 0.5, 0.0, 1.0},
  };
  for (const auto& row : rows) {
    SampledSummary summary;
    ASSERT_TRUE(summariseSampled(*row.factor, summary)) << row.factor->typeName;
    EXPECT_NEAR(summary.mean, row.mean, 1e-5) << row.factor->typeName;
    EXPECT_NEAR(summary.deviation, row.deviation, 1e-5) << row.factor->typeName;
    EXPECT_NEAR(summary.low, row.low, 1e-3) << row.factor->typeName;
    EXPECT_NEAR(summary.high, row.high, 1e-3) << row.factor->typeName;
  }
  SampledSummary summary;
  EXPECT_FALSE(summariseSampled(*makeFactorOf("Normal", {0.0, 0.0}), summary));
  EXPECT_FALSE(summariseSampled(*makeFactor("Constant"), summary));
}

// A list of factors a, b, c, ... of these kinds.
FactorList lettered(const std::vector<std::string>& kinds) {
  FactorList list;
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    list.addFactor(makeFactor(kinds[i]));
    list.factor(static_cast<std::int32_t>(i)).name = std::string(1, static_cast<char>('a' + i));
  }
  return list;
}

// The correlated pairs by name: tree links, then cells of the matrix.
std::string pairs(const FactorList& list) {
  std::string text;
  std::vector<std::int32_t> sampled;
  for (std::int32_t i = 0; i < list.factorCount(); ++i) {
    if (list.isCorrelatable(i) == 1) sampled.push_back(i);
    const CorrelationNode& node = list.node(i);
    if (node.parent != -1) text += list.factor(node.parent).name + '>' + list.factor(i).name + ' ';
    for (const std::int32_t child : node.children) EXPECT_EQ(list.node(child).parent, i);
  }
  for (std::size_t j = 0; j < sampled.size(); ++j)
    for (std::size_t k = 0; k < j; ++k)
      if (const float cell = list.matrixAt(static_cast<std::int32_t>(j), static_cast<std::int32_t>(k)); cell != 0.0F)
        text += list.factor(sampled[k]).name + list.factor(sampled[j]).name + std::to_string(int(cell * 10)) + ' ';
  return text;
}

TEST(FactorEdit, CorrelationsStayWithTheirFactors) {
  const auto make = [] {
    FactorList list = lettered({"Normal", "Constant", "Uniform", "Gamma", "Beta"});
    list.correlationMode = kImanConover;
    EXPECT_TRUE(list.link(2, 0, 0.5) && list.link(3, 2, 0.5) && list.link(4, 2, 0.5));
    EXPECT_TRUE(list.setMatrix(0, 1, 0.5F) && list.setMatrix(2, 3, 0.3F));
    return list;
  };
  FactorList list = make();
  EXPECT_EQ(pairs(list), "a>c c>d c>e ac5 de3 ");
  list.arrange({4, 3, 1, 0, 2});
  EXPECT_EQ(pairs(list), "c>e c>d a>c ed3 ac5 ");
  EXPECT_TRUE(list.isCorrelated(0));
  EXPECT_FALSE(list.isCorrelated(2));
  list.arrange({0, 1, 2, 3});  // without c
  EXPECT_EQ(pairs(list), "ed3 ");
  EXPECT_FALSE(list.isCorrelated(3));

  list = make();
  list.replaceFactor(2, makeFactor("Constant"));
  list.factor(2).name = "c";
  EXPECT_EQ(pairs(list), "de3 ");
  list.replaceFactor(1, makeFactor("Weibull"));
  list.factor(1).name = "b";
  EXPECT_TRUE(list.setMatrix(1, 2, 0.7F));
  EXPECT_EQ(pairs(list), "bd7 de3 ");
  list.correlationMode = kNoCorrelation;
  EXPECT_FALSE(list.isCorrelated(3));
}

TEST(FactorEdit, ARenamedFactorIsFollowedOrNothingChanges) {
  FactorList list = lettered({"Normal", "Uniform", "Relation"});
  auto& relation = static_cast<Relation&>(list.factor(2));
  ASSERT_TRUE(relation.setExpression("a + b"));
  std::string message;
  EXPECT_TRUE(list.renameFactor(0, "flow", message)) << message;
  EXPECT_EQ(static_cast<Relation&>(list.factor(2)).expression(), "flow + b");
  EXPECT_FALSE(list.renameFactor(0, "b", message));
  EXPECT_EQ(message, kNameInUse);
  EXPECT_FALSE(list.renameFactor(0, "1a", message));
  ASSERT_TRUE(static_cast<Relation&>(list.factor(2)).setExpression(std::string(250, ' ') + "flow"));
  EXPECT_FALSE(list.renameFactor(0, "flows", message));
  EXPECT_EQ(message.rfind("The relation c can't follow: ", 0), 0U) << message;
  EXPECT_EQ(list.factor(0).name, "flow");
}

TEST(FactorEdit, FieldsAreReadAsTheyAreWrittenAndNothingElse) {
  const struct {
    const char* kind;
    const char* text;
    const char* result;   // the fields of what was read; empty: refused
    const char* problem;  // that the message begins with
  } rows[] = {
      {"Normal", "5 2", "5, 2, 0.001, 0.999", ""},
      {"Normal", " 5,\t2, 0.1  0.9 ", "5, 2, 0.1, 0.9", ""},
      {"Normal", "5 -2", "", "Standard deviation must be >= 0"},
      {"Normal", "5, 2, 0.9, 0.1", "", "Left Truncation must be less than right truncation"},
      {"Normal", "0,5", "", "'0,5' is no number: decimals"},
      {"Normal", "abc", "", "'abc' is no number"},
      {"Normal", "nan", "", "'nan' is no number"},
      {"Normal", "1 2 3 4 5", "", "5 numbers where 4 are expected: mean, standard deviation"},
      {"Uniform", "-1 3", "-1, 3", ""},
      {"Uniform", "0 1; 2 4", "0, 1, 0.5; 2, 4, 0.5", ""},
      {"Uniform", "0 1 0.25; 2 4 0.75;", "0, 1, 0.25; 2, 4, 0.75", ""},
      {"Uniform", "0 1 0.25; 2 4 0.5", "", "Sum of weights not equal to 1"},
      {"Uniform", "0 1 0.25; 2 4", "", "Row 2: a weight for each or for none"},
      {"Uniform", "0 2; 1 4", "", "Row 2: Interval to insert overloads previous intervals stored"},
      {"Uniform", "", "", "no values"},
      {"LogUniform", "0 1", "", "Row 1: left bound < 0"},
      {"Discrete", "1; 2; 3; 4", "1, 0.25; 2, 0.25; 3, 0.25; 4, 0.25", ""},
      {"Discrete", "1 0.5; 1 0.5", "", "Row 2: The new point already exists"},
      {"Constant", "3", "3", ""},
      {"Triangular", "1 0 2", "", "Wrong values assigned to the distribution definition interval"},
      {"Relation", "a + 1", "a + 1", ""},
      {"Relation", "a +", "", "Missing"},
      {"Cauchy", "1", "", "'Cauchy' is no distribution"},
  };
  for (const auto& row : rows) {
    std::string message;
    const std::unique_ptr<Factor> factor = readFactorFields(row.kind, row.text, nullptr, message);
    EXPECT_EQ(factor ? factorFields(*factor) : "", row.result) << row.kind << ": " << row.text << ": " << message;
    EXPECT_EQ(message.substr(0, std::string(row.problem).size()), row.problem) << row.kind << ": " << row.text;
  }
  std::string message;
  const std::unique_ptr<Factor> kept =
      readFactorFields("Normal", "7", makeFactorOf("Normal", {5.0, 2.0, 0.1, 0.9}).get(), message);
  EXPECT_EQ(factorFields(*kept), "7, 2, 0.1, 0.9");
  EXPECT_EQ(kindOfWord("Log-normal Distribution") + kindOfWord("BETA") + kindOfWord("cauchy"), "LogNormalBeta");
}

TEST(FactorEdit, ARelationIsTriedOnASmallSample) {
  FactorList list = lettered({"Uniform", "Constant", "Relation", "Relation", "Normal"});
  ASSERT_TRUE(static_cast<Relation&>(list.factor(2)).setExpression("a + b"));
  RelationPreview preview;
  std::string message;
  ASSERT_TRUE(previewRelation(list, "c * 2", 3, preview, message)) << message;
  for (const double value : preview.values) EXPECT_TRUE(value > 2.0 && value < 4.0) << value;
  ASSERT_TRUE(previewRelation(list, "1 / (a < 0.5 ? 0 : 1)", 3, preview, message) || !message.empty());
  ASSERT_TRUE(previewRelation(list, "d", 2, preview, message));  // below: reads as 0
  EXPECT_EQ(preview.values[7], 0.0);
  EXPECT_FALSE(previewRelation(list, "a +", 3, preview, message));
  list.replaceFactor(0, makeFactorOf("Normal", {0.0, 0.0}));
  list.factor(0).name = "a";
  EXPECT_FALSE(previewRelation(list, "a", 3, preview, message));
  EXPECT_EQ(message, "nothing can be sampled from a");
}

}  // namespace
}  // namespace tarvex
