#include "app/RunController.h"

#include <chrono>
#include <thread>

#include "app/LongOperation.h"
#include "app/ScriptedFrontEnd.h"
#include "app/SmallStudy.h"
#include "base/WorkingFile.h"
#include "base/uniformRandom.h"
#include "postproc/SensitivityStats.h"
#include "sampling/FixedSampler.h"
#include "support/FailingCalls.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using Calls = std::vector<std::string>;

// A project of two uniform factors, random runs and the model y = a + b.
class Controller : public test::InDirectory {
 protected:
  void SetUp() override {
    restoreInitialTrialState();  // equations are tried out at drawn values
    ASSERT_EQ(controller_.acceptPrep(test::randomRuns({"a", "b"}, 200, file("out.sam"))), Outcome::Done);
    setModel("a + b");
  }

  void setModel(const std::string& text) { ASSERT_EQ(controller_.acceptModel(test::equation(text)), Outcome::Done); }
  void edit(const std::function<void(PrepSettings&)>& change) {
    PrepSettings settings;
    std::string message;
    ASSERT_TRUE(settings.copyFrom(controller_.project().prep, message)) << message;
    change(settings);
    ASSERT_EQ(controller_.acceptPrep(std::move(settings)), Outcome::Done);
  }
  bool generate() { return controller_.generateSample() == Outcome::Done; }
  bool run(bool existing) {
    using Use = RunController::SampleUse;
    return controller_.runModel(existing ? Use::Existing : Use::Generated) == Outcome::Done;
  }
  bool analyse(const AnalysisRequest& request) { return controller_.analyse(request) == Outcome::Done; }

  std::vector<double> outputs() {
    std::vector<double> all;
    std::vector<double> run;
    for (std::int32_t r = 0; r < controller_.project().model.results.runCount(); ++r) {
      EXPECT_TRUE(controller_.project().model.results.readRun(r, run));
      all.insert(all.end(), run.begin(), run.end());
    }
    return all;
  }

  // What a generation shows, as far as it writes its file.
  const Calls opened_{"open Sample generation", "status Output file: " + file("out.sam")};
  const Calls generated_{opened_[0], opened_[1], "status Copying data to file...", "close"};
  test::ScriptedFrontEnd frontEnd_;
  RunController controller_{frontEnd_};
};

TEST_F(Controller, generatesInStepsOfOnePercent) {
  ASSERT_TRUE(generate());
  EXPECT_EQ(frontEnd_.calls, generated_);
  ASSERT_EQ(frontEnd_.percents.size(), 100u);
  for (int k = 0; k < 100; ++k) EXPECT_EQ(frontEnd_.percents[static_cast<std::size_t>(k)], k);
  EXPECT_EQ(controller_.project().prep.samples.rows(), 200);
  EXPECT_TRUE(controller_.project().prep.sampleStatistics);
  EXPECT_TRUE(controller_.modified());
  EXPECT_FALSE(controller_.sampleStale());
  EXPECT_FALSE(controller_.busy());
  EXPECT_EQ(directory_.entries(), Calls{"out.sam"});
}

// Fixed rows beyond what the store holds in memory.
TEST_F(Controller, settingsThatCannotBeComparedLeaveTheSample) {
  constexpr std::int32_t kRuns = 140000;
  edit([](PrepSettings& settings) {
    auto fixed = std::make_unique<FixedSampler>();
    fixed->setNumFactors(2);
    for (std::int32_t i = 0; i < kRuns; ++i) ASSERT_TRUE(fixed->addRow({0.5, i / 2.0}));
    settings.sampler = std::move(fixed);
  });
  ASSERT_TRUE(generate());
  for (const auto& [call, verb] :
       {std::pair(test::FailingCalls::kPread, "read"), {test::FailingCalls::kPwrite, "write"}}) {
    PrepSettings settings;
    std::string message;
    ASSERT_TRUE(settings.copyFrom(controller_.project().prep, message)) << message;
    frontEnd_ = {};
    test::FailingCalls calls;
    calls.fail(call, 1, EIO);
    EXPECT_EQ(controller_.acceptPrep(std::move(settings)), Outcome::Refused);
    EXPECT_EQ(frontEnd_.calls, Calls{std::string("Error: Cannot ") + verb + " the working file in " +
                                     WorkingFile::directory() + ": Input/output error"});
    EXPECT_EQ(controller_.project().prep.samples.rows(), kRuns);
    EXPECT_FALSE(controller_.sampleStale());
  }
}

