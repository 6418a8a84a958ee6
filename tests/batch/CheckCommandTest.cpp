#include <gtest/gtest.h>

#include "batch/CommandFixture.h"
#include "batch/FileFindings.h"
#include "support/Damage.h"
#include "support/Golden.h"
#include "support/TextFiles.h"

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

// Real files with one fault each: what is refused is refused with its line, by every reader.
TEST_F(CheckCommand, everyRefusedFileNamesTheLine) {
  const std::pair<const char*, const char*> files[] = {{"factors", "mixed.fac"}, {"factors", "stein.fac"},
                                                       {"model", "mixed.imd"},   {"output", "times.out"},
                                                       {"sample", "sobol.sam"},  {"results", "pair.spc"}};
  for (const auto& [kind, name] : files) {
    constexpr int kEach = 97;  // of the damages; the folders' own tests go through all
    int damages = 0;
    int silent = 0;
    std::string first;
    test::forEachDamage(test::readFile(test::goldenPath(name)), [&, word = kind](const auto& what, const auto& text) {
      if (++damages % kEach != 0) return;
      const std::string path = file("damaged");
      test::writeFile(path, text);
      for (const std::string& finding : findInFile(path, word, "").wrong) {
        if (finding.find(path + ':') != std::string::npos || finding.find('\n') == std::string::npos) continue;
        if (silent++ == 0) first = what + ": " + finding;
      }
    });
    EXPECT_EQ(silent, 0) << name << ", first: " << first;
  }
}

}  // namespace
}  // namespace tarvex
