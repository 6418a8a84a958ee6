#include <cctype>
#include <sstream>

#include "app/DemoCases.h"
#include "app/RunController.h"
#include "app/ScriptedFrontEnd.h"
#include "app/ShareDirectory.h"
#include "app/StartUp.h"
#include "base/uniformRandom.h"
#include "batch/CommandFixture.h"
#include "support/Test.h"

namespace tarvex {
namespace {

class Demo : public test::CommandFixture {
 protected:
  void SetUp() override {
    CommandFixture::SetUp();
    restoreInitialRandomState();
  }
  int run(const std::string& name) { return CommandFixture::run({"demo", name}); }
  // The words of the line that begins with `first`, behind it.
  std::istringstream line(const std::string& first) const {
    const std::size_t at = out_.find("\n  " + first + ' ');
    EXPECT_NE(at, std::string::npos) << first << '\n' << out_;
    return std::istringstream(at == std::string::npos ? "" : out_.substr(at + 3 + first.size()));
  }
};

TEST_F(Demo, carriesEachCaseFromFactorsToMeasures) {
  const struct {
    const char* name;
    const char* runs;
    const char* measure;
  } cases[] = {{"", "8192 runs made and analysed", "Total order indices\n"},
               {"Linear", "1000 runs made and analysed", "Standardised regression coefficients (SRC)\n"},
               {"LevelE", "1000 runs analysed", "Leading factors by rank measures\n"},
               {"SobolG0", "4500 runs made and analysed", "Spread of the effects\n"},
               {"SobolG1", "9216 runs made and analysed", "Total order indices\n"},
               {"SobolG2", "11976 runs made and analysed", "Total order indices\n"},
               {"SobolG3", "5000 runs made and analysed", "Importance\n"}};
  for (const auto& c : cases) {
    EXPECT_EQ(run(c.name), kSucceeded) << c.name << errors_;
    for (const char* text : {c.runs, c.measure}) EXPECT_NE(out_.find(text), std::string::npos) << c.name << out_;
    EXPECT_EQ(errors_, "") << c.name;
  }
}

// As installed, but for the case of their names.
TEST_F(Demo, theFirstStartRepairsTheDeliveredCases) {
  const test::TempDirectory main;
  std::filesystem::create_directory(main.file("Demo"));
  std::filesystem::current_path(main.path());
  for (const DemoCase& demo : kDemoCases) {
    std::string name = demo.fileName + std::string(".dem");
    std::ranges::transform(name, name.begin(), *demo.name == 'S' ? ::toupper : ::tolower);
    std::filesystem::copy_file(demoFilePath(shareDirectory(), demo.name), main.file("Demo/" + name));
  }
  test::writeFile("Tarvex.cfg", main.path() + "\n0\n");
  StartUp start;
  ASSERT_TRUE(start.run());
  EXPECT_EQ(start.mark(), 1);
  test::ScriptedFrontEnd frontEnd;
  RunController session(frontEnd, main.path(), RunController::CurrentDirectory::Follows);
  for (const DemoCase& demo : kDemoCases) {
    EXPECT_EQ(test::readFile(demoFilePath(main.path(), demo.name)).find("MAINDIR"), std::string::npos) << demo.name;
    ASSERT_EQ(session.openDemo(demo.name), Outcome::Done) << demo.name;
    EXPECT_TRUE(session.project().prep.sampleFile.starts_with(main.file("Demo/"))) << demo.name;
    EXPECT_EQ(std::filesystem::current_path(), main.file("Demo")) << "the directories exist now";
    if (demo.canRun) {
      EXPECT_EQ(session.runModel(RunController::SampleUse::Existing), Outcome::Done)
          << demo.name << frontEnd.calls.back();
    }
  }
}

TEST_F(Demo, levelEShowsIodineFirstAndTheChainLater) {
  ASSERT_EQ(run("LevelE"), kSucceeded) << errors_;
  double early = 0.0, iodine = 0.0, chain = 0.0;
  line("doseI") >> early >> iodine;
  line("doseChain") >> early >> chain;
  EXPECT_GE(iodine, 5e4);
  EXPECT_LE(iodine, 2e5);
  EXPECT_GE(chain, 1e6);
  std::string leading;
  std::getline(line("dose[max]"), leading);
  for (const char* factors : {"W -0.72, v1 +0.61", "W -0.93, v1 +0.91"})
    EXPECT_NE(leading.find(factors), std::string::npos) << leading;
}

TEST_F(Demo, anUnknownCaseNamesTheSeven) {
  EXPECT_EQ(run("Ishigamo"), kFailed);
  EXPECT_EQ(errors_,
            "There is no demonstration case 'Ishigamo'. The cases are: Ishigami Linear LevelE SobolG0 SobolG1 SobolG2 "
            "SobolG3\n");
  EXPECT_EQ(out_, "");
}

}  // namespace
}  // namespace tarvex