TEST_F(Controller, asksBeforeItReplacesASample) {
  const std::string question =
      "Warning? One sample set already exists.\n Do you want to delete the existing one and create a new one now? Yes "
      "No";
  ASSERT_TRUE(generate());
  const std::string first = test::readFile(file("out.sam"));

  frontEnd_ = {};
  frontEnd_.answer = false;
  EXPECT_TRUE(generate());
  EXPECT_EQ(frontEnd_.calls, Calls{question});
  EXPECT_EQ(test::readFile(file("out.sam")), first);

  frontEnd_ = {};
  EXPECT_TRUE(generate());
  EXPECT_EQ(frontEnd_.calls, (Calls{question, generated_[0], generated_[1], generated_[2], generated_[3]}));
  EXPECT_EQ(test::readFile(file("out.sam")), first) << "the same settings";

  frontEnd_ = {};
  edit([](PrepSettings& settings) { EXPECT_TRUE(settings.sampler->setSeed(2)); });
  EXPECT_EQ(controller_.project().prep.samples.rows(), 0) << "rows that the settings no longer describe are gone";
  EXPECT_TRUE(generate());
  EXPECT_EQ(frontEnd_.calls, generated_);
  edit([](PrepSettings&) {});
  EXPECT_EQ(controller_.project().prep.samples.rows(), 200);
  frontEnd_ = {};
  EXPECT_TRUE(generate());
  EXPECT_EQ(frontEnd_.calls, generated_) << "a stale sample goes without a question";
  EXPECT_NE(test::readFile(file("out.sam")), first);
}

TEST_F(Controller, refusesWhatCannotBeGenerated) {
  edit([](PrepSettings& settings) { settings.sampleFile = "/no/such/out.sam"; });
  EXPECT_FALSE(generate());
  EXPECT_EQ(frontEnd_.calls,
            (Calls{"open Sample generation", "status Output file: /no/such/out.sam",
                   "Error: Error trying to write to the Sample file.\nIs it locked by another application?\n"
                   "/no/such/out.sam: No such file or directory",
                   "close"}));
  EXPECT_EQ(controller_.project().prep.samples.rows(), 0);

  frontEnd_ = {};
  edit([](PrepSettings& settings) { EXPECT_TRUE(settings.sampler->setSamples(0)); });
  EXPECT_FALSE(generate());
  EXPECT_EQ(frontEnd_.calls, Calls{"Warning:   No samples to generate"});
}

TEST_F(Controller, runsTheEquationsOverTheSample) {
  ASSERT_TRUE(run(false));
  Calls calls{"link"};
  calls.insert(calls.end(), generated_.begin(), generated_.end());
  calls.insert(calls.end(), {"open Model execution", "status Model name:  noname", "close"});
  EXPECT_EQ(frontEnd_.calls, calls);
  EXPECT_EQ(outputs().size(), 200u);
  ASSERT_TRUE(controller_.project().hasVels);
  EXPECT_EQ(controller_.project().vels.outputs().front().name, "y");
  EXPECT_EQ(controller_.project().vels.sensitivity->factorCount, 2);
  EXPECT_FALSE(controller_.project().vels.sensitivity->computed);
}

TEST_F(Controller, takesTheInputsInTheOrderOfTheLink) {
  setModel("a");
  frontEnd_.link = [](InternalModel& model) { model.moveVariable(0, 1); };
  ASSERT_TRUE(run(false));
  double row[2];
  ASSERT_TRUE(controller_.project().prep.samples.getRow(0, row));
  EXPECT_NEAR(outputs().front(), row[1], 1e-6);

  setModel("a");
  frontEnd_.acceptLink = false;
  ASSERT_TRUE(run(true)) << "a cancelled link keeps the model and the run goes on";
  EXPECT_NEAR(outputs().front(), row[0], 1e-6);
}

