#include "batch/Commands.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "base/NumberText.h"
#include "base/WorkingFile.h"
#include "batch/CommandFixture.h"
#include "support/FailingCalls.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using test::Words;

class Batch : public test::CommandFixture {
 protected:
  // The command fails with that status and a message that holds `text`, and leaves no file.
  void refuses(const Words& words, int status, const std::string& text) {
    EXPECT_EQ(run(words), status) << testing::PrintToString(words) << '\n' << errors_;
    EXPECT_NE(errors_.find(text), std::string::npos) << testing::PrintToString(words) << '\n' << errors_;
    EXPECT_TRUE(directory_.entries().empty()) << testing::PrintToString(words);
  }
  void refuses(const std::string& command, int status, const std::string& text) {
    refuses(test::wordsOf(command), status, text);
  }
};

TEST_F(Batch, wordsThatTheCommandLineDoesNotKnow) {
  const std::string sample = "sample in/mixed.fac -o out/a.sam";
  refuses("", kWrongUsage, "subcommand");
  refuses("frob", kWrongUsage, "frob");
  refuses(sample + " --method dice", kWrongUsage, "dice");
  refuses(sample, kWrongUsage, "--method");
  refuses("sample in/mixed.fac --method random", kWrongUsage, "--output");
  refuses(sample + " --method random --frob", kWrongUsage, "--frob");
  refuses(sample + " --method random --runs many", kWrongUsage, "many");
  refuses(sample + " --method fast --mode fancy", kWrongUsage, "fancy");
  refuses("run in/ishigami.sam -o out/a.spc", kWrongUsage, "--model");
  const std::pair<const char*, Words> sizes[] = {{"random", {"--runs"}},
                                                 {"fast", {"--runs"}},
                                                 {"lptau", {"--runs"}},
                                                 {"morris", {"--trajectories", "--levels"}},
                                                 {"replicated-latin", {"--base-design", "--replications"}},
                                                 {"sobol", {"--base-size"}},
                                                 {"fixed", {"--rows"}}};
  for (const auto& [method, missing] : sizes) {
    std::string command = sample + " --method " + method;
    for (const std::string& size : missing) {
      refuses(command, kWrongUsage, size + " is required");
      command += ' ' + size + " 4";
    }
  }
}

TEST_F(Batch, samplesThatAreRefused) {
  const struct {
    const char *words, *text;
  } cases[] = {
      {"nothing.fac random -n 9", "Error opening factors file\nnothing.fac"},
      {"in/ishigami.imd random -n 9", "Error reading factors file"},
      {"in/mixed.fac random --runs 0", "  No samples to generate"},
      {"in/mixed.fac random --runs -1", "Number of execution must be a positive value"},
      {"in/mixed.fac random --runs 4294967296", "out of range"},
      {"in/mixed.fac latin --runs 9 --seed 0", "Seed must be a value greater than 0 and less than 2,147,483,647"},
      {"in/mixed.fac latin --runs 9 --levels 4", "--levels"},
      {"in/mixed.fac morris --trajectories 4 --levels 0", "Num level must be a positive value"},
      {"in/mixed.fac sobol --base-size 16 --order 6", "  Incorrect order number, order too big."},
      {"in/mixed.fac fast --mode extended --runs 324", "Sample size too small\nThe sample size must be >= 65"},
      {"in/mixed.fac replicated-latin --base-design 5 --replications 2", "Replicated Latin Hypercube"},
      {"in/mixed.fac sobol --base-size 16 --cheap", "--order"},
      {"in/mixed.fac fast --mode groups --runs 900 --group g=x1,nobody", "nobody"},
      {"in/mixed.fac fast --mode groups --runs 900 --group g=x1,k1", "k1"},
      {"in/mixed.fac fast --mode groups --runs 900 --group g=", "Group's cardinality equal to 0"},
      {"in/mixed.fac fast --mode groups --runs 900 --group x1", "NAME=a,b,c"},
      {"in/mixed.fac fixed --rows nothing.csv", "nothing.csv"},
      {"in/matrix.fac sobol --base-size 16", "Sobol"},
      {"in/stein.fac random --runs 10", "Random"},
      {"in/stein.fac latin --runs 61", "The Stein sample has fewer rows than the sample to generate."},
  };
  for (const auto& c : cases) {
    Words words = test::wordsOf(std::string("sample ") + c.words);
    words.insert(words.begin() + 2, {"-o", "out/a.sam", "--method"});
    refuses(words, kFailed, c.text);
  }
  test::FailingCalls calls;
  calls.leaveFree(310'000'000);
  refuses("sample in/mixed.fac -o out/a.sam --method random --runs 2000000000", kFailed,
          "A sample of 2000000000 runs of 8 factors needs 256 GB, " + WorkingFile::directory() + " has 310 MB free.");
}

