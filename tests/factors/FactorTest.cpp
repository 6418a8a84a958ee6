#include "factors/Factor.h"

#include "base/TextReader.h"
#include "factors/Beta.h"
#include "factors/Constant.h"
#include "factors/Exponential.h"
#include "factors/Gamma.h"
#include "factors/LogNormal.h"
#include "factors/Triangular.h"
#include "factors/Weibull.h"
#include "factors/makeFactor.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using test::textOf;

TEST(Factor, pairsOfTruncationsAreChecked) {
  const struct {
    double left, right;
    const char* text;  // empty: accepted
  } rows[] = {
      {0.1, 0.9, ""},
      {0.5, 0.5, ""},
      {0.6, 0.5, "Left Truncation must be less than right truncation"},
      {0.6, 1.0, "Right Truncation must be less than 1"},
      {0.0, 0.5, "Left Truncation must be greater than 0"},
      {0.0, 1.0, "Right Truncation must be less than 1"},
  };
  for (const auto& row : rows) {
    LogNormal factor;
    EXPECT_EQ(factor.setTruncations(row.left, row.right), *row.text == '\0') << row.left << ' ' << row.right;
    EXPECT_EQ(factor.errorText, *row.text == '\0' ? "No errors" : row.text);
  }
  Normal normal;
  ASSERT_TRUE(normal.setLeftTruncation(2.0));  // what is stored decides what comes next
  EXPECT_FALSE(normal.setLeftTruncation(0.1));
  EXPECT_FALSE(normal.setRightTruncation(0.9));
  EXPECT_EQ(normal.errorText, "Right truncation cannot be less than left truncation or greater than 0.999");
}

TEST(Factor, defaultTruncationsReachNewFactorsOnly) {
  Normal old;
  EXPECT_FALSE(TruncatedDistribution::setDefaultTruncations(0.5, 0.5));
  EXPECT_FALSE(TruncatedDistribution::setDefaultTruncations(0.0, 0.5));
  EXPECT_FALSE(TruncatedDistribution::setDefaultTruncations(0.5, 1.0));
  ASSERT_TRUE(TruncatedDistribution::setDefaultTruncations(0.05, 0.9));
  EXPECT_EQ(textOf(Gamma()), "Gamma\nnonameGamma\n\n1\t1\t1\t0\t0.9\n");
  EXPECT_EQ(old.rightTruncation(), 0.999);
  // The stored default is what is looked at: once it is bad it stays.
  EXPECT_TRUE(TruncatedDistribution::setDefaultRightTruncation(3.0));
  EXPECT_FALSE(TruncatedDistribution::setDefaultRightTruncation(0.9));
  EXPECT_TRUE(TruncatedDistribution::setDefaultLeftTruncation(-1.0));
  EXPECT_FALSE(TruncatedDistribution::setDefaultLeftTruncation(0.5));
  EXPECT_TRUE(TruncatedDistribution::setDefaultTruncations(0.001, 0.999));
}

TEST(Factor, parametersOfShapesAreCheckedTogether) {
  const struct {
    double alfa, beta, a, b;
    const char* text;
  } rows[] = {
      {0.0, 1.0, 0.0, 1.0, "Wrong negative value assigned to Alfa"},
      {1.0, -1.0, 0.0, 1.0, "Wrong negative value assigned to Beta"},
      {1.0, 1.0, 1.0, 1.0, "Negative or null definition interval: check a and b"},
  };
  Beta beta;
  for (const auto& row : rows) {
    EXPECT_FALSE(beta.setParameters(row.alfa, row.beta, row.a, row.b));
    EXPECT_EQ(beta.errorText, row.text);
  }
  EXPECT_EQ(textOf(beta), "Beta\nnonameBeta\n\n1\t2\t2\t0\t1\n");
  Weibull weibull;
  Exponential exponential;
  EXPECT_FALSE(weibull.setBeta(0.0) || weibull.setN(0.0) || exponential.setLambda(0.0) || exponential.setB(-1e-9) ||
               exponential.setLeftTruncation(0.5) || exponential.setRightTruncation(1.0));
  EXPECT_EQ(textOf(weibull) + textOf(exponential), textOf(Weibull()) + textOf(Exponential()));
  Gamma gamma;
  Normal normal;
  EXPECT_FALSE(gamma.setR(0.0) || gamma.setLambda(0.0) || normal.setStdDeviation(-0.1));
  EXPECT_TRUE(normal.setStdDeviation(0.0) && normal.setLeftTruncation(2.0));
  Triangular triangle;
  EXPECT_FALSE(triangle.setParameters(0.0, 0.0, 1.0));
  EXPECT_EQ(triangle.errorText,
            "Wrong values assigned to the distribution definition interval: check alfa beta and gamma");
}

