// What a desktop does with the controller, without one: panels that edit settings, ask what can be done, listen, and
// hold what they show.

#include "app/RunController.h"
#include "app/ScriptedFrontEnd.h"
#include "app/SmallStudy.h"
#include "base/uniformRandom.h"
#include "postproc/RegressionStats.h"
#include "support/FailingCalls.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using test::equation;
using Use = RunController::SampleUse;

class Session : public test::InDirectory {
 protected:
  void SetUp() override { restoreInitialTrialState(); }

  PrepSettings settings(std::int32_t runs) const { return test::randomRuns({"a", "b"}, runs, file("out.sam")); }
  // A finished and analysed study of y = a + b.
  void analysed() {
    ASSERT_EQ(controller_.acceptPrep(settings(100)), Outcome::Done);
    ASSERT_EQ(controller_.acceptModel(equation("a + b")), Outcome::Done);
    ASSERT_EQ(controller_.runModel(Use::Generated), Outcome::Done);
    ASSERT_EQ(controller_.analyse({}), Outcome::Done);
    frontEnd_ = {};
  }

  test::ScriptedFrontEnd frontEnd_;
  RunController controller_{frontEnd_};
};

TEST_F(Session, stepByStepWithPanelsThatListenAndHold) {
  std::vector<Changes> told;
  const auto subscription = controller_.subscribe([&](Changes changes) { told.push_back(changes); });
  for (const Step step : {Step::Generate, Step::Visualize, Step::SelectModel, Step::Run, Step::Analyse, Step::QuickSave,
                          Step::SaveResults})
    EXPECT_NE(controller_.whyNot(step), "") << static_cast<int>(step);

  ASSERT_EQ(controller_.enterMonteCarlo(), Outcome::Done);
  ASSERT_EQ(controller_.acceptPrep(settings(200)), Outcome::Done);
  EXPECT_EQ(told.back(), (Changes{Change::Prep, Change::Measures, Change::Flags}));
  EXPECT_EQ(controller_.whyNot(Step::Generate), "");
  EXPECT_NE(controller_.whyNot(Step::Run), "");
  ASSERT_EQ(controller_.acceptModel(equation("a + b")), Outcome::Done);
  EXPECT_EQ(controller_.whyNot(Step::Run), "");

  // What the user tries meanwhile: nothing happens, and the reason is there.
  int tried = 0;
  frontEnd_.events = [&] {
    ++tried;
    EXPECT_EQ(controller_.clearAll(), Outcome::Busy);
    EXPECT_EQ(controller_.saveProject("/no/such"), Outcome::Busy);
    EXPECT_EQ(controller_.analyse({}), Outcome::Busy);
    EXPECT_NE(controller_.whyNot(Step::Reset), "");
  };
  told.clear();
  ASSERT_EQ(controller_.runModel(Use::Generated), Outcome::Done);
  EXPECT_GT(tried, 100);
  EXPECT_TRUE(told.front().contains(Change::Flags)) << "busy";
  EXPECT_TRUE(told.back().contains(Change::Results));
  frontEnd_.events = {};

  ASSERT_EQ(controller_.selectVariables({"y", "y * 2"}), Outcome::Done);
  EXPECT_EQ(controller_.selectVariables({"z"}), Outcome::Refused);
  ASSERT_EQ(controller_.analyse({.variables = {"y", "y * 2"}}), Outcome::Done);
  const auto held = controller_.analysis();
  EXPECT_EQ(held, controller_.analysis()) << "nothing changed";
  const double mean = held->uncertainty.mean(0);
  double first = 0.0;
  ASSERT_TRUE(held->table->getValue(0, 0, first));

  ASSERT_EQ(controller_.acceptPrep(settings(50)), Outcome::Done);
  EXPECT_NE(controller_.whyNot(Step::Analyse), "");
  ASSERT_EQ(controller_.acceptModel(equation("a - b")), Outcome::Done);
  ASSERT_EQ(controller_.runModel(Use::Generated), Outcome::Done);
  EXPECT_NE(held, controller_.analysis());
  EXPECT_FALSE(controller_.analysis()->sensitivity);
  EXPECT_EQ(held->variables, (std::vector<std::string>{"y", "y * 2"}));
  EXPECT_EQ(held->uncertainty.mean(0), mean);
  double again = 1.0;
  EXPECT_TRUE(held->table->getValue(0, 0, again) && again == first && held->table->rows() == 200);
  EXPECT_EQ(dynamic_cast<const RegressionStats&>(*held->sensitivity).records.size(), 2u);
}

