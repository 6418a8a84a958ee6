#include "batch/CommandFixture.h"
#include "support/Test.h"

namespace tarvex {
namespace {

class CheckCommand : public test::CommandFixture {};

TEST_F(CheckCommand, listsWhatIsWrongAndWhatIsDoubtful) {
  test::writeFile(file("gap.out"), "1\ny\ntime = no\n2\n1\nnan\n");
  test::writeFile(file("bad.out"), "1\ny\ntime = no\n2\n1\n1,37\n");
  const struct {
    test::Words words;
    int status;
    std::string text;
  } cases[] = {
      {{test::goldenPath("tree.fac"), test::goldenPath("times.spc")}, kSucceeded, "tree.fac: nothing wrong, factors\n"},
      {{"--kind", "output", file("gap.out")}, kSucceeded, "doubtful: 1 of 2 runs"},
      {{"--kind", "output", file("bad.out")},
       kFailed,
       "wrong: Error reading model output file\n  " + file("bad.out") + ":6"},
      {{"--kind", "stein", file("bad.out")}, kFailed, "wrong: "},
      {{"--kind", "rows", "--factors", test::goldenPath("mixed.fac"), test::goldenPath("rows.csv")},
       kSucceeded,
       "rows\n"},
      {{"--kind", "rows", test::goldenPath("rows.csv")}, kWrongUsage, ""},
      {{test::goldenPath("rows.csv"), test::goldenPath("tree.fac")}, kFailed, "--kind names it"},
      {{"none.psc"}, kFailed, "none.psc: wrong: "},
  };
  for (const auto& c : cases) {
    test::Words words = c.words;
    words.insert(words.begin(), "check");
    EXPECT_EQ(run(words), c.status) << c.words[0] << '\n' << out_ << errors_;
    EXPECT_NE(out_.find(c.text), std::string::npos) << c.words[0] << '\n' << out_;
  }
}

}  // namespace
}  // namespace tarvex
