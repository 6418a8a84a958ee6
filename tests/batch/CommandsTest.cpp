#include "batch/Commands.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "base/NumberText.h"
#include "base/RememberedDirectories.h"
#include "base/WorkingFile.h"
#include "batch/StopSignals.h"
#include "support/FailingCalls.h"
#include "support/Golden.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"

namespace tarvex {
namespace {

using Words = std::vector<std::string>;

struct Outcome {
  int status;
  std::string out;
  std::string errors;
};

Outcome run(const Words& words, bool terminal = false) {
  std::ostringstream out;
  std::ostringstream errors;
  const int status = runBatch(words, out, errors, terminal);
  return {status, out.str(), errors.str()};
}

std::string golden(const char* name) {
  return test::goldenPath(name);
}

class Batch : public testing::Test {
 protected:
  void SetUp() override { RememberedDirectories::forget(); }
  void TearDown() override { StopSignals::request(false); }
  std::string out(const std::string& name) const { return directory_.file(name); }

  // The command fails with that status and a message that holds `text`, and leaves no file.
  void refuses(const Words& words, int status, const std::string& text) {
    const Outcome outcome = run(words);
    std::string line;
    for (const std::string& word : words) line += word + ' ';
    EXPECT_EQ(outcome.status, status) << line << '\n' << outcome.errors;
    EXPECT_NE(outcome.errors.find(text), std::string::npos) << line << '\n' << outcome.errors;
    EXPECT_TRUE(directory_.entries().empty()) << line;
  }

