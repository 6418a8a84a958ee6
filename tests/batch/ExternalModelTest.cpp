#include <gtest/gtest.h>

#include <filesystem>

#include "batch/CommandFixture.h"
#include "support/Golden.h"
#include "support/Processes.h"
#include "support/TextFiles.h"

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
                         "/my sample.sam\"\n");
  EXPECT_EQ(start("missing", "model.out"), kFailed);
  EXPECT_EQ(errors_, "   Error checking model executable\nmissing\n");
  EXPECT_EQ(start("", "model.out"), kFailed);
  EXPECT_EQ(errors_, "   Empty fields not admitted\n\n");
  EXPECT_FALSE(std::filesystem::exists("run.spc"));
}

TEST_F(ExternalModel, wrongUsage) {
  for (const Words& model : {Words{"--executable", "model"}, Words{"--model", "m.imd", "--output", "o"},
                             Words{"--model", "m.imd", "--executable", "e", "--output", "o"}}) {
    Words words{"run", "my sample.sam", "-o", "run.spc"};
    words.insert(words.end(), model.begin(), model.end());
    EXPECT_EQ(CommandFixture::run(words), kWrongUsage) << model[0] << model.size();
  }
}

TEST_F(ExternalModel, aStopEndsTheModel) {
  StopSignals::request(true);
  EXPECT_EQ(run("sleep 60\n"), kStopped);
  EXPECT_EQ(errors_, "");
  EXPECT_FALSE(std::filesystem::exists(case_ + "/run.spc"));
}

TEST_F(ExternalModel, aTerminalShowsTheTimeThatItTakes) {
  EXPECT_EQ(run("sleep 0.6; exit 1\n", true), kFailed);
  for (const char* text : {"External model execution | 0:0", "External model execution / 0:0"})
    EXPECT_NE(errors_.find(text), std::string::npos) << errors_;
}

}  // namespace
}  // namespace tarvex
