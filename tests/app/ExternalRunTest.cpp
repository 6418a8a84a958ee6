#include <sys/wait.h>

#include <cstdlib>

#include "app/RunController.h"
#include "app/ScriptedFrontEnd.h"
#include "app/SmallStudy.h"
#include "support/Processes.h"
#include "support/ScriptedApplication.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using Calls = std::vector<std::string>;

constexpr const char* kThreeRuns = "1\ny\ntime = no\n3\n1.5\n2.5\n3.5\n";

// A project of three runs of one factor, whose model is a program that the test writes.
class External : public test::InDirectory {
 protected:
  void SetUp() override {
    std::filesystem::create_directory(working_);
    ASSERT_EQ(controller_.acceptPrep(test::randomRuns({"a"}, 3, file("in.sam"))), Outcome::Done);
    ASSERT_EQ(controller_.generateSample(), Outcome::Done);
    frontEnd_ = {};
    setModel(file("model"));
    controller_.modelDirectory = directory_.path();
    descriptors_ = test::openDescriptors();
  }
  void TearDown() override {
    EXPECT_FALSE(controller_.busy());
    EXPECT_FALSE(test::hasChildren());
    EXPECT_EQ(test::openDescriptors(), descriptors_);
    EXPECT_TRUE(std::filesystem::is_empty(working_));
  }

  void setModel(const std::string& executable, const std::string& output = "model.out") {
    ModelChoice model;
    model.setExternal(executable, file(output), 0);
    model.kind = kExternalExecutable;
    ASSERT_EQ(controller_.acceptModel(std::move(model)), Outcome::Done);
  }
  std::string opened() const {
    return "open External model execution: " + controller_.project().model.choice.executable + ", " + file("in.sam");
  }
  // Behind the line that marks a log.
  std::string printed() const {
    const std::string text = test::readFile(file("model.out.log"));
    return text.substr(text.find('\n') + 1);
  }
  bool runAgain() { return controller_.runModel(RunController::SampleUse::Existing) == Outcome::Done; }
  bool run(const std::string& commands) {
    test::writeScript(file("model"), commands);
    frontEnd_.calls.clear();
    return runAgain();
  }

  int descriptors_ = 0;  // with the store's working files open
  std::string working_ = file("working");
  test::ScopedEnvironment temp_{"TEMP", working_};
  test::ScriptedFrontEnd frontEnd_;
  RunController controller_{frontEnd_};
};

TEST_F(External, readsWhatTheModelWrote) {
  setModel(directory_.path() + "\\model");  // a path of a machine that writes them so
  ASSERT_TRUE(run("echo \"reads $1\"\npwd >&2\ntest -r \"$1\" || exit 1\nprintf '" + std::string(kThreeRuns) +
                  "' > model.out\n"));
  EXPECT_EQ(frontEnd_.calls, (Calls{opened(), "close"}));
  EXPECT_EQ(frontEnd_.frames, 1);
  EXPECT_EQ(printed(), "reads " + file("in.sam") + '\n' + directory_.path() + '\n');
  EXPECT_EQ(controller_.project().model.results.runCount(), 3);
  std::vector<double> values;
  ASSERT_TRUE(controller_.project().model.results.readRun(2, values));
  EXPECT_EQ(values, std::vector<double>{3.5});
  ASSERT_TRUE(controller_.project().hasVels);
  EXPECT_EQ(controller_.project().vels.outputs().front().name, "y");
  EXPECT_EQ(controller_.analyse(AnalysisRequest()), Outcome::Done);
  descriptors_ = test::openDescriptors();  // with the table of the outputs
}

TEST_F(External, failuresAreTold) {
  const std::string code = "Error: Model execution returned with error code";
  const std::string output = "Error: Error reading model output file";
  const struct {
    const char* name;
    std::string commands;
    Calls calls;
  } cases[] = {
      {"exits with 3", "echo '1\ny\ntime = no\n1\n1' > model.out\nexit 3\n", {opened(), "close", code}},
      {"no output", "rm -f model.out\n", {opened(), "close", output}},
      {"output cut short", "echo '1\ny\ntime = no\n3\n1' > model.out\n", {opened(), "close", output}},
      {"a name with a digit",
       "echo '1\n2a\ntime = no\n3\n1\n2\n3' > model.out\n",
       {opened(), "close", "Error: Incorrect model variable name: 2a", output}},
  };
  for (const auto& c : cases) {
    EXPECT_FALSE(run(c.commands)) << c.name;
    // Below the message stands where in the file it failed, and why.
    for (std::string& call : frontEnd_.calls) call = call.substr(0, call.find('\n'));
    EXPECT_EQ(frontEnd_.calls, c.calls) << c.name;
    EXPECT_FALSE(controller_.project().hasVels) << c.name;
    EXPECT_FALSE(controller_.busy()) << c.name;
  }
}

