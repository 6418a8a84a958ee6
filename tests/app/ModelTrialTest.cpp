#include "app/ModelTrial.h"

#include <chrono>
#include <filesystem>

#include "factors/makeFactor.h"
#include "model/ModelChoice.h"
#include "sampling/PrepConfiguration.h"
#include "support/ScriptedApplication.h"
#include "support/TempDirectory.h"
#include "support/Test.h"
#include "support/TextFiles.h"

namespace tarvex {
namespace {

using std::filesystem::perms;

// Scripts as models over a sample of the rows (1, 2) and (3, 4).
class ModelTrialTest : public testing::Test {
 protected:
  ModelTrialTest() {
    for (const char* const name : {"a", "b"}) {
      auto factor = makeFactor("Normal");
      factor->name = name;
      prep_.factors.addFactor(std::move(factor));
    }
    EXPECT_TRUE(prep_.samples.allocate(2));
    for (const std::array<double, 2>& row : {std::array{1.0, 2.0}, std::array{3.0, 4.0}})
      EXPECT_GT(prep_.samples.addRow(row.data()), 0);
  }
  ModelChoice program(const std::string& script, bool runnable = true) {
    const std::string path = directory_.file("model");
    test::writeFile(path, "#!/bin/sh\n" + script);
    std::filesystem::permissions(path, runnable ? perms::owner_all : perms::owner_read | perms::owner_write);
    ModelChoice choice;
    choice.setExternal(path, output(), 0);
    choice.kind = kExternalExecutable;
    return choice;
  }
  std::string output() const { return directory_.file("y.out"); }
  TrialReport run(const ModelChoice& choice, std::int32_t row = 0, std::function<bool()> serve = {}) {
    return ModelTrial(choice, prep_, {directory_.path(), std::move(serve), {}}).run(row);
  }