// What a file brings in against the rules of the setters is told, keeps what it had and is written as it was.
TEST(Factor, unusableParametersAreTold) {
  const char* const order = "Wrong values assigned to the distribution definition interval: check alfa beta and gamma";
  // clang-format off
  const struct {
    const char *type, *parameters;
    const char* problem;  // empty: usable
  } rows[] = {
      {"Normal",      "0\t-1\t0.001\t0.999",     "Standard deviation must be >= 0"},
      {"Normal",      "0\t1\t0.9\t0.1",          "Left Truncation must be less than right truncation"},
      {"Normal",      "nan\t1\t0.001\t0.999",    "mean is not a finite number: nan"},
      {"LogNormal",   "0\t1\t0\t0.5",            "Left Truncation must be greater than 0"},
      {"Exponential", "0\t0\t0.999",             "Lambda must be > 0"},
      {"Exponential", "1\t-1\t0.999",            "b must be >= 0"},
      {"Gamma",       "0\t1\t0\t0.999",          "r must be > 0"},
      {"Gamma",       "1\t0\t0\t0.999",          "Lambda must be >= 0"},
      {"Gamma",       "1\t1\t-1\t0.999",         "b must be >= 0"},
      {"Gamma",       "1\t1\t0\t1",              "Truncation must be between 0 and 1"},
      {"Weibull",     "nan\tnan\tnan\tnan",      "Beta must be > 0"},
      {"Weibull",     "1\t0\t0\t0.999",          "n must be > 0"},
      {"Weibull",     "1\t1\t0\t1",
       "Right truncation cannot be less than left truncation or greater than 0.999"},
      {"Beta",        "2\t-3\t0\t1",             "Wrong negative value assigned to Beta"},
      {"Triangular",  "0\t0\t1",                 order},
      {"Triangular",  "nan\tnan\tnan",           order},
      {"Triangular",  "0\t0.5\t1",               ""},
      {"Uniform",     "2\n0\t1\t0.5\n0.5\t2\t0.5",
       "interval 2: Interval to insert overloads previous intervals stored"},
      {"Uniform",     "1\n1\t1\t1",              "interval 1: left bound >= of right bound"},
      {"LogUniform",  "1\n0\t1\t1",              "interval 1: left bound < 0"},
      {"Discrete",    "2\n0\t1\t0.5\n0\t1\t0.5", "point 2: The new point already exists"},
      {"Discrete",    "2\n0\t1\t1.5\n1\t2\t-0.5", "point 1: Weight value error"},
      {"Discrete",    "2\n0\t1\t0.5\n1\t2\t0.4", "Sum of weights not equal to 1: 0.9"},
      {"Constant",    "inf",                     "value is not a finite number: inf"},
  };
  // clang-format on
  for (const auto& row : rows) {
    const std::unique_ptr<Factor> factor = makeFactor(row.type);
    const std::string record = std::string("x\n\n1\t") + row.parameters + '\n';
    TextReader in = TextReader::fromText(record);
    factor->read(in);
    EXPECT_TRUE(in.ok()) << row.parameters;
    EXPECT_EQ(factor->parameterProblem(), row.problem);
    EXPECT_EQ(textOf(*factor), std::string(row.type) + '\n' + record);
  }
  TextReader in = TextReader::fromText("x\n\n1\t0 0 1\n");
  Triangular triangle;
  triangle.read(in);
  EXPECT_EQ(triangle.errorText, order);
  EXPECT_EQ(triangle.gamma(), 2.0);
  EXPECT_EQ(triangle.clone()->parameterProblem(), order);
  ASSERT_TRUE(triangle.setParameters(1.0, 2.0, 3.0));
  EXPECT_EQ(textOf(triangle), "Triangular\nx\n\n1\t1\t2\t3\n");
  EXPECT_EQ(triangle.parameterProblem(), "");
}