// The model reads the sample in hand, whatever has become of its file.
TEST_F(External, theSampleFileHoldsTheSampleInHand) {
  const std::string commands = "cp \"$1\" seen\nprintf '" + std::string(kThreeRuns) + "' > model.out\n";
  ASSERT_TRUE(run(commands));
  const std::string sample = test::readFile(file("seen"));
  const struct {
    const char* name;
    std::function<void()> act;
  } cases[] = {{"gone", [&] { std::filesystem::remove(file("in.sam")); }},
               {"changed", [&] { test::writeFile(file("in.sam"), sample + "\n"); }},
               {"an older one", [&] { test::writeFile(file("in.sam"), "0\n1\n1\n0\n0.5\t\n0\n"); }}};
  for (const auto& c : cases) {
    c.act();
    EXPECT_TRUE(runAgain()) << c.name;
    EXPECT_EQ(test::readFile(file("seen")).substr(0, sample.size()), sample) << c.name;
  }
  setModel(file("model"), "in.sam");
  EXPECT_FALSE(runAgain());
  EXPECT_EQ(frontEnd_.calls.back(), "Error: Error reading model output file\n" + file("in.sam") +
                                        ": this is the sample, which the model reads");
  setModel(file("model"));
  ASSERT_TRUE(run(commands + "echo junk > \"$1\"\n"));
  EXPECT_TRUE(frontEnd_.calls.back().starts_with("Warning: The sample file has changed while the model ran."));
  std::filesystem::remove(file("in.sam"));
  std::filesystem::create_directory(file("in.sam"));
  EXPECT_FALSE(runAgain());
  EXPECT_TRUE(frontEnd_.calls.back().starts_with(
      "Error: Error trying to write to the Sample file.\nIs it locked by another application?"));
  std::filesystem::remove(file("in.sam"));

  test::writeFile(file("rows.txt"), "3\n1\na\n1\n2\n3\n");
  ASSERT_EQ(controller_.importSampleFile(file("rows.txt")), Outcome::Done);
  EXPECT_TRUE(runAgain());
  test::writeFile(file("rows.txt"), "3\n1\na\n1\n2\n4\n");
  EXPECT_FALSE(runAgain());
  EXPECT_EQ(test::readFile(file("rows.txt")), "3\n1\na\n1\n2\n4\n") << "an imported file is never written";
  test::writeFile(file("rows.txt"), "3\n1\na\n 1\n2\n3\n");
  EXPECT_TRUE(runAgain()) << "written again, but the same sample";
  descriptors_ = test::openDescriptors();  // of another sample
}

TEST_F(External, fewerRunsThanTheSampleAreRefusedByTheAnalysis) {
  ASSERT_TRUE(run("echo '1\ny\ntime = no\n2\n1\n2' > model.out\n"));
  EXPECT_EQ(controller_.analyse(AnalysisRequest()), Outcome::Refused);
  EXPECT_EQ(frontEnd_.calls.back(),
            "Error: The generated sample cardinality is different from model outputs size\n3 runs of the sample, 2 of "
            "the results");
}

TEST_F(External, namesThatWereChangedAreLinkedToTheOutputsThatTheProjectKnows) {
  const auto names = [this] {
    std::string text;
    for (const auto& output : controller_.project().vels.outputs()) text += output.name + ' ';
    return text;
  };
  const auto outputs = [](const std::string& three) {
    return "printf '3\n" + three + "\ntime = no\n3\n1 2 3\n1 2 3\n1 2 3\n' > model.out\n";
  };
  const struct {
    const char* given;
    const char* asked;  // given, kept, proposed; nothing where nobody is asked
    const char* names;
  } rows[] = {{"u-v\nw\nw", nullptr, "u_v w w_2 "},  // nothing is known yet
              {"u-v\nw\nw", nullptr, "u_v w w_2 "},  // the same again
              {"u\nv\nw", nullptr, "u v w "},        // nothing was changed
              {"w\na/b\nw", "w a/b w | w a_b w_2 | w u v", "w v u "},
              {"x+\nx*\nw", "x+ x* w | x_ x__2 w | v u w", "u v w "}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.given);
    std::string asked;
    frontEnd_.linkNames = [&](OutputLink& link) {
      for (const auto* const list : {&link.given, &link.kept, &link.names}) {
        for (const std::string& name : *list) asked += name + ' ';
        if (list != &link.names) asked += "| ";
      }
      const auto u = std::ranges::find(link.names, "u");
      std::swap(*u, *std::ranges::find(link.names, "v"));
    };
    ASSERT_TRUE(run(outputs(row.given)));
    EXPECT_EQ(asked, row.asked == nullptr ? "" : std::string(row.asked) + ' ');
    EXPECT_EQ(names(), row.names);
  }
  frontEnd_.linkNames = nullptr;  // cancelled
  ASSERT_TRUE(run(outputs("x+\nx*\nw")));
  EXPECT_EQ(names(), "x_ x__2 w ");
}

