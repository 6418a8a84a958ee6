#include "factors/IntervalDistribution.h"

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/Discrete.h"
#include "factors/LogUniform.h"
#include "factors/TabulatedValues.h"
#include "factors/makeFactor.h"
#include "support/Test.h"

namespace tarvex {
namespace {

std::unique_ptr<Interval> interval(double left, double right, double weight = 1.0) {
  return std::make_unique<Interval>(left, right, weight);
}

std::string listed(const IntervalDistribution& distribution) {
  std::string text;
  for (std::size_t i = 0; i < distribution.count(); ++i) {
    const Interval& row = *distribution.intervalAt(i);
    text += std::to_string(row.left) + ' ' + std::to_string(row.right) + ' ' + std::to_string(row.weight) + '\n';
  }
  return text;
}

TEST(IntervalDistribution, intervalsMayTouchAndPointsAreUnique) {
  Uniform uniform;
  EXPECT_TRUE(uniform.addInterval(interval(1.0, 2.0)));
  EXPECT_TRUE(uniform.addInterval(interval(3.0, 4.0)));
  EXPECT_FALSE(uniform.addInterval(interval(3.5, 5.0)));
  EXPECT_EQ(uniform.errorText, "Interval to insert overloads previous intervals stored");
  uniform.removeAt(3);
  uniform.removeAt(0);
  EXPECT_EQ(uniform.intervalAt(0)->left, 1.0);
  Discrete discrete;
  EXPECT_TRUE(discrete.addPoint(interval(-7.0, 0.0)));
  EXPECT_FALSE(discrete.addPoint(interval(1.0, 9.0)));
  EXPECT_EQ(discrete.errorText, "The new point already exists");
}

TEST(IntervalDistribution, copiesTakeGoodWeightsOnly) {
  LogUniform original;
  ASSERT_TRUE(original.addInterval(interval(3.0, 4.0, 1.5)));
  ASSERT_TRUE(original.addInterval(interval(4.0, 5.0, 0.25)));
  const std::unique_ptr<Factor> copy = original.clone();
  auto& intervals = dynamic_cast<IntervalDistribution&>(*copy);
  EXPECT_EQ(intervals.intervalAt(1)->weight, 1.0);
  EXPECT_EQ(intervals.intervalAt(1)->errorText, "Weight value error");
  EXPECT_EQ(intervals.intervalAt(2)->weight, 0.25);
  EXPECT_FALSE(intervals.intervalAt(0)->setBounds(-1.0, 1.0));  // still a logarithmic one
}

// A list of intervals or points with ties, gaps and bounds out of order, as a file may hold it.
template <class Kind>
std::unique_ptr<Kind> unorderedList(std::uint64_t& bits) {
  TextWriter text;
  text << "x\n\n1\t40\n";
  for (int i = 0; i < 40; ++i) {
    bits ^= bits << 13, bits ^= bits >> 7, bits ^= bits << 17;
    const double left = i + static_cast<double>(bits % 7);
    text << left << ' ' << left + static_cast<double>(bits % 3) << ' ' << (bits % 5 == 0 ? 0.0 : 0.03125) << '\n';
  }
  auto kind = std::make_unique<Kind>();
  TextReader in = TextReader::fromText(text.text());
  kind->read(in);
  EXPECT_TRUE(in.ok());
  return kind;
}

void checkUniformWalks(const Uniform& list, double x) {
  std::size_t i = 0;
  double below = 0.0;
  for (; i < list.count() && list.intervalAt(i)->right < x; ++i) below += list.intervalAt(i)->weight;
  const Interval* at = list.intervalAt(i);
  if (at != nullptr && at->left <= x) below += (x - at->left) * at->weight / (at->right - at->left);
  EXPECT_TRUE(test::agrees(list.cumulative(x), below, 0.0)) << x;
  for (i = 0; i < list.count() && list.intervalAt(i)->left <= x && list.intervalAt(i)->right < x;) ++i;
  at = list.intervalAt(i);
  const double density = at != nullptr && at->left <= x ? at->weight / (at->right - at->left) : 0.0;
  EXPECT_TRUE(test::agrees(list.density(x), density, 0.0)) << x;
}

void checkDiscreteWalks(const Discrete& list, double x) {
  std::size_t i = 0;
  double sum = 0.0;
  for (; i < list.count() && !(list.intervalAt(i)->left > x); ++i) sum += list.intervalAt(i)->weight;
  EXPECT_EQ(list.cumulative(x), sum) << x;
  for (i = 0; i < list.count() && list.intervalAt(i)->left != x;) ++i;
  EXPECT_EQ(list.density(x), i < list.count() ? list.intervalAt(i)->weight : 0.0) << x;
  const double u = x / 32.0;
  sum = list.intervalAt(0)->weight;
  for (i = 0; !(u < sum) && i + 1 < list.count();) sum += list.intervalAt(++i)->weight;
  EXPECT_EQ(list.value(u), list.intervalAt(i)->left) << u;
}

// What is found by halving is what a walk along the list finds, to the last bit: at ends of intervals, the doubles
// beside them, and running sums.
TEST(IntervalDistribution, findsWhatAWalkFinds) {
  std::uint64_t bits = 88172645463325252u;
  for (int round = 0; round < 20; ++round) {
    const auto uniform = unorderedList<Uniform>(bits);
    const auto discrete = unorderedList<Discrete>(bits);
    for (double edge = -1.0; edge < 60.0; ++edge) {
      for (const double x : {std::nextafter(edge, -INFINITY), edge, std::nextafter(edge, INFINITY), edge + 0.5}) {
        checkUniformWalks(*uniform, x);
        checkDiscreteWalks(*discrete, x);
      }
    }
    checkDiscreteWalks(*discrete, NAN);
  }
  Discrete changed;  // shows it at once
  EXPECT_EQ(changed.value(0.6), 1.0);
  changed.intervalAt(0)->weight = 0.75;
  EXPECT_EQ(changed.value(0.6), 0.0);
  EXPECT_EQ(changed.density(1.0), 0.5);
  changed.removeAt(1);
  EXPECT_EQ(changed.density(1.0), 0.0);
}

TEST(IntervalDistribution, emptyOnesAreRefusedAndHaveNoValue) {
  for (const char* type : {"Uniform", "LogUniform", "Discrete"}) {
    const std::unique_ptr<Factor> factor = makeFactor(type);
    auto& list = dynamic_cast<IntervalDistribution&>(*factor);
    list.clear();
    EXPECT_FALSE(list.prepareInverse());
    EXPECT_TRUE(std::isnan(list.value(0.5)) && std::isnan(list.inverse(0.5)));
    EXPECT_EQ(list.cumulative(1.0) + list.density(1.0) + list.mean() + list.stdDev(), 0.0);
    EXPECT_NE(list.parameterProblem(), "");
  }
}

class TabulatedValues : public test::InDirectory {
 protected:
  std::string message(const std::string& text, IntervalDistribution& distribution) {
    test::writeFile(path_, text);
    std::string reason;
    const std::string before = listed(distribution);
    const bool loaded = loadTabulatedValues(path_, distribution, reason);
    EXPECT_EQ(loaded, reason.empty());
    EXPECT_TRUE(loaded || listed(distribution) == before);
    EXPECT_TRUE(loaded || reason.find('\n' + path_ + ':') != std::string::npos) << reason;
    return reason.substr(0, reason.find('\n'));
  }