// The records with all defaults, in the order of the type codes.
TEST(Factor, kindsAndTheirDefaults) {
  const std::string records =
      "Normal\nnonameNorm\n\n1\t0\t1\t0.001\t0.999\nLogNormal\nnonameLogNorm\n\n1\t0\t1\t0.001\t0.999\n"
      "Uniform\nnonameUnif\n\n1\t1\n0\t1\t1\nLogUniform\nnonameLogUnif\n\n1\t1\n1\t2.71828\t1\n"
      "Weibull\nnonameWeib\n\n1\t1\t1\t0\t0.999\nConstant\nnonameConst\n\n1\t1\n"
      "Exponential\nnonameExpo\n\n1\t1\t0\t0.999\nGamma\nnonameGamma\n\n1\t1\t1\t0\t0.999\n"
      "Beta\nnonameBeta\n\n1\t2\t2\t0\t1\nTriangular\nnonameTriang\n\n1\t0\t1\t2\nRelation\nnonameRelat\n\n1\t\n\n\n"
      "Discrete\nnonameDisc\n\n1\t2\n0\t1\t0.5\n1\t2\t0.5\nDummy\nnonameDummy\n\n1\t\nFactor\nNoname\n\n1\t\n";
  std::string written;
  std::int32_t code = 0;
  for (const char* type : {"Normal", "LogNormal", "Uniform", "LogUniform", "Weibull", "Constant", "Exponential",
                           "Gamma", "Beta", "Triangular", "Relation", "Discrete", "Dummy", "Factor"}) {
    written += textOf(*makeFactor(type));
    EXPECT_TRUE(code >= 12 || makeFactor(type)->getType() == code) << type;
    ++code;
  }
  EXPECT_EQ(written, records);
}

TEST(Factor, recordLinesHaveTheirRules) {
  const std::string tail = "\n\n1\t2.5\n";
  const struct {
    const char* what;
    std::string text;
    bool reads;
    std::string name, note;
  } rows[] = {
      {"19 characters", std::string(19, 'a') + tail, true, std::string(19, 'a'), ""},
      {"20 characters", std::string(20, 'a') + tail, false, "", ""},
      {"cut at the blank", "one two" + tail, true, "one", ""},
      {"note of 254", "x\n" + std::string(254, 'n') + "\n1\t2.5\n", true, "x", std::string(254, 'n')},
      {"note of 255", "x\n" + std::string(255, 'n') + "\n1\t2.5\n", false, "", ""},
      {"CR LF", "x\r\nnote\r\n1\t2.5\r\n", true, "x", "note"},
      {"not a number", "x\n\n1\tnan\n", true, "x", ""},
  };
  for (const auto& row : rows) {
    TextReader in = TextReader::fromText(row.text);
    Constant factor;
    factor.read(in);
    EXPECT_EQ(in.ok(), row.reads) << row.what;
    if (!row.reads) continue;
    EXPECT_EQ(factor.name, row.name) << row.what;
    EXPECT_EQ(factor.note, row.note) << row.what;
  }
}

}  // namespace
}  // namespace tarvex
