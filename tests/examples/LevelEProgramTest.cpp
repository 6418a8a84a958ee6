// The program as its user has it: files in, files and a status out.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "levele/LevelEModel.h"
#include "levele/SampleTable.h"
#include "support/Damage.h"
#include "support/Numbers.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"

namespace levele {
namespace {

using tarvex::test::readLines;
using tarvex::test::writeFile;

using Words = std::vector<std::string>;

const Words kRun0 = {"550", "0.003", "3e-06", "0.01", "0.03", "300", "125", "3", "3", "16", "16", "1000000"};
const Words kRun1 = {"100", "0.01", "1e-05", "0.1", "0.1", "100", "50", "1", "1", "3", "3", "100000"};

std::string line(const Words& words) {
  std::string text;
  for (const std::string& word : words) text += word + '\t';
  return text + '\n';
}

const std::string kTwoRuns = "0\n2\n12\n0\n" + line(kRun0) + line(kRun1);

class LevelEProgram : public testing::Test {
 protected:
  void SetUp() override { std::filesystem::current_path(directory_.path()); }

  // Exit status; what the program said is in said_.
  int run(const std::string& arguments) {
    const int status = std::system(("'" LEVELE_PROGRAM "' " + arguments + " > said 2>&1").c_str());
    said_ = tarvex::test::readFile("said");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  void refuses(const std::string& arguments, const std::string& text) {
    EXPECT_EQ(run(arguments), 1) << arguments;
    EXPECT_EQ(said_, text + '\n') << arguments;
  }

  tarvex::test::ScopedCurrentDirectory stay_;
  tarvex::test::TempDirectory directory_;
  std::string said_;
};

TEST_F(LevelEProgram, writesEveryRunAndTime) {
  writeFile("two runs.sam", kTwoRuns);
  ASSERT_EQ(run("'two runs.sam'"), 0) << said_;
  EXPECT_EQ(said_, "");
  const auto lines = readLines("levele.out");
  ASSERT_EQ(lines.size(), 6 + 2 * (2 + 26));
  EXPECT_EQ(Words(lines.begin(), lines.begin() + 8),
            Words({"3", "doseI", "doseChain", "dose", "time = yes", "2", "RUN 0", "26"}));
  EXPECT_EQ(lines[34], "RUN 1");
  const Dose dose = LevelEModel({550, 0.003, 3e-06, 0.01, 0.03, 300, 125, 3, 3, 16, 16, 1000000}).dose(1e5);
  std::istringstream row(lines[16]);
  for (const double expected : {1e5, dose.iodine, dose.chain, dose.iodine + dose.chain}) {
    double number = 0.0;
    row >> number;
    EXPECT_TRUE(tarvex::test::agrees(number, expected, 1e-5));
  }
}

// The same runs, once listed by factor, once with columns in another order and among others: only their names tell.
TEST_F(LevelEProgram, tablesByFactorAndByName) {
  std::string byFactor = "0\n2\n12\n1\n";
  std::string records = "Default Truncations:\n0.001\t0.999\n\n13 Distributions:\nConstant\nextra\n\n1\t9\n\n";
  Words row0 = {"9"};
  Words row1 = {"9"};
  for (std::size_t i = 0; i < kFactors; ++i) {
    byFactor += line({kRun0[i], kRun1[i]});
    const std::size_t k = kFactors - 1 - i;
    row0.push_back(kRun0[k]);
    row1.push_back(kRun1[k]);
    records += "Uniform\n" + std::string(kFactorNames[k]) + "\na note\n1\t2\n0\t1\t0.5\n1\t2\t0.5\n\n";
  }
  writeFile("plain.sam", kTwoRuns);
  writeFile("factor.sam", byFactor);
  writeFile("named.sam", "0\n2\n13\n0\n" + line(row0) + line(row1) + "0\n" + records);
  for (const char* name : {"plain", "factor", "named"}) {
    const std::string output = std::string(name) + ".out";
    ASSERT_EQ(run(std::string(name).append(".sam ").append(output)), 0) << said_;
    EXPECT_EQ(readLines(output), readLines("plain.out")) << name;
  }
}

TEST_F(LevelEProgram, saysWhatIsWrong) {
  const std::string use = "Use: levele SAMPLE.sam [OUTPUT]";
  refuses("", use);
  refuses("good.sam a b", use);
  refuses("none.sam", "Can't read the sample file none.sam");
  refuses(".", "Can't read the sample file .");
  const struct {
    std::string text, says;
  } damages[] = {
      {"", "its first four lines must be whole numbers"},
      {"0\n2\n12\n0\n" + line(kRun0) + "100\t0.01\n", "number 15 of 24 is missing or no number"},
      {"0\n1\n2\n0\n1\tx\t\n", "number 2 of 2 is missing or no number"},
      {"0\n2000000000\n2000000000\n0\n1\t2\n", "2000000000 runs of 2000000000 columns don't fit the file"},
      {"0\n-1\n12\n0\n1\t2\n", "-1 runs of 12 columns don't fit the file"},
  };
  for (const auto& damage : damages) {
    writeFile("a.sam", damage.text);
    refuses("a.sam", "The table of runs in a.sam is damaged: " + damage.says);
  }
  writeFile("few.sam", "0\n1\n2\n0\n1\t2\t\n");
  refuses("few.sam", "The sample needs the factors T, kI, kC, v1, v2, l1, l2, RI1, RI2, RC1, RC2 and W");
  writeFile("range.sam",
            "0\n2\n12\n0\n" + line(kRun0) + line({"1", "1", "1", "0", "1", "1", "1", "1", "1", "1", "1", "1"}));
  refuses("range.sam", "Run 1: v1 must be above 0");
  writeFile("nan.sam", "0\n1\n12\n0\n" + line({"nan", "1", "1", "1", "1", "1", "1", "1", "1", "1", "1", "1"}));
  refuses("nan.sam", "Run 0: T must be a number");
  EXPECT_FALSE(std::filesystem::exists("levele.out"));
  writeFile("good.sam", kTwoRuns);
  refuses("good.sam none/x.out", "Can't write none/x.out: No such file or directory");
  refuses("good.sam /dev/full", "Can't write /dev/full: No space left on device");
}

TEST_F(LevelEProgram, damagedTablesAreReadOrRefused) {
  tarvex::test::forEachDamage(kTwoRuns, [](const std::string& what, const std::string& text) {
    writeFile("damaged.sam", text);
    SampleTable table;
    const bool read = table.read("damaged.sam");
    EXPECT_EQ(table.errorText().empty(), read) << what;
    EXPECT_EQ(table.runs() > 0, read) << what;
    EXPECT_LE(table.runs() * table.columns(), 24) << what;
  });
}

}  // namespace
}  // namespace levele