// Whatever replaces a sample or a run, or fails or is stopped half way: what is left belongs together.
TEST_F(Session, resultsGoWithWhatTheyBelongedTo) {
  const struct {
    const char* name;
    std::function<void()> act;
    bool keeps;
  } cases[] = {
      {"a new sample", [&] { static_cast<void>(controller_.generateSample(RunController::OldSample::Replace)); },
       false},
      {"a sample that can't be written",
       [&] {
         test::FailingCalls calls;
         calls.fail(test::FailingCalls::kRename, 1);
         EXPECT_EQ(controller_.generateSample(RunController::OldSample::Replace), Outcome::Refused);
       },
       false},
      {"a stopped generation",
       [&] {
         std::filesystem::remove(file("out.sam"));
         frontEnd_.stopAtPercent = 37;
         EXPECT_EQ(controller_.generateSample(RunController::OldSample::Replace), Outcome::Refused);
         EXPECT_EQ(frontEnd_.percents.back(), 37);
         EXPECT_TRUE(controller_.project().prep.samples.rows() == 0 && !controller_.busy());
         EXPECT_FALSE(std::filesystem::exists(file("out.sam")));
       },
       false},
      {"a stopped run",
       [&] {
         frontEnd_.stopAtPercent = 37;
         static_cast<void>(controller_.runModel(Use::Existing));
       },
       false},
      {"another model", [&] { static_cast<void>(controller_.acceptModel(equation("a * b"))); }, false},
      {"other settings", [&] { static_cast<void>(controller_.acceptPrep(settings(99))); }, false},
      {"the same settings", [&] { static_cast<void>(controller_.acceptPrep(settings(100))); }, true},
      {"a stopped analysis",
       [&] {
         frontEnd_.stopAtOnce = true;
         EXPECT_EQ(controller_.analyse({.variables = {"y * 3"}}), Outcome::Refused);
         EXPECT_EQ(controller_.project().vels.selectedVariables(), std::vector<std::string>{"y"});
       },
       true},
      {"a sample that is kept",
       [&] {
         frontEnd_.answer = false;
         static_cast<void>(controller_.generateSample());
       },
       true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    analysed();
    c.act();
    frontEnd_ = {};
    EXPECT_EQ(controller_.whyNot(Step::Analyse).empty(), c.keeps) << controller_.whyNot(Step::Analyse);
    EXPECT_EQ(controller_.analyse({}), c.keeps ? Outcome::Done : Outcome::Refused);
    EXPECT_EQ(controller_.project().model.results.runCount() > 0, c.keeps);
    EXPECT_EQ(controller_.project().hasVels, c.keeps);
    const std::string saved = file("a.psc");
    ASSERT_EQ(controller_.saveProject(saved), Outcome::Done);
    ASSERT_EQ(controller_.loadProject(saved), Outcome::Done);
    EXPECT_EQ(controller_.whyNot(Step::Analyse).empty(), c.keeps) << "after a save and a load";
  }
}

TEST_F(Session, inputsInAnotherOrderThanTheFactorsAreTold) {
  ASSERT_EQ(controller_.acceptPrep(settings(10)), Outcome::Done);
  ASSERT_EQ(controller_.acceptModel(equation("a - b")), Outcome::Done);
  frontEnd_.link = [](InternalModel& model) { model.moveVariable(0, 1); };
  ASSERT_EQ(controller_.runModel(Use::Generated), Outcome::Done);
  EXPECT_TRUE(
      std::ranges::any_of(frontEnd_.calls, [](const std::string& call) { return call.starts_with("Warning: "); }));
}

}  // namespace
}  // namespace tarvex