  test::TempDirectory directory_;
  PrepConfiguration prep_;
};

TEST_F(ModelTrialTest, EveryKindOfProgramIsToldAndNothingStaysBehind) {
  const std::string write = "cat > \"$TARVEX_OUTPUT\" << E\n";
  const struct {
    const char* name;
    std::string script;
    std::string problem;  // what it begins with; PATH is the output file
    std::size_t badLine;
    int exitCode;
  } rows[] = {
      {"good", write + "1\ny\ntime = no\n1\n5\nE\n", "", 0, 0},
      {"exit code", "echo broken; exit 3\n", "Model execution returned with error code\nThe code is 3.", 0, 3},
      {"killed", "kill -9 $$\n", "Model execution returned with error code\nThe code is 137.", 0, 137},
      {"nothing", "true\n", "Error reading model output file\nPATH: No such file", 0, 0},
      {"half", write + "2\ny\nz\ntime = no\n1\n5\nE\n", "Error reading model output file\nPATH:7", 7, 0},
      {"text", write + "1\ny\ntime = no\n1\nabc\nE\n",
       "Error reading model output file\nPATH:5: expected a number, found 'abc' (run 0, output y)", 5, 0},
      {"a comma", write + "1\ny\ntime = no\n1\n1,5\nE\n",
       "Error reading model output file\nPATH:5: expected a number, found '1,5' (run 0, output y)", 5, 0},
      {"too many runs", write + "1\ny\ntime = no\n2\n5\n6\nE\n",
       "The output file has 2 runs, but the sample that the model was given has one.", 0, 0},
      {"an empty file", ": > \"$TARVEX_OUTPUT\"\n", "Error reading model output file\nPATH:1", 1, 0},
  };
  for (const bool hadOutput : {false, true})
    for (const auto& row : rows) {
      SCOPED_TRACE(row.name);
      if (hadOutput) test::writeFile(output(), "of an earlier run");
      const TrialReport report = run(program(row.script));
      std::string problem = row.problem;
      if (const std::size_t at = problem.find("PATH"); at != std::string::npos) problem.replace(at, 4, output());
      EXPECT_EQ(report.problem.substr(0, problem.size()), problem);
      EXPECT_EQ(report.isGood, problem.empty());
      EXPECT_EQ(report.badLine, row.badLine);
      EXPECT_EQ(report.exitCode, row.exitCode);
      EXPECT_EQ(std::filesystem::exists(output()), hadOutput);
      EXPECT_FALSE(std::filesystem::exists(output() + ".before-trial"));
      if (hadOutput) {
        EXPECT_EQ(test::readFile(output()), "of an earlier run");
      }
    }
}

TEST_F(ModelTrialTest, AModelGetsTheRowThatWasAskedFor) {
  const std::string echo =
      "awk 'NR > 4 { print \"1\\ny\\ntime = yes\\n1\\nRUN 0\\n1\\n0.5 \" $1 * 10 + $2; exit }' \"$1\" > "
      "\"$TARVEX_OUTPUT\"; echo said; pwd\n";
  const std::pair<std::int32_t, double> rows[] = {{0, 12.0}, {1, 34.0}, {TrialRow::kMeans, 23.0}};
  for (const auto& [row, value] : rows) {
    const TrialReport report = run(program(echo), row);
    EXPECT_TRUE(report.isGood) << report.problem;
    EXPECT_EQ(report.values, std::vector<double>{value});
    EXPECT_EQ(report.times, std::vector<double>{0.5});
    EXPECT_EQ(report.printed, "said\n" + directory_.path() + '\n');
    EXPECT_EQ(report.lines.size(), 7U);
  }
  EXPECT_EQ(run(program(echo), 2).problem, "The sample has 2 rows.");
  prep_.external = 1;  // the imported form: counts, names, values
  const TrialReport report =
      run(program("(echo 1; echo y; echo time = no; echo 1; sed -n 5p \"$1\" | cut -f2) > \"$TARVEX_OUTPUT\"\n"));
  EXPECT_TRUE(report.isGood) << report.problem;
  EXPECT_EQ(report.values, std::vector<double>{2.0});
}

TEST_F(ModelTrialTest, WhatCannotBeStartedSaysWhy) {
  EXPECT_EQ(run(program("", false)).problem.rfind("The model execution process can't be loaded.\nError 13\n", 0), 0U);
  ModelChoice gone = program("");
  gone.executable += ".gone";
  EXPECT_EQ(run(gone).problem.rfind("The model execution process can't be loaded.\nError 2\n", 0), 0U);
  ModelChoice linked = program("true\n");
  std::filesystem::create_symlink(directory_.file("elsewhere"), output());
  EXPECT_EQ(run(linked).problem, output() + ": it is no plain file, and so can't be kept");
}

TEST_F(ModelTrialTest, AHangingModelIsStoppedAndALoudOneIsCutShort) {
  const auto start = std::chrono::steady_clock::now();
  const auto late = [start] { return std::chrono::steady_clock::now() - start < std::chrono::milliseconds(300); };
  const TrialReport hanging = run(program("sleep 100 & sleep 100\n"), 0, late);
  EXPECT_EQ(hanging.problem, "The trial was stopped.");
  EXPECT_LT(hanging.seconds, 2.0);
  const TrialReport loud = run(program("yes | head -c 3000000; exit 1\n"));
  EXPECT_EQ(loud.printed.size(), TrialReport::kMostPrinted);
  // What a program left aside that died comes back first.
  test::writeFile(output() + ".before-trial", "older");
  test::writeFile(output(), "of the trial that died");
  run(program("true\n"));
  EXPECT_EQ(test::readFile(output()), "older");
}

TEST_F(ModelTrialTest, AWorkbookIsTriedByItsSheetsAndByItsCells) {
  const std::string book = directory_.file("book.ods");
  test::writeFile(book, "as it was");
  ModelChoice choice;
  choice.setExternal("Excel Application", book, 1);
  choice.kind = kExternalExecutable;
  std::string failing;
  bool goesOn = true;
  const auto tried = [&](std::int32_t row) {
    return ModelTrial(choice, prep_,
                      {directory_.path(), [&] { return goesOn; },
                       [&](auto serve) {
                         auto application = std::make_unique<test::ScriptedApplication>();
                         application->sheets = {{"Inputs"}, {"Outputs", {{{0, 0}, "y"}}}};
                         application->failing = failing;
                         application->compute = [&sheets = application->sheets, serve] {
                           const double* const a = std::get_if<double>(&sheets[0].cells[{1, 0}]);
                           const double* const b = std::get_if<double>(&sheets[0].cells[{1, 1}]);
                           if (a == nullptr || b == nullptr || !serve()) return;
                           sheets[1].cells[{1, 0}] = *a == 3.0 ? SheetCell("x") : SheetCell(*a * 10 + *b);
                         };
                         return application;
                       }})
        .run(row);
  };
  const WorkbookCells cells{{{"b", "Inputs", 1, 1}, {"a", "Inputs", 1, 0}}, {{"y", "Outputs", 1, 0}}};
  for (const bool byCells : {false, true}) {
    SCOPED_TRACE(byCells);
    choice.cells = byCells ? cells : WorkbookCells();
    failing.clear();
    goesOn = true;
    for (const auto& [row, value] : {std::pair{0, 12.0}, {TrialRow::kMeans, 23.0}}) {
      const TrialReport report = tried(row);
      EXPECT_TRUE(report.isGood) << report.problem;
      EXPECT_EQ(report.names, std::vector<std::string>{"y"});
      EXPECT_EQ(report.values, std::vector<double>{value});
    }
    EXPECT_EQ(tried(1).problem, "Error in the Excel model execution\n" + book +
                                    (byCells ? ": Outputs!A2: expected a number, found 'x'"
                                             : ": Outputs.A2: expected a number, found 'x'"));
    failing = "start";
    EXPECT_EQ(tried(0).problem, "Error in the Excel model execution\nExcel not registered properly\nstart failed");
    failing.clear();
    goesOn = false;
    EXPECT_EQ(tried(0).problem, "The trial was stopped.");
    EXPECT_EQ(test::readFile(book), "as it was");
  }
  choice.cells.inputs.pop_back();
  goesOn = true;
  EXPECT_NE(tried(0).problem.find("The workbook has no cell for the factors 'a'.\n"), std::string::npos);
}

TEST_F(ModelTrialTest, ALineOfGigabytesIsReadInPartAndCanBeStopped) {
  // A file with holes, which takes no room.
  const std::string write =
      "printf '1\\ny\\ntime = no\\n1\\nabc ' > \"$TARVEX_OUTPUT\"; truncate -s 3G \"$TARVEX_OUTPUT\"\n";
  const auto start = std::chrono::steady_clock::now();
  const TrialReport report = run(program(write));
  EXPECT_EQ(report.badLine, 5U);
  ASSERT_EQ(report.lines.size(), 5U);
  EXPECT_EQ(report.lines[4].size(), TrialReport::kMostOfLine);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  int asked = 0;
  EXPECT_EQ(
      run(program("printf '1\\ny\\ntime = no\\n1\\n5 ' > \"$TARVEX_OUTPUT\"; truncate -s 30G \"$TARVEX_OUTPUT\"\n"), 0,
          [&asked] { return ++asked < 500; })
          .problem,
      "The trial was stopped.");
}

TEST_F(ModelTrialTest, EquationsGiveEachTheirValueOrItsReason) {
  auto model = std::make_unique<InternalModel>();
  for (const char* const name : {"a", "b"}) EXPECT_TRUE(model->addVariable(name));
  EXPECT_TRUE(model->addExpression(0, "t", "a / (b - 2)", 0));
  EXPECT_TRUE(model->addExpression(1, "y", "t + 1", 1));
  ModelChoice choice;
  choice.setInternalModel(std::move(model));
  const TrialReport good = run(choice, 1);
  EXPECT_TRUE(good.isGood) << good.problem;
  EXPECT_EQ(good.values, (std::vector<double>{1.5, 2.5}));
  const TrialReport bad = run(choice, 0);
  EXPECT_EQ(bad.problem, "Error evaluating model\nt: Divide by Zero");
  EXPECT_EQ(bad.reasons, (std::vector<std::string>{"Divide by Zero", "t has no value"}));
}

}  // namespace
}  // namespace tarvex
