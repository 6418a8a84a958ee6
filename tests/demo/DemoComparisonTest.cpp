#include "demo/DemoComparison.h"

#include "app/DemoCases.h"
#include "app/ProjectConfiguration.h"
#include "app/ShareDirectory.h"
#include "base/RememberedDirectories.h"
#include "postproc/PostProcessorFile.h"
#include "support/Test.h"

namespace tarvex {
namespace {

// Delivered, not repaired: every measure is as exact as the demonstration says.
TEST(DemoComparison, deliveredMeasuresAreExactWithinTheirTolerance) {
  for (const DemoCase& demo : kDemoCases) {
    SCOPED_TRACE(demo.name);
    ProjectConfiguration project;
    std::string message;
    ASSERT_TRUE(loadPostProcessorFile(demoFilePath(shareDirectory(), demo.name), project.prep, project.model,
                                      project.vels, message));
    EXPECT_TRUE(project.prep.sampleFile.starts_with("[MAINDIR]/Demo/")) << project.prep.sampleFile;
    EXPECT_EQ(RememberedDirectories::get(RememberedDirectories::Prep), "") << "there is no such directory";
    EXPECT_EQ(project.prep.samples.rows(), project.model.results.runCount());
    const std::vector<Comparison> comparisons = compareWithExact(demo.name, project);
    EXPECT_EQ(comparisons.empty(), !demo.canRun);
    for (const Comparison& comparison : comparisons) {
      EXPECT_FALSE(comparison.rows.empty()) << comparison.title;
      for (const Comparison::Row& row : comparison.rows) {
        EXPECT_NEAR(row.computed, row.exact, row.tolerance) << comparison.title << ' ' << row.name;
        EXPECT_LT(row.tolerance, 0.5 * std::max(1.0, std::fabs(row.exact))) << comparison.title << ' ' << row.name;
      }
    }
  }
}

}  // namespace
}  // namespace tarvex