  test::ScopedCurrentDirectory stay_;
  test::TempDirectory directory_;
};

TEST_F(Batch, wordsThatTheCommandLineDoesNotKnow) {
  const std::string sam = out("a.sam");
  refuses({}, kWrongUsage, "subcommand");
  refuses({"frob"}, kWrongUsage, "frob");
  refuses({"sample", golden("mixed.fac"), "-o", sam, "--method", "dice"}, kWrongUsage, "dice");
  refuses({"sample", golden("mixed.fac"), "-o", sam}, kWrongUsage, "--method");
  refuses({"sample", golden("mixed.fac"), "--method", "random"}, kWrongUsage, "--output");
  refuses({"sample", golden("mixed.fac"), "-o", sam, "--method", "random", "--frob"}, kWrongUsage, "--frob");
  refuses({"sample", golden("mixed.fac"), "-o", sam, "--method", "random", "--runs", "many"}, kWrongUsage, "many");
  refuses({"sample", golden("mixed.fac"), "-o", sam, "--method", "fast", "--mode", "fancy"}, kWrongUsage, "fancy");
  refuses({"run", golden("ishigami.sam"), "-o", out("a.spc")}, kWrongUsage, "--model");
  const std::pair<const char*, Words> sizes[] = {{"random", {"--runs"}},
                                                 {"fast", {"--runs"}},
                                                 {"lptau", {"--runs"}},
                                                 {"morris", {"--trajectories", "--levels"}},
                                                 {"replicated-latin", {"--base-design", "--replications"}},
                                                 {"sobol", {"--base-size"}},
                                                 {"fixed", {"--rows"}}};
  for (const auto& [method, missing] : sizes) {
    Words words{"sample", golden("mixed.fac"), "-o", sam, "--method", method};
    for (const std::string& size : missing) {
      refuses(words, kWrongUsage, size + " is required");
      words.insert(words.end(), {size, "4"});
    }
  }
}

TEST_F(Batch, samplesThatAreRefused) {
  const auto sample = [this](const char* factors, const char* method, const Words& settings) {
    Words words{"sample", golden(factors), "-o", out("a.sam"), "--method", method};
    words.insert(words.end(), settings.begin(), settings.end());
    return words;
  };
  refuses({"sample", "nothing.fac", "-o", out("a.sam"), "--method", "random", "-n", "9"}, kFailed,
          "Error opening factors file\nnothing.fac");
  refuses({"sample", golden("ishigami.imd"), "-o", out("a.sam"), "--method", "random", "-n", "9"}, kFailed,
          "Error reading factors file");
  refuses({"sample", golden("mixed.fac"), "-o", out("no/such/a.sam"), "--method", "random", "--runs", "9"}, kFailed,
          "Error trying to write to the Sample file.\nIs it locked by another application?");
  refuses(sample("mixed.fac", "random", {"--runs", "0"}), kFailed, "  No samples to generate");
  refuses(sample("mixed.fac", "random", {"--runs", "-1"}), kFailed, "Number of execution must be a positive value");
  refuses(sample("mixed.fac", "random", {"--runs", "4294967296"}), kFailed, "out of range");
  refuses(sample("mixed.fac", "latin", {"--runs", "9", "--seed", "0"}), kFailed,
          "Seed must be a value greater than 0 and less than 2,147,483,647");
  refuses(sample("mixed.fac", "latin", {"--runs", "9", "--levels", "4"}), kFailed, "--levels");
  refuses(sample("mixed.fac", "morris", {"--trajectories", "4", "--levels", "0"}), kFailed,
          "Num level must be a positive value");
  refuses(sample("mixed.fac", "morris", {"--trajectories", "-4", "--levels", "4"}), kFailed,
          "Num trajectories must be a positive value");
  refuses(sample("mixed.fac", "replicated-latin", {"--base-design", "5", "--replications", "2"}), kFailed,
          "Replicated Latin Hypercube");
  refuses(sample("pair.fac", "replicated-latin", {"--base-design", "0", "--replications", "2"}), kFailed, "positive");
  refuses(sample("mixed.fac", "sobol", {"--base-size", "16", "--order", "6"}), kFailed,
          "  Incorrect order number, order too big.");
  refuses(sample("mixed.fac", "sobol", {"--base-size", "16", "--cheap"}), kFailed, "--order");
  refuses(sample("mixed.fac", "fast", {"--mode", "extended", "--runs", "324"}), kFailed,
          "Sample size too small\nThe sample size must be >= 65 per factor/group");
  refuses(sample("mixed.fac", "fast", {"--mode", "groups", "--runs", "900", "--group", "g=x1,nobody"}), kFailed,
          "nobody");
  refuses(sample("mixed.fac", "fast", {"--mode", "groups", "--runs", "900", "--group", "g=x1,k1"}), kFailed, "k1");
  refuses(sample("mixed.fac", "fast", {"--mode", "groups", "--runs", "900", "--group", "g="}), kFailed,
          "Group's cardinality equal to 0");
  refuses(sample("mixed.fac", "fast", {"--mode", "groups", "--runs", "900", "--group", "x1"}), kFailed, "NAME=a,b,c");
  refuses(sample("mixed.fac", "fixed", {"--rows", "nothing.csv"}), kFailed, "nothing.csv");
  refuses(sample("matrix.fac", "sobol", {"--base-size", "16"}), kFailed, "Sobol");
  refuses(sample("stein.fac", "random", {"--runs", "10"}), kFailed, "Random");
  refuses(sample("stein.fac", "latin", {"--runs", "61"}), kFailed,
          "The Stein sample has fewer rows than the sample to generate.");
  test::FailingCalls calls;
  calls.leaveFree(310'000'000);
  refuses(sample("mixed.fac", "random", {"--runs", "2000000000"}), kFailed,
          "A sample of 2000000000 runs of 8 factors needs 256 GB, " + WorkingFile::directory() + " has 310 MB free.");
}

TEST_F(Batch, rowsOfAFixedSampleThatAreRefused) {
  const struct {
    const char* name;
    const char* rows;
    const char* text;
  } cases[] = {
      {"an unknown factor", "x1,z\n1,2\n", ":1: 'z' is no factor of the list."},
      {"a missing column", "x1,x2\n1,2\n", ":1: the column of the factor 'x3' is missing."},
      {"a column twice", "x1,x1,x2,x3\n", ":1: the factor 'x1' stands twice."},
      {"a word", "x1,x2,x3\n1,2,3\n1,b,3\n", ":3: 'b' is not a number."},
      {"a short row", "x1,x2,x3\n1,2\n", ":2: 2 values for 3 factors."},
      {"no rows", "x1,x2,x3\n", "  No samples to generate"},
  };
  const test::TempDirectory rows;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    test::writeFile(rows.file("rows.csv"), c.rows);
    refuses(
        {"sample", golden("ishigami.fac"), "-o", out("a.sam"), "--method", "fixed", "--rows", rows.file("rows.csv")},
        kFailed, c.text);
  }
}

TEST_F(Batch, runsAndAnalysesThatAreRefused) {
  refuses({"run", "nothing.sam", "-o", out("a.spc"), "--model", golden("ishigami.imd")}, kFailed,
          "Error reading samples file\nnothing.sam");
  refuses({"run", golden("ishigami.sam"), "-o", out("a.spc"), "--model", golden("ishigami.fac")}, kFailed,
          "Error reading the internal model file");
  refuses({"run", golden("ishigami.sam"), "-o", out("a.spc"), "--model", golden("g.imd")}, kFailed,
          "The number of model inputs differs from the number of factors in the generated sample");
  refuses({"run", golden("ishigami.sam"), "-o", out("a.spc"), "--output", "nothing.out"}, kFailed,
          "   No output model file\nnothing.out");
  const std::string results = golden("ishigami-run.spc");
  refuses({"analyse", golden("ishigami.sam")}, kFailed, "  Error reading UA/SA file");
  refuses({"analyse", results, "-o", out("a.spc"), "--variable", "q"}, kFailed, "q");
  refuses({"analyse", results, "-o", out("a.spc"), "--variable", "y / (2"}, kFailed,
          "   Expression can't be evaluated.");
  refuses({"analyse", results, "-o", out("a.spc"), "--alpha", "0.5"}, kFailed, "0.5");
  refuses({"show", golden("rows.csv")}, kFailed, "rows.csv");
  refuses({"show", "nothing.sam"}, kFailed, "Error reading samples file");
  refuses({"import", golden("rows.csv"), "-o", out("a.sam")}, kFailed, "Error reading external samples file");
  refuses({"demo", "Nowhere"}, kFailed, "Nowhere");
}

TEST_F(Batch, importsSamples) {
  const test::TempDirectory inputs;
  test::writeFile(inputs.file("good.txt"), "3\n2\na\nb\n5 1\n6 2\n7 4\n");
  EXPECT_EQ(run({"import", inputs.file("good.txt"), "-o", out("a.sam")}).status, kSucceeded);
  const Outcome shown = run({"show", out("a.sam")});
  EXPECT_EQ(shown.status, kSucceeded);
  EXPECT_NE(shown.out.find("External sample\n3 runs of 2 factors"), std::string::npos) << shown.out;
}

TEST_F(Batch, aStopEndsWith130AndLeavesNothing) {
  StopSignals::request(true);
  refuses({"sample", golden("mixed.fac"), "-o", out("a.sam"), "--method", "random", "--runs", "500"}, kStopped, "");
  refuses({"run", golden("ishigami.sam"), "-o", out("a.spc"), "--model", golden("ishigami.imd")}, kStopped, "");
  refuses({"analyse", golden("ishigami-run.spc"), "--csv", out("a.csv"), "--tables", out("t")}, kStopped, "");
  refuses({"demo", "LevelE"}, kStopped, "");
}

TEST_F(Batch, progressIsShownOnATerminalOnly) {
  const Words words{"sample", golden("ishigami.fac"), "-o", out("a.sam"), "--method", "random", "--runs", "1000"};
  EXPECT_EQ(run(words).errors, "");
  const std::string bar = run(words, true).errors;
  EXPECT_NE(bar.find(" 40%  400 of 1000 runs"), std::string::npos) << bar;
  EXPECT_NE(bar.find(" left"), std::string::npos);
  EXPECT_EQ(bar.back(), '\r') << "the bar is wiped out at the end";
}

TEST_F(Batch, showsWhatFilesHold) {
  const struct {
    const char* file;
    Words texts;
  } cases[] = {
      {"kinds.fac", {"18 factors, 15 with a distribution", "norm      Normal", "= norm * gravity + sqrt(tri)"}},
      {"tree.fac", {"Dependence tree", "against     root               -0.7"}},
      {"stein.fac", {"Correlation of the Stein sample: 60 rows of "}},
      {"random-matrix.sam", {"Method: Random, 150 runs, seed 5648423", "Rank correlation", "The sample's moments"}},
      {"fast-groups.sam", {"Group one: x1 x3", "      1          8       1            65    65"}},
      {"morris.sam", {"8 trajectories on 4 levels"}},
      {"replatin-stein.sam", {"4 replications of a base design of 15 runs"}},
      {"sobol-order2.sam", {"17 blocks of 16 runs; indices up to order 2"}},
      {"plant.imd", {"20 inputs, 9 equations, 7 outputs", "log(1 + loss) * p9 / k3"}},
      {"times.spc", {"48 runs of 2 outputs, ", "Uncertainty statistics of 48 runs", "Sensitivity of dose[max]"}},
      {"ishigami-run.spc", {"Uncertainty statistics: not computed", "Sensitivity measures: not computed"}},
  };
  for (const auto& c : cases) {
    const Outcome shown = run({"show", golden(c.file)});
    EXPECT_EQ(shown.status, kSucceeded) << c.file << shown.errors;
    for (const std::string& text : c.texts)
      EXPECT_NE(shown.out.find(text), std::string::npos) << c.file << " lacks: " << text << '\n' << shown.out;
  }
}

// The exports hold every number of the statistics, at full precision and under the same names.
TEST_F(Batch, theNumberOfThreadsChangesNothing) {
  const std::vector<Words> designs = {{"latin", "--runs", "30000"},
                                      {"random", "--runs", "30000", "--by", "factor"},
                                      {"fast", "--mode", "extended", "--runs", "40000"}};
  for (const Words& design : designs) {
    std::string before;
    for (const char* threads : {"1", "2", "5"}) {
      Words sample = {"sample", golden("mixed.fac"), "-o", out("a.sam"), "--threads", threads, "--method"};
      sample.insert(sample.end(), design.begin(), design.end());
      const Words model = {"run",       out("a.sam"), "-o",      out("a.spc"),
                           "--threads", threads,      "--model", golden("mixed.imd")};
      const Words analysis = {"analyse", out("a.spc"), "-o", out("b.spc"), "--threads", threads};
      std::string files;
      for (const Words& words : {sample, model, analysis}) {
        const Outcome outcome = run(words);
        ASSERT_EQ(outcome.status, kSucceeded) << outcome.errors;
        files += test::readFile(words[3]);
      }
      EXPECT_TRUE(before.empty() || files == before) << design[0] << " with " << threads << " threads";
      before = files;
    }
  }
}

TEST_F(Batch, exportsAgreeWithEachOtherAndWithTheFile) {
  const Outcome outcome = run({"analyse", golden("plant-run.spc"), "-o", out("a.spc"), "--csv", out("a.csv"), "--json",
                               out("a.json"), "--variable", "power", "--variable", "power / fixed"});
  ASSERT_EQ(outcome.status, kSucceeded) << outcome.errors;
  const auto document = nlohmann::json::parse(test::readFile(out("a.json")));
  ASSERT_EQ(document["variables"].size(), 2u);
  EXPECT_EQ(document["sample"]["factors"].size(), 20u);
  const auto& power = document["variables"][0];
  EXPECT_EQ(power["variable"], "power");
  EXPECT_EQ(power["measures"].size(), 20u);
  EXPECT_EQ(power["measures"]["p1"].size(), 22u) << "21 values and the kind";
  const double mean = power["uncertainty"]["mean"];
  EXPECT_NE(test::readFile(out("a.spc")).find(numberText(mean) + "\t"), std::string::npos);

  std::size_t numbers = 0;
  for (const auto& variable : document["variables"])
    for (const auto& [block, items] : variable.items()) {
      if (block == "variable" || block == "not computed") continue;
      for (const auto& item : items) numbers += item.is_object() ? item.size() : 1;
    }
  const std::vector<std::string> lines = test::readLines(out("a.csv"));
  EXPECT_EQ(lines.front(), "block,variable,item,quantity,value,remark");
  EXPECT_EQ(lines.size(), numbers + 1);
  EXPECT_EQ(lines[2], "uncertainty,\"power\",\"\",mean," + numberText(mean, 17) + ",");
}

// At 4 levels every step jumps by half the range of the second factor, which is its period in Ishigami's function.
TEST_F(Batch, namesTheTrapOfAPeriodicModelInMorris) {
  ASSERT_EQ(run({"sample", golden("ishigami.fac"), "-o", out("a.sam"), "--method", "morris", "--trajectories", "10",
                 "--levels", "4"})
                .status,
            kSucceeded);
  ASSERT_EQ(run({"run", out("a.sam"), "-o", out("a.spc"), "--model", golden("ishigami.imd")}).status, kSucceeded);
  const Outcome analysed = run({"analyse", out("a.spc")});
  EXPECT_NE(analysed.out.find("  x2 has no effect in this design."), std::string::npos) << analysed.out;
  EXPECT_EQ(analysed.out.find("  x1 has no effect"), std::string::npos);
}

// What the tables hold is tested with them; here that each computed one has its file.
TEST_F(Batch, writesASavedTablePerVariableAndMeasure) {
  const Words command{"analyse", golden("plain-run.spc"), "--tables", out("tables")};
  ASSERT_EQ(run(command).status, kSucceeded);
  std::size_t found = 0;
  for (const char* variable : {"Y", "Z_1"})
    for (const char* table : {"uncertainty", "PEAR", "SPEA", "PCC", "PRCC", "SRC", "SRRC", "Smirnov"})
      found += test::readFile(out("tables/") + variable + "-" + table + ".txt").empty() ? 0 : 1;
  EXPECT_EQ(found, 16u);
}

}  // namespace
}  // namespace tarvex
