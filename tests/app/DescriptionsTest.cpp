#include "app/Descriptions.h"

#include "model/ModelConfiguration.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SampleFiles.h"
#include "support/Test.h"

namespace tarvex {
namespace {

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  return text;
}

PrepConfiguration sample(const std::string& name) {
  PrepConfiguration prep;
  std::string message;
  EXPECT_TRUE(loadSampleFile(test::goldenPath(name), prep, message)) << name;
  prep.sampleFile = "/x/a.sam";
  return prep;
}

TEST(Descriptions, ofASampleByItsOrigin) {
  PrepConfiguration prep = sample("random-by-factor.sam");
  ASSERT_TRUE(prep.sampler->setSamples(70));
  const std::string method = "Total factors: 8\nSampling method selected: Random\nCorrelation method selected: ";
  const std::string file = "Samples file:\n   /x/a.sam\nSamples ordered by Factor\n";
  EXPECT_EQ(joined(describePrep(prep, PrepOrigin::Configured)),
            "Internal Configuration\n" + method + "None\nSamples to generate: 70\n" + file);
  EXPECT_EQ(joined(describePrep(prep, PrepOrigin::Saved)),
            "Saved Configuration\n" + method + "None\nGenerated samples: 40\n" + file);
  EXPECT_EQ(joined(describePrep(prep, PrepOrigin::SavedSample)),
            "Saved Configuration\n" + method +
                "None\nGenerated sample size: 40\nSample file:\n   /x/a.sam\nSample ordered by Factor\n");
  EXPECT_EQ(joined(describePrep(prep, PrepOrigin::External)),
            "External Configuration\n" + method + "unknown\nGenerated sample size: 40\nSample file:\n   /x/a.sam\n");
  EXPECT_EQ(joined(describePrep(prep, PrepOrigin::Demo)),
            "Demo Configuration\n" + method + "None\nSamples to generate: 70\n" + file);
}

TEST(Descriptions, ofTheCorrelation) {
  for (const auto& [name, text] :
       {std::pair{"random-tree.sam", "Dependence tree"}, {"random-matrix.sam", "Iman Conover"}}) {
    const std::vector<std::string> lines = describePrep(sample(name), PrepOrigin::Saved);
    EXPECT_EQ(lines[3], std::string("Correlation method selected: ") + text);
    EXPECT_EQ(lines.back(), "Samples ordered by Run");
  }
}

TEST(Descriptions, ofAModel) {
  ModelConfiguration model;
  model.choice.setExternal("/bin/m", "out", 0);
  const std::string external = "External model executable:\n   ";
  EXPECT_EQ(joined(describeModel(model)), external + "No model selected\n\nModel output file:\n   out\n");
  model.choice.kind = kExternalExecutable;
  EXPECT_EQ(joined(describeModel(model)), external + "/bin/m\n\nModel output file:\n   out\n");
  EXPECT_EQ(modelSelectionText(model), "External model selection");
  auto equations = std::make_unique<InternalModel>();
  const std::string path = test::goldenPath("mixed.imd");
  std::string message;
  ASSERT_TRUE(loadModelFile(path, *equations, message));
  model.choice.setInternalModel(std::move(equations));
  EXPECT_EQ(joined(describeModel(model)), "Internal model executable:\n   " + path +
                                              "\nNumber of equations: \n   3\nOutput Variables: \n   y\n   z\n");
  EXPECT_EQ(modelSelectionText(model), "Internal model selection");
}

}  // namespace
}  // namespace tarvex