TEST_F(External, aLostModelIsTold) {
  frontEnd_.frame = [] { wait(nullptr); };  // somebody else takes the exit code
  EXPECT_FALSE(run("exit 0\n"));
  EXPECT_EQ(frontEnd_.calls, (Calls{opened(), "Error: Lost connection to model execution", "close"}));
}

// Many runs in a row leave nothing open, no process and no file: TearDown looks. TARVEX_RUNS asks for more of them, for
// a change of the process or of working files.
TEST_F(External, manyRunsLeaveNothingBehind) {
  const char* const asked = std::getenv("TARVEX_RUNS");
  const int runs = asked == nullptr ? 300 : std::atoi(asked);
  test::writeScript(file("model"), "printf '" + std::string(kThreeRuns) + "' > $TARVEX_OUTPUT\n");
  // Written within a tick of the clock, in the same file and of the same size, every output is seen to be new.
  for (int i = 0; i < runs; ++i) ASSERT_TRUE(runAgain()) << i;
  EXPECT_FALSE(run("exit 0\n"));
  EXPECT_EQ(frontEnd_.calls.back(), "Error: Error reading model output file\n" + file("model.out") +
                                        ": the model did not write it, it is older than the model's start");
  EXPECT_EQ(directory_.entries(), (Calls{"in.sam", "model", "model.out", "model.out.log", "working"}));
}

// A project of three runs whose model is a workbook of one output.
class WorkbookRun : public test::InDirectory {
 protected:
  void SetUp() override {
    ASSERT_EQ(controller_.acceptPrep(test::randomRuns({"a"}, 3, file("in.sam"))), Outcome::Done);
    ASSERT_EQ(controller_.generateSample(), Outcome::Done);
    frontEnd_.calls.clear();
    test::writeFile(workbook_, "as it was");
    ModelChoice model;
    model.setExternal("Excel Application", workbook_, 1);
    model.kind = kExternalExecutable;
    ASSERT_EQ(controller_.acceptModel(std::move(model)), Outcome::Done);
    controller_.makeSpreadsheetApplication = [this](const std::function<bool()>& serve) {
      auto application = std::make_unique<test::ScriptedApplication>();
      application->sheets = {{"Outputs", {{{0, 0}, "y"}, {{1, 0}, 1.0}, {{2, 0}, 2.0}, {{3, 0}, 3.0}}}};
      application->user = [this, serve] {
        EXPECT_EQ(controller_.generateSample(), Outcome::Busy) << "nothing else starts meanwhile";
        while (serve())
          if (frontEnd_.frames == 5) return true;
        return false;
      };
      return application;
    };
  }

  std::string workbook_ = file("book.ods");
  test::ScriptedFrontEnd frontEnd_;
  RunController controller_{frontEnd_};
  const std::string opened_ = "open External model execution: Excel Application, " + workbook_;
};

TEST_F(WorkbookRun, servesTheUserUntilTheApplicationIsClosed) {
  EXPECT_EQ(controller_.runModel(RunController::SampleUse::Existing), Outcome::Done);
  EXPECT_EQ(frontEnd_.calls, (Calls{opened_, "close"}));
  EXPECT_EQ(frontEnd_.frames, 5);
  EXPECT_FALSE(controller_.busy());
  EXPECT_EQ(controller_.project().model.results.runCount(), 3);
  ASSERT_TRUE(controller_.project().hasVels);
  EXPECT_EQ(controller_.project().vels.outputs().front().name, "y");
}

}  // namespace
}  // namespace tarvex
