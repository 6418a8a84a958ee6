#include "base/TextReader.h"
#include "factors/FactorFiles.h"
#include "factors/FactorList.h"
#include "factors/TruncatedDistribution.h"
#include "factors/makeFactor.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using test::textOf;

const std::vector<std::string> kGolden{"kinds.fac", "ishigami.fac", "unit4.fac", "pair.fac", "mixed.fac",
                                       "tree.fac",  "matrix.fac",   "stein.fac", "plant.fac"};

class FactorFiles : public test::InDirectory {
 protected:
  FactorFiles() {
    std::unique_ptr<Factor> factor = makeFactor("Normal");
    factor->name = "before";
    list_.addFactor(std::move(factor));
  }
  ~FactorFiles() override { EXPECT_TRUE(TruncatedDistribution::setDefaultTruncations(0.001, 0.999)); }

  std::string path_ = file("list.fac");
  FactorList list_;
};

TEST_F(FactorFiles, roundTripsAreByteForByte) {
  for (const std::string& name : kGolden) {
    FactorList list;
    std::string message;
    ASSERT_TRUE(loadFactorFile(test::goldenPath(name), list, message)) << name;
    ASSERT_TRUE(saveFactorFile(path_, list, message)) << name;
    const std::string text = test::readFile(test::goldenPath(name));
    EXPECT_EQ(test::readFile(path_), text) << name;
    std::string dos;  // and without its last line end
    for (const char c : text.substr(0, text.size() - 1)) dos += c == '\n' ? "\r\n" : std::string(1, c);
    test::writeFile(path_, dos);
    ASSERT_TRUE(loadFactorFile(path_, list, message)) << name;
    EXPECT_EQ(textOf(list), text) << name;
  }
}

TEST_F(FactorFiles, failuresNameTheReasonAndKeepTheOldFile) {
  std::string message;
  for (const std::string& path : {file("none.fac"), directory_.path()}) {
    EXPECT_FALSE(loadFactorFile(path, list_, message));
    EXPECT_TRUE(message.starts_with("Error opening factors file\n" + path + ": ")) << message;
  }
  test::writeFile(path_, "old");
  list_.factor(0).note = "two\nlines";
  EXPECT_FALSE(saveFactorFile(path_, list_, message));
  EXPECT_EQ(message, "Error opening file for output\n" + path_ + ": the note holds a line end");
  EXPECT_EQ(test::readFile(path_), "old");
  EXPECT_EQ(directory_.entries(), std::vector<std::string>{"list.fac"});
}

TEST_F(FactorFiles, refusalsSayWhereAndWhat) {
  const std::string sound = test::readFile(test::goldenPath("matrix.fac"));
  const struct {
    const char* from;  // in matrix.fac, replaced once
    const char *to, *problem;
  } rows[] = {
      {"Default", "Other", "1: expected the line 'Default Truncations:', found 'Other Truncations:'"},
      {"6 Dist", "-6 Dist", "4: the number of factors must not be negative, as -6 is"},
      {"Normal", "Gauss", "5: expected the type of a factor, found 'Gauss'"},
      {"\n1\t", "\nx\t", "8: expected the status of the factor, a whole number, found 'x"},
      {"\t0.999\n", "\t0.999 mm\n", "2: expected the number of factors, found 'mm'"},
      {"\t2\t0.001\t0.999\n", "\t2\t0.001\t0,999\n", "8: expected the end of the line, found ',999'"},
      {"1\t0.7\t", "1\t1.7\t", "49: a correlation must be between -1 and 1, not 1.7"},
      {"1\t0.7\t", "1\t0.5\t",
       "50: the correlation matrix must be symmetric: 0.7 in row 2, column 1 stands against 0.5"},
      {"Matrix:\n1", "Matrix:\n0", ": the diagonal of the correlation matrix must be 1, not 0"},
      {"\n1\n", "\n4\n", ": the correlation mode must be 0 to 3, not 4"},
      {"\n1\n", "\n1\n\nmore", ": expected the end of the file, found 'more'"},
  };
  for (const auto& row : rows) {
    std::string text = sound;
    const std::string from = row.from;
    const std::size_t at = from == "\n1\n" ? text.rfind(from) : text.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    test::writeFile(path_, text.replace(at, from.size(), row.to));
    std::string message;
    EXPECT_FALSE(loadFactorFile(path_, list_, message)) << from;
    EXPECT_NE(message.find(row.problem), std::string::npos) << message;
  }
}

}  // namespace
}  // namespace tarvex
