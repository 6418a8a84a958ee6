#include "support/Test.h"

namespace tarvex {
namespace {

struct Change {
  const char *name, *file, *from, *to;
  bool agrees;
};

// The comparison with expected files must itself see what it is for.
TEST(Golden, SeesChangesThatMatter) {
  const Change changes[] = {
      {"ten digits, two in the last", "random-none.sam", "1.517891644\t", "1.517891641\t", false},
      {"ten digits, wrong form", "random-none.sam", "1.517891644\t", "1.5178916440\t", false},
      {"constant near zero", "fixed.sam", "\t0\t-3", "\t6e-13\t-3", true},
      {"too far from zero", "fixed.sam", "\t0\t-3", "\t6e-12\t-3", false},
      {"separator", "random-none.sam", "1.195549531\t", "1.195549531 ", false},
      {"seed", "times.spc", "\n8\n", "\n9\n", false},
      {"six digits, two in the last", "times.spc", "0.712095", "0.712097", false},
      {"six digits not near zero", "ishigami.spc", "\t0\t", "\t2e-11\t", false},
      {"not a number", "times.spc", "0.712095", "nan", false},
      {"sample file's name", "times.spc", "latin-stein.sam", "/x/a.sam", true},
      {"model's directories", "times.spc", "0.816405\t2.31061\t\n\n\n", "0.816405\t2.31061\t\n/a\n/b\n", true},
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
  EXPECT_FALSE(test::compareGolden("mixed.imd", "m\n"));
}

}  // namespace
}  // namespace tarvex
