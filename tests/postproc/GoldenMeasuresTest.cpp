#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/TextWriter.h"
#include "model/ModelConfiguration.h"
#include "postproc/OutputVariables.h"
#include "postproc/PostProcessorFile.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/PrepConfiguration.h"
#include "support/Golden.h"

namespace tarvex {
namespace {

using test::compareTexts;
using test::goldenPath;

struct Case {
  const char* name;                    // of the golden files, also of the test
  std::vector<std::string> variables;  // empty: all outputs
  const char* runs = nullptr;          // the file before the analysis; null: <name>-run.spc
};

std::string nameOf(const testing::TestParamInfo<Case>& info) {
  std::string name = info.param.name;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

class GoldenMeasures : public testing::TestWithParam<Case> {};

TEST_P(GoldenMeasures, AnalysisOfTheRunsGivesTheExpectedBlocks) {
  const std::string name = GetParam().name;
  PrepConfiguration prep, expectedPrep;
  ModelConfiguration model, expectedModel;
  VelsConfiguration vels, expected;
  std::string message;
  const std::string runs = GetParam().runs ? GetParam().runs : name + "-run.spc";
  ASSERT_TRUE(loadPostProcessorFile(goldenPath(runs), prep, model, vels, message));
  ASSERT_TRUE(loadPostProcessorFile(goldenPath(name + ".spc"), expectedPrep, expectedModel, expected, message));

  OutputVariables variables;
  OutputTable table;
  ASSERT_TRUE(variables.set(
      GetParam().variables.empty() ? OutputVariables::defaultVariables(model) : GetParam().variables, model))
      << variables.errorText();
  EXPECT_EQ(variables.texts(), expected.selectedVariables());
  ASSERT_TRUE(variables.build(model, table)) << variables.errorText();
  ASSERT_TRUE(vels.uncertainty.compute(variables.texts(), table));
  vels.sensitivity->variableCount = table.columns();
  ASSERT_TRUE(vels.sensitivity->compute(prep, table)) << vels.sensitivity->errorText;

  TextWriter actualBlocks, expectedBlocks;
  vels.sensitivity->write(actualBlocks);
  vels.uncertainty.write(actualBlocks);
  expected.sensitivity->write(expectedBlocks);
  expected.uncertainty.write(expectedBlocks);
  EXPECT_TRUE(compareTexts("blocks.txt", expectedBlocks.text(), actualBlocks.text()));
}

INSTANTIATE_TEST_SUITE_P(
    All, GoldenMeasures,
    testing::Values(Case{"unit-classic", {}}, Case{"unit-extended", {}}, Case{"fast-groups", {}},
                    Case{"unit-sobol", {}}, Case{"unit-order2", {}}, Case{"morris", {}}, Case{"pair", {}},
                    Case{"plain", {}}, Case{"times", {}},
                    Case{"times-at", {"dose[1]", "rate[1.5]", "dose[max] - rate[0.5] * 2", "rate"}, "times-run.spc"}),
    nameOf);

}  // namespace
}  // namespace tarvex