TEST_F(Batch, rowsOfAFixedSampleThatAreRefused) {
  const std::pair<const char*, const char*> cases[] = {
      {"x1,z\n1,2\n", ":1: 'z' is no factor of the list."},
      {"x1,x2\n1,2\n", ":1: the column of the factor 'x3' is missing."},
      {"x1,x1,x2,x3\n", ":1: the factor 'x1' stands twice."},
      {"x1,x2,x3\n1,2,3\n1,b,3\n", ":3: 'b' is not a number."},
      {"x1,x2,x3\n1,2\n", ":2: 2 values for 3 factors."},
      {"x1,x2,x3\n", "  No samples to generate"},
  };
  const test::TempDirectory rows;
  for (const auto& [text, problem] : cases) {
    test::writeFile(rows.file("rows.csv"), text);
    refuses("sample in/ishigami.fac -o out/a.sam --method fixed --rows " + rows.file("rows.csv"), kFailed, problem);
  }
}

TEST_F(Batch, runsAndAnalysesThatAreRefused) {
  const struct {
    const char *command, *text;
  } cases[] = {
      {"run nothing.sam -o out/a.spc --model in/ishigami.imd", "Error reading samples file\nnothing.sam"},
      {"run in/ishigami.sam -o out/a.spc --model in/ishigami.fac", "Error reading the internal model file"},
      {"run in/ishigami.sam -o out/a.spc --model in/g.imd",
       "The number of model inputs differs from the number of factors in the generated sample"},
      {"run in/ishigami.sam -o out/a.spc --output nothing.out",
       "   No output model file\nnothing.out: No such file or directory"},
      {"analyse in/ishigami.sam", "  Error reading UA/SA file"},
      {"analyse in/ishigami-run.spc -o out/a.spc --variable q", "q"},
      {"analyse in/ishigami-run.spc -o out/a.spc --alpha 0.5", "0.5"},
      {"analyse in/ishigami-run.spc -o out/a.spc --variable y/(2", "   Expression can't be evaluated."},
      {"show in/rows.csv", "rows.csv"},
      {"import in/rows.csv -o out/a.sam", "Error reading external samples file"},
      {"demo Nowhere", "Nowhere"},
  };
  for (const auto& c : cases) refuses(c.command, kFailed, c.text);
}

TEST_F(Batch, aStopEndsWith130AndLeavesNothing) {
  StopSignals::request(true);
  for (const char* command : {"sample in/mixed.fac -o out/a.sam --method random --runs 500",
                              "run in/ishigami.sam -o out/a.spc --model in/ishigami.imd",
                              "analyse in/ishigami-run.spc --csv out/a.csv --tables out/t", "demo LevelE"})
    refuses(command, kStopped, "");
}

TEST_F(Batch, progressIsShownOnATerminalOnly) {
  const Words words = test::wordsOf("sample in/ishigami.fac -o out/a.sam --method random --runs 1000");
  ASSERT_EQ(run(words), kSucceeded);
  EXPECT_EQ(errors_, "");
  ASSERT_EQ(run(words, true), kSucceeded);
  EXPECT_NE(errors_.find(" 40%  400 of 1000 runs"), std::string::npos) << errors_;
  EXPECT_NE(errors_.find(" left"), std::string::npos);
  EXPECT_EQ(errors_.back(), '\r') << "the bar is wiped out at the end";
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
    ASSERT_EQ(run({"show", std::string("in/") + c.file}), kSucceeded) << c.file << errors_;
    for (const std::string& text : c.texts)
      EXPECT_NE(out_.find(text), std::string::npos) << c.file << " lacks: " << text << '\n' << out_;
  }
}

