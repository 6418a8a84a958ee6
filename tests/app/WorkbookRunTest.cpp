#include <gtest/gtest.h>

#include "app/RunController.h"
#include "app/ScriptedFrontEnd.h"
#include "factors/Uniform.h"
#include "sampling/RandomSampler.h"
#include "support/ScriptedApplication.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"

namespace tarvex {
namespace {

using Calls = std::vector<std::string>;

// A project of three runs whose model is a workbook of one output.
class WorkbookRun : public testing::Test {
 protected:
  void SetUp() override {
    PrepSettings prep;
    auto factor = std::make_unique<Uniform>();
    factor->name = "a";
    prep.factors.addFactor(std::move(factor));
    prep.sampler = std::make_unique<RandomSampler>();
    ASSERT_TRUE(prep.sampler->setSamples(3));
    prep.sampleFile = directory_.file("in.sam");
    ASSERT_EQ(controller_.acceptPrep(std::move(prep)), Outcome::Done);
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
      application->failing = failing_;
      application->user = [this, serve] {
        EXPECT_EQ(controller_.generateSample(), Outcome::Busy) << "nothing else starts meanwhile";
        while (serve())
          if (frontEnd_.frames == 5) return true;
        return false;
      };
      return application;
    };
  }

  test::TempDirectory directory_;
  std::string workbook_ = directory_.file("book.ods");
  std::string failing_;
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

TEST_F(WorkbookRun, whateverFailsIsAFailedRun) {
  const std::string error = "Error: Error in the Excel model execution";
  const struct {
    std::string failing;
    Calls told;
  } cases[] = {{"start", {"Error: Excel not registered properly", "Information: start failed"}},
               {"write", {"Error: write failed"}},
               {"", {}}};  // the user stops
  for (const auto& c : cases) {
    failing_ = c.failing;
    frontEnd_.calls.clear();
    frontEnd_.stopAtFrame = 3;
    EXPECT_EQ(controller_.runModel(RunController::SampleUse::Existing), Outcome::Refused) << c.failing;
    Calls expected{opened_};
    expected.insert(expected.end(), c.told.begin(), c.told.end());
    expected.insert(expected.end(), {"close", error});
    EXPECT_EQ(frontEnd_.calls, expected) << c.failing;
    EXPECT_FALSE(controller_.busy()) << c.failing;
    EXPECT_FALSE(controller_.project().hasVels) << c.failing;
  }
}

}  // namespace
}  // namespace tarvex
