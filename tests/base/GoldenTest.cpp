// The comparison with expected files must itself see what it is for.

#include "support/Golden.h"

#include <gtest/gtest.h>

#include "support/TextFiles.h"

namespace tarvex {
namespace {

struct Change {
  const char* name;
  const char* file;
  const char* from;
  const char* to;
  bool agrees;
};

TEST(Golden, SeesChangesThatMatter) {
  const Change changes[] = {
      {"ten digits, last one", "random-none.sam", "1.517891644\t", "1.517891643\t", true},
      {"ten digits, two in the last", "random-none.sam", "1.517891644\t", "1.517891641\t", false},
      {"ten digits, too short", "random-none.sam", "1.517891644\t", "1.51789\t", false},
      {"ten digits, wrong form", "random-none.sam", "1.517891644\t", "1.5178916440\t", false},
      {"constant near zero", "fixed.sam", "\t0\t-3", "\t6e-13\t-3", true},
      {"too far from zero", "fixed.sam", "\t0\t-3", "\t6e-12\t-3", false},
      {"table of the fixed samples, within its column", "fixed.sam", "0.001\t7", "0.001000000002\t7", true},
      {"count of rows", "random-none.sam", "100\n18\n0", "101\n18\n0", false},
      {"separator", "random-none.sam", "1.195549531\t", "1.195549531 ", false},
      {"line end", "random-none.sam", "1.195549531\t", "1.195549531\n", false},
      {"extra line", "mixed.imd", "mixed.imd\n", "mixed.imd\n\n", false},
      {"name", "random-none.sam", "Stein Information", "Stein information", false},
      {"seed", "times.spc", "\n8\n", "\n9\n", false},
      {"six digits, last one", "times.spc", "0.712095", "0.712096", true},
      {"six digits, two in the last", "times.spc", "0.712095", "0.712097", false},
      {"six digits near zero", "ishigami.spc", "\t0\t", "\t9e-12\t", true},
      {"six digits not near zero", "ishigami.spc", "\t0\t", "\t2e-11\t", false},
      {"not a number", "times.spc", "0.712095", "nan", false},
      {"sample file's name", "times.spc", "latin-stein.sam", "other", true},
      {"directory of the sample", "times.spc", "\nlatin-stein.sam", "/somewhere\nlatin-stein.sam", true},
      {"output file's name", "times.spc", "times.out", "/a/times.out", true},
      {"model's directories", "times.spc", "0.816405\t2.31061\t\n\n\n", "0.816405\t2.31061\t\n/a\n/b\n", true},
      {"path of the Vels record", "times.spc", "rate\n1\n\n0\n", "rate\n1\n/path\n0\n", true},
      {"weight of an output", "times.spc", "rate\n1\n\n0\n", "rate\n2\n\n0\n", false},
      {"file of the internal model", "ishigami.spc", "ishigami.imd", "/x/y.imd", true},
      {"file of an internal model", "mixed.imd", "\nmixed.imd\n", "\n/x\n", true},
      {"equation", "mixed.imd", "exp(-x3)", "exp(-x4)", false},
  };
  for (const Change& change : changes) {
    const std::string expected = test::readFile(test::goldenPath(change.file));
    std::string actual = expected;
    const std::size_t at = actual.rfind(change.from);
    ASSERT_NE(at, std::string::npos) << change.name;
    actual.replace(at, std::string(change.from).size(), change.to);
    EXPECT_TRUE(test::compareGolden(change.file, expected));
    EXPECT_EQ(static_cast<bool>(test::compareGolden(change.file, actual)), change.agrees) << change.name;
  }
  EXPECT_FALSE(test::compareTexts("x.txt", "1\n2\n", "1\n"));
}

}  // namespace
}  // namespace tarvex