TEST_F(Batch, theNumberOfThreadsChangesNothing) {
  for (const std::string design :
       {"latin --runs 30000", "random --runs 30000 --by factor", "fast --mode extended --runs 40000"}) {
    std::string before;
    for (const std::string threads : {"1", "2", "5"}) {
      std::string files;
      for (const std::string& command : {"sample in/mixed.fac -o out/a.sam --method " + design,
                                         std::string("run out/a.sam -o out/a.spc --model in/mixed.imd"),
                                         std::string("analyse out/a.spc -o out/b.spc")}) {
        const Words words = test::wordsOf(command + " --threads " + threads);
        ASSERT_EQ(run(words), kSucceeded) << errors_;
        files += test::readFile(placed(words[3]));
      }
      EXPECT_TRUE(before.empty() || files == before) << design << " with " << threads << " threads";
      before = files;
    }
  }
}

// The exports hold every number of the statistics, at full precision and under the same names.
TEST_F(Batch, exportsAgreeWithEachOtherAndWithTheFile) {
  ASSERT_EQ(run({"analyse", "in/plant-run.spc", "-o", "out/a.spc", "--csv", "out/a.csv", "--json", "out/a.json",
                 "--variable", "power", "--variable", "power / fixed", "--quantile", "97.5", "--exceeds", "1e9"}),
            kSucceeded)
      << errors_;
  const auto document = nlohmann::json::parse(test::readFile(file("a.json")));
  ASSERT_EQ(document["variables"].size(), 2u);
  EXPECT_EQ(document["sample"]["factors"].size(), 20u);
  const auto& power = document["variables"][0];
  EXPECT_EQ(power["variable"], "power");
  EXPECT_EQ(power["measures"].size(), 20u);
  const int runs = power["uncertainty"]["runs"];
  EXPECT_EQ(power["quantiles"]["97.5"].size(), 3u);
  EXPECT_NEAR(power["exceedance"]["1000000000"]["upper"], 1.0 - std::pow(0.025, 1.0 / runs), 1e-12);
  EXPECT_NE(out_.find("Clopper-Pearson"), std::string::npos);
  EXPECT_EQ(power["measures"]["p1"].size(), 22u) << "21 values and the kind";
  const double mean = power["uncertainty"]["mean"];
  EXPECT_NE(test::readFile(file("a.spc")).find(numberText(mean) + "\t"), std::string::npos);

  std::size_t numbers = 0;
  for (const auto& variable : document["variables"])
    for (const auto& [block, items] : variable.items()) {
      if (block == "variable" || block == "not computed") continue;
      for (const auto& item : items) numbers += item.is_object() ? item.size() : 1;
    }
  const std::vector<std::string> lines = test::readLines(file("a.csv"));
  EXPECT_EQ(lines.front(), "block,variable,item,quantity,value,remark");
  EXPECT_EQ(lines.size(), numbers + 1);
  EXPECT_EQ(lines[2], "uncertainty,\"power\",\"\",mean," + numberText(mean, 17) + ",");
}

// At 4 levels every step jumps by half the range of the second factor, which is its period in Ishigami's function.
TEST_F(Batch, namesTheTrapOfAPeriodicModelInMorris) {
  ASSERT_EQ(run(test::wordsOf("sample in/ishigami.fac -o out/a.sam --method morris --trajectories 10 --levels 4")),
            kSucceeded);
  ASSERT_EQ(run({"run", "out/a.sam", "-o", "out/a.spc", "--model", "in/ishigami.imd"}), kSucceeded);
  ASSERT_EQ(run({"analyse", "out/a.spc"}), kSucceeded);
  EXPECT_NE(out_.find("  x2 has no effect in this design."), std::string::npos) << out_;
  EXPECT_EQ(out_.find("  x1 has no effect"), std::string::npos);
}

// What the tables hold is tested with them; here that each computed one has its file.
TEST_F(Batch, writesASavedTablePerVariableAndMeasure) {
  ASSERT_EQ(run({"analyse", "in/plain-run.spc", "--tables", "out/tables"}), kSucceeded);
  std::size_t found = 0;
  for (const char* variable : {"Y", "Z_1"})
    for (const char* table : {"uncertainty", "PEAR", "SPEA", "PCC", "PRCC", "SRC", "SRRC", "Smirnov"})
      found += test::readFile(file("tables/") + variable + "-" + table + ".txt").empty() ? 0 : 1;
  EXPECT_EQ(found, 16u);
}

}  // namespace
}  // namespace tarvex