  std::string path_ = file("table.fac");
};

TEST_F(TabulatedValues, comeBackFromTheirFile) {
  Discrete discrete;
  Uniform uniform;
  LogUniform logUniform;
  const std::vector<std::pair<IntervalDistribution*, const char*>> rows{
      {&discrete, "2\n-1.5\t0.25\n4\t0.75\n"},
      {&uniform, "3\n0\t1\t0.333333\n1\t2\t0.333333\n3\t4\t0.333333\n"},
      {&logUniform, "1\n0.5\t2\t1\n"},
  };
  for (const auto& [distribution, text] : rows) {
    ASSERT_EQ(message(text, *distribution), "");
    EXPECT_TRUE(distribution->checkWeights()) << text;
    std::string reason;
    ASSERT_TRUE(saveTabulatedValues(path_, *distribution, reason));
    EXPECT_EQ(test::readFile(path_), text);
  }
  EXPECT_EQ(listed(discrete), "-1.500000 -0.500000 0.250000\n4.000000 5.000000 0.750000\n");
}

TEST_F(TabulatedValues, damagedOnesLeaveTheFactor) {
  Discrete discrete;
  LogUniform logUniform;
  const char* const kReading = "Error reading tabulated values file";
  for (const char* text : {"", "x", "0\n", "-1\n", "2147483647\n1\t0.5\n", "2\n1\t0.5\n", "2\n1\t0.5\n1\t0.5\n",
                           "1\n1\t0\n", "1\n1\t1.5\n", "1\n1e999\t1\n", "1\nnan\t1\n", "1 1\t1\n", "1\n1\t1\n2"}) {
    EXPECT_EQ(message(text, discrete), kReading) << text;
  }
  for (const char* text : {"1\n0\t1\t1\n", "1\n2\t1\t1\n", "2\n1\t3\t0.5\n2\t4\t0.5\n", "1\n1\t2\n"}) {
    EXPECT_EQ(message(text, logUniform), kReading) << text;
  }
}

TEST_F(TabulatedValues, aMissingFileIsTold) {
  Uniform uniform;
  std::string reason;
  EXPECT_FALSE(loadTabulatedValues(file("none"), uniform, reason));
  EXPECT_EQ(reason, "Error opening tabulated values file\n" + file("none") + ": No such file or directory");
}

}  // namespace
}  // namespace tarvex
