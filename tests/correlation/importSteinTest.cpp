#include "correlation/importStein.h"

#include <array>

#include "factors/FactorList.h"
#include "factors/Uniform.h"
#include "factors/makeFactor.h"
#include "support/Test.h"

namespace tarvex::test {
namespace {

const std::string kNothing = "Error loading stein file. No factors to import.";
const std::string kOtherCount =
    "Error loading stein file. The number of imported factors is different from the loaded configuration.";
const std::string kInconsistent = "Error loading stein file. Current data may be inconsistent or corrupt.";

class ImportStein : public InDirectory {
 protected:
  bool import(const std::string& text, SteinImport mode) {
    const std::string path = directory_.path() + "/sample.txt";
    writeFile(path, text);
    const bool done = importStein(path, mode, list, message);
    EXPECT_TRUE(done || message.find('\n' + path + ':') != std::string::npos) << message;
    message = message.substr(0, message.find('\n'));
    return done;
  }
  void addFactors(int count) {
    for (int i = 0; i < count; ++i) list.addFactor(makeFactor("Normal"));
  }

  FactorList list;
  std::string message;
};

TEST_F(ImportStein, fullImportMakesEmpiricalDistributions) {
  struct Column {
    const char* name;
    std::vector<double> values;
    std::vector<std::array<double, 3>> intervals;  // left, right, weight
  };
  const std::vector<Column> columns{
      {"rising", {1, 2, 3, 4, 5}, {{1, 2, 0.25}, {2, 3, 0.25}, {3, 4, 0.25}, {4, 5, 0.25}}},
      {"tiesFirst", {1, 1, 1, 2, 4}, {{1, 2, 0.75}, {2, 4, 0.25}}},
      {"tiesBetween", {7, 1, 4, 4, 7}, {{1, 4, 0.25}, {4, 7, 0.75}}},
  };
  std::string text = "5 3 and a remark\n";
  for (const Column& column : columns) text += std::string(column.name) + " \n";
  for (std::size_t row = 0; row < 5; ++row)
    for (const Column& column : columns) text += std::to_string(column.values[row]) + (row % 2 == 0 ? " " : "\n");
  addFactors(3);
  ASSERT_TRUE(import(text, kSteinReplace)) << message;
  ASSERT_EQ(list.factorCount(), 3);
  EXPECT_EQ(list.steinInfo.rows(), 5);
  EXPECT_NE(list.correlationMode, kSteinSample);
  for (std::int32_t i = 0; i < 3; ++i) {
    const Column& column = columns[static_cast<std::size_t>(i)];
    SCOPED_TRACE(column.name);
    const auto& factor = dynamic_cast<const Uniform&>(list.factor(i));
    EXPECT_EQ(factor.name, column.name);
    ASSERT_EQ(factor.count(), column.intervals.size());
    for (std::size_t k = 0; k < factor.count(); ++k) {
      EXPECT_EQ(factor.intervalAt(k)->left, column.intervals[k][0]);
      EXPECT_EQ(factor.intervalAt(k)->right, column.intervals[k][1]);
      EXPECT_EQ(factor.intervalAt(k)->weight, column.intervals[k][2]);
    }
  }
}

TEST_F(ImportStein, attachingKeepsTheFactors) {
  addFactors(2);
  ASSERT_TRUE(import("3\r\n2\r\nx\r\ny\r\n1 2 3\r\n4 5 6", kSteinAttach)) << message;
  EXPECT_EQ(list.correlationMode, kSteinSample);
  EXPECT_EQ(list.factorCount(), 2);
  EXPECT_EQ(list.factor(0).typeName, "Normal");
  double value = 0.0;
  ASSERT_TRUE(list.steinInfo.getValue(2, 1, value));
  EXPECT_EQ(value, 6.0);
  // A second sample takes the place of the first.
  ASSERT_TRUE(import("1 2\nx\ny\n8 9\n", kSteinAttach)) << message;
  EXPECT_EQ(list.steinInfo.rows(), 1);
  // The one mode that doesn't look at the count of factors.
  ASSERT_TRUE(import("2 1\nx\n8 9\n", kSteinAttachAny)) << message;
  EXPECT_EQ(list.steinInfo.columns(), 1);
}

TEST_F(ImportStein, defects) {
  const struct {
    const char* name;
    std::string text;
    SteinImport mode;
    int factors;
    std::string message;
  } defects[] = {
      {"empty file", "", kSteinReplace, 0, kNothing},
      {"no rows", "0 2\na\nb\n", kSteinReplace, 0, kNothing},
      {"fewer columns than factors", "2 1\na\n1\n2\n", kSteinAttach, 2, kOtherCount},
      {"more columns than factors", "2 3\na\nb\nc\n1 2 3 4 5 6\n", kSteinReplace, 2, kOtherCount},
      {"name begins with a digit", "2 2\na\n2b\n1 2 3 4\n", kSteinAttach, 2, kInconsistent},
      {"name not ASCII", "2 1\n\xc3\xa9\n1 2\n", kSteinReplace, 0, kInconsistent},
      {"empty name", "2 2\na\n\n1 2 3 4\n", kSteinReplace, 0, kInconsistent},
      {"name of 20 characters", "2 1\nabcdefghijklmnopqrst\n1\n2\n", kSteinReplace, 0, kInconsistent},
      {"name of two words", "2 1\na b\n1\n2\n", kSteinReplace, 0, kInconsistent},
      {"text behind the rows", "2 1\na\n1\n2\n3\n", kSteinReplace, 0, kInconsistent},
      {"constant column", "3 2\na\nb\n1 7 2 7 3 7\n", kSteinReplace, 0, kInconsistent},
      {"one row", "1 1\na\n5\n", kSteinReplace, 0, kInconsistent},
      {"not a number", "3 1\na\n1 nan 2\n", kSteinReplace, 0, kInconsistent},
  };
  for (const auto& defect : defects) {
    SCOPED_TRACE(defect.name);
    list.clear();
    addFactors(defect.factors);
    EXPECT_FALSE(import(defect.text, defect.mode));
    EXPECT_EQ(message, defect.message);
    EXPECT_NE(list.correlationMode, kSteinSample);
  }
  EXPECT_FALSE(importStein("/no/such/file", kSteinReplace, list, message));
  EXPECT_EQ(message, kNothing + "\n/no/such/file: No such file or directory");
}

}  // namespace
}  // namespace tarvex::test
