#include <fstream>
#include <sstream>

#include "factors/FactorText.h"
#include "factors/InverseSearch.h"
#include "support/Test.h"

namespace tarvex {
namespace {

constexpr double kRelative = 1e-11;  // moments, cumulatives, densities
constexpr double kAbsolute = 1e-15;  // cumulatives besides
constexpr double kValues = 1e-9;     // points and inverses, of the larger of their size and the deviation

// One block of the list of expected values.
class Block {
 public:
  explicit Block(const std::string& heading) {
    std::istringstream words(heading);
    std::string type;
    words >> type;
    std::vector<std::string> fields;
    for (std::string field; words >> field;) fields.push_back(field);
    distribution_ = distributionOf(type, fields);
  }

  bool valid() const { return distribution_ != nullptr; }

  void check(const std::string& key, const std::vector<double>& numbers, const std::string& word) {
    if (key == "search") {
      prepare(word);
    } else if (key == "moments") {
      near(distribution_->mean(), numbers[0], std::fabs(numbers[0]) * kRelative);
      near(distribution_->stdDev(), numbers[1], std::fabs(numbers[1]) * kRelative);
      deviation_ = numbers[1];
    } else if (key == "at") {
      near(distribution_->cumulative(numbers[0]), numbers[1], numbers[1] * kRelative + kAbsolute);
      if (numbers.size() > 2) near(distribution_->density(numbers[0]), numbers[2], numbers[2] * kRelative);
    } else if (key == "point") {
      const TablePoint point = distribution_->table.at(static_cast<std::size_t>(numbers[0]));
      near(point.x, numbers[1], valueTolerance(numbers[1]));
      near(point.p, numbers[2], kRelative);
    } else {
      ASSERT_EQ(key, "inverse");
      near(distribution_->value(numbers[0]), numbers[1], numbers.size() > 2 ? numbers[2] : valueTolerance(numbers[1]));
    }
  }

 private:
  void prepare(const std::string& search) {
    std::vector<TablePoint> points;
    if (search == "counted" || search == "second") {
      EXPECT_EQ(countedSearch(*distribution_, points), search == "counted");
    }
    EXPECT_EQ(distribution_->needsTable(), search != "none");
    if (!distribution_->needsTable()) return;
    ASSERT_TRUE(distribution_->prepareInverse());
    EXPECT_EQ(distribution_->table.size(), kTablePoints);
  }

  double valueTolerance(double expected) const { return std::max(std::fabs(expected), deviation_) * kValues; }

  static void near(double actual, double expected, double tolerance) { EXPECT_NEAR(actual, expected, tolerance); }

  std::unique_ptr<Distribution> distribution_;
  double deviation_ = 0.0;
};

TEST(InverseTable, agreesWithExpectedValues) {
  std::ifstream file(TARVEX_TEST_DATA "/golden/inverse.txt");
  ASSERT_TRUE(file);
  std::unique_ptr<Block> block;
  std::string heading;
  int blocks = 0;
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string key;
    if (!(words >> key)) continue;
    if (std::isupper(static_cast<unsigned char>(key[0])) != 0) {
      heading = line;
      block = std::make_unique<Block>(line);
      ASSERT_TRUE(block->valid()) << line;
      ++blocks;
      continue;
    }
    std::vector<double> numbers;
    std::string word;
    while (words >> word) {
      double number = 0.0;
      if (std::istringstream(word) >> number) numbers.push_back(number);
    }
    SCOPED_TRACE(heading + ": " + line);
    block->check(key, numbers, word);
  }
  EXPECT_EQ(blocks, 36);
}

}  // namespace
}  // namespace tarvex