TEST_F(Controller, rowsThatCannotBeEvaluatedAreNanAndToldOnce) {
  setModel("1 / (a < 0.5)");
  ASSERT_TRUE(run(false));
  const std::vector<double> values = outputs();
  const auto isNan = [](double value) { return std::isnan(value); };
  const auto first = std::ranges::find_if(values, isNan) - values.begin();
  EXPECT_EQ(frontEnd_.calls.back(), "Warning: Error evaluating model\nThe equations could not be evaluated in " +
                                        std::to_string(std::ranges::count_if(values, isNan)) +
                                        " of 200 runs, first in run " + std::to_string(first) +
                                        ". Their outputs are nan.");
}

TEST_F(Controller, refusesAModelThatDoesNotFitTheSample) {
  ASSERT_EQ(controller_.acceptModel(test::equation("a", {"a"})), Outcome::Done);
  EXPECT_FALSE(run(false));
  EXPECT_EQ(frontEnd_.calls, Calls{"Error: The number of model inputs differs from the number of factors in the "
                                   "generated sample"});
  frontEnd_ = {};
  setModel("a + b");
  EXPECT_FALSE(run(true)) << "there is no sample yet";
  EXPECT_EQ(frontEnd_.calls.back(), "Warning:   No samples to generate");
}

// What analyse() leaves of the blocks that it wasn't asked for.
TEST_F(Controller, analysisKeepsABlockOnlyWhileItFits) {
  ASSERT_TRUE(run(false));
  const ProjectConfiguration& project = controller_.project();
  AnalysisRequest request;
  request.variables = {"y"};
  ASSERT_TRUE(analyse(request));
  EXPECT_TRUE(project.vels.sensitivity->computed);
  request.sensitivity = false;
  ASSERT_TRUE(analyse(request));
  EXPECT_TRUE(project.vels.sensitivity->computed) << "the same variables: the measures still fit";
  request.variables = {"y", "y * 2"};
  ASSERT_TRUE(analyse(request));
  EXPECT_FALSE(project.vels.sensitivity->computed);
  EXPECT_EQ(project.vels.uncertainty.variableCount(), 2);
  EXPECT_NEAR(project.vels.uncertainty.mean(1), 2.0 * project.vels.uncertainty.mean(0), 1e-12);
}

TEST_F(Controller, refusedAnalysesChangeNothing) {
  ASSERT_TRUE(run(false));
  const ProjectConfiguration& project = controller_.project();
  AnalysisRequest request;
  ASSERT_TRUE(analyse(request));
  const struct {
    const char* text;
    AnalysisRequest request;
  } rows[] = {{"nothing", {.variables = {"nothing"}}},
              {"   Expression can't be evaluated.", {.variables = {"y * (2"}}},
              {"0.8", {.tchebyConfidence = 0.8}},
              {"1.5", {.alpha = 1.5}}};
  for (const auto& row : rows) {
    frontEnd_ = {};
    EXPECT_FALSE(analyse(row.request)) << row.text;
    EXPECT_NE(frontEnd_.calls.back().find(row.text), std::string::npos) << frontEnd_.calls.back();
    EXPECT_EQ(project.vels.selectedVariables(), Calls{"y"}) << row.text;
    EXPECT_TRUE(project.vels.sensitivity->computed) << row.text;
  }
}

// A display that comes only where it is worth it, and hears of a percent once.
TEST(LongOperation, isShownAfterAWhile) {
  test::ScriptedFrontEnd frontEnd;
  {
    const LongOperation operation(frontEnd, "Reading", 0);
    EXPECT_TRUE(operation.progress().report(0.1));
    EXPECT_EQ(frontEnd.calls, Calls{});
    std::this_thread::sleep_for(std::chrono::milliseconds(210));
    for (const double done : {0.2, 0.201, 0.25}) EXPECT_TRUE(operation.progress().report(done));
  }
  EXPECT_EQ(frontEnd.calls, (Calls{"open Reading", "close"}));
  EXPECT_EQ(frontEnd.percents, (std::vector<int>{20, 25}));
}

}  // namespace
}  // namespace tarvex
