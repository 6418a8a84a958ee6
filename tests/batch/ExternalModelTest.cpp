#include <cstdlib>

#include "batch/CommandFixture.h"
#include "support/Processes.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using test::Words;

// A model in a directory with a trying name, called from there, and a sample whose record leads to another directory.
class ExternalModel : public test::CommandFixture {
 protected:
  void SetUp() override {
    std::filesystem::create_directories(case_ + "/elsewhere");
    std::filesystem::current_path(case_ + "/elsewhere");
    ASSERT_TRUE(RememberedDirectories::set(RememberedDirectories::Prep, case_ + "/elsewhere"));
    ASSERT_EQ(CommandFixture::run({"sample", test::goldenPath("ishigami.fac"), "-o", case_ + "/my sample.sam",
                                   "--method", "random", "--runs", "3"}),
              kSucceeded)
        << errors_;
    RememberedDirectories::forget();
    std::filesystem::current_path(case_);
  }
  void TearDown() override {
    CommandFixture::TearDown();
    EXPECT_FALSE(test::hasChildren());
  }

  // Runs the model under relative paths, as a user types them.
  int run(const std::string& commands, bool terminal = false) {
    test::writeScript("model one", commands);
    return CommandFixture::run(
        {"run", "my sample.sam", "-o", "run.spc", "--executable", "model one", "--output", "model.out"}, terminal);
  }

  std::string case_ = directory_.file("my \"case\" 'é'");
};

TEST_F(ExternalModel, runsWhereItWasCalledFromAndIsRecordedAsTyped) {
  ASSERT_EQ(run("pwd; echo \"$1\"; printf '1\\ny\\ntime = no\\n3\\n1\\n2\\n4\\n' > model.out\n"), kSucceeded)
      << errors_;
  EXPECT_EQ(out_, "3 runs, 1 output: run.spc\n");
  EXPECT_EQ(errors_, "");
  EXPECT_EQ(test::readFile(case_ + "/model.out.log"),
            "What the model printed, kept by Tarvex until its next run.\n" + case_ + '\n' + case_ + "/my sample.sam\n");
  const std::string record = test::readFile(case_ + "/run.spc");
  EXPECT_NE(record.find("\nmodel one\n"), std::string::npos);
  EXPECT_NE(record.find("\nmodel.out\n"), std::string::npos);
  EXPECT_EQ(CommandFixture::run({"analyse", case_ + "/run.spc"}), kSucceeded) << errors_;
}

TEST_F(ExternalModel, failuresEndWithTheirMessageAndWithoutResults) {
  EXPECT_EQ(run("exit 3\n"), kFailed);
  EXPECT_EQ(errors_, "Model execution returned with error code\nThe code is 3. What the model printed is in " + case_ +
                         "/model.out.log.\n");
  std::filesystem::current_path(case_);
  EXPECT_EQ(run("exit 0\n"), kFailed);
  EXPECT_EQ(errors_, "Error reading model output file\nmodel.out: No such file or directory\n");
  std::filesystem::current_path(case_);
  test::writeFile("text", "exit 0\n");
  const auto start = [this](const std::string& executable, const std::string& output) {
    const int status =
        CommandFixture::run({"run", "my sample.sam", "-o", "run.spc", "--executable", executable, "--output", output});
    std::filesystem::current_path(case_);
    return status;
  };
  EXPECT_EQ(start("text", "model.out"), kFailed);
  EXPECT_EQ(errors_, "The model execution process can't be loaded.\nError 13\ncmd: \"" + case_ + "/text\" \"" + case_ +
                         "/my sample.sam\"\n" + case_ + "/text: Permission denied\n");
  EXPECT_EQ(start("missing", "model.out"), kFailed);
  EXPECT_EQ(errors_, "   Error checking model executable\nmissing: No such file or directory\n");
  EXPECT_EQ(start("", "model.out"), kFailed);
  EXPECT_EQ(errors_, "   Empty fields not admitted\n");
  EXPECT_FALSE(std::filesystem::exists("run.spc"));
}

TEST_F(ExternalModel, wrongUsage) {
  for (const char* model :
       {"--executable model", "--model m.imd --output o", "--model m.imd --executable e --output o"})
    EXPECT_EQ(CommandFixture::run(test::wordsOf(std::string("run s.sam -o run.spc ") + model)), kWrongUsage) << model;
}

TEST_F(ExternalModel, aTerminalShowsTheTimeThatItTakes) {
  EXPECT_EQ(run("sleep 0.6; exit 1\n", true), kFailed);
  for (const char* text : {"External model execution | 0:0", "External model execution / 0:0"})
    EXPECT_NE(errors_.find(text), std::string::npos) << errors_;
}

// A sample of twenty runs and a workbook for them, called from where they lie.
class Workbook : public test::CommandFixture {
 protected:
  void SetUp() override {
    std::filesystem::current_path(directory_.path());
    std::filesystem::copy_file(TARVEX_EXAMPLES "/workbook/ishigami.xlsx", "my book.xlsx");
    ASSERT_EQ(run(test::wordsOf("sample in/ishigami.fac -o in.sam --method random --runs 20")), kSucceeded) << errors_;
    RememberedDirectories::forget();
    std::filesystem::current_path(directory_.path());
  }

  // The program itself, as only that one finds its helper.
  static int program(const std::string& words) {
    return std::system((std::string(TARVEX_BATCH_PROGRAM " run in.sam ") + words + " > out 2> errors").c_str());
  }
};

TEST_F(Workbook, isComputedAndReadAgain) {
#ifndef TARVEX_SHEET
  GTEST_SKIP() << "tarvex-sheet is not built: it needs libreoffice-calc and libreoffice-dev";
#endif
  ASSERT_EQ(program("-o run.spc --workbook 'my book.xlsx'"), 0) << test::readFile("errors");
  EXPECT_EQ(test::readFile("out"), "20 runs, 1 output: run.spc\n");
  const std::string record = test::readFile("run.spc");
  EXPECT_NE(record.find("\nExcel Application\nmy book.xlsx\n1\n1\n20\n1\ny\n0\nRun 0\n"), std::string::npos);

  const std::string computed = test::readFile("my book.xlsx");
  ASSERT_EQ(program("-o again.spc --workbook 'my book.xlsx' --read-only"), 0) << test::readFile("errors");
  const auto results = [](const std::string& text) { return text.substr(text.find("\nRun 0\n")); };
  EXPECT_EQ(results(test::readFile("again.spc")), results(record));
  EXPECT_EQ(test::readFile("my book.xlsx"), computed);
  EXPECT_EQ(directory_.entries(),
            (std::vector<std::string>{"again.spc", "errors", "in.sam", "my book.xlsx", "out", "run.spc"}));
}

TEST_F(Workbook, withoutLibreOfficeTheUserIsToldWhatToInstall) {
  EXPECT_EQ(run({"run", "in.sam", "-o", "run.spc", "--workbook", "my book.xlsx"}), kFailed);
  EXPECT_EQ(errors_,
            "Excel not registered properly\nWorkbooks need LibreOffice Calc: install the packages libreoffice-calc and "
            "libreoffice-dev, and build again.\nError in the Excel model execution\n");
  EXPECT_EQ(run(test::wordsOf("run in.sam -o run.spc --workbook b --output o")), kWrongUsage);
  EXPECT_FALSE(std::filesystem::exists(directory_.file("run.spc")));
}

}  // namespace
}  // namespace tarvex
