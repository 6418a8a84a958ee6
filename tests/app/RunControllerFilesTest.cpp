#include <unistd.h>

#include "app/RunController.h"
#include "app/ScriptedFrontEnd.h"
#include "base/RememberedDirectories.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using Texts = std::vector<std::string>;

class Workflow : public test::InDirectory {
 protected:
  void SetUp() override {
    RememberedDirectories::forget();
    test::writeFile(file("rows.txt"), "3\n2\na\nb\n1.5 10\n2.5 20\n4 15\n");
    ASSERT_EQ(controller_.loadResultsFile(test::goldenPath("morris.spc")), Outcome::Done);
    ASSERT_EQ(controller_.saveProjectAs(file("a.psc")), Outcome::Done);
  }
  void TearDown() override { RememberedDirectories::forget(); }
  PrepSettings settings() const {
    PrepSettings copy;
    std::string message;
    EXPECT_TRUE(copy.copyFrom(controller_.project().prep, message)) << message;
    return copy;
  }
  // Every flag, on a project with results: by what sets or clears it.
  void setFlags(bool value) {
    ASSERT_EQ(controller_.setDemoMode(0), Outcome::Done);
    ASSERT_EQ(controller_.loadResultsFile(test::goldenPath("morris.spc")), Outcome::Done);
    if (value) {
      ASSERT_EQ(controller_.enterMonteCarlo(), Outcome::Done);
      ASSERT_EQ(controller_.acceptPrep(settings()), Outcome::Done);
      ASSERT_EQ(controller_.setDemoMode(1), Outcome::Done);
    } else {
      ASSERT_EQ(controller_.leaveMonteCarlo(), Outcome::Done);
    }
    frontEnd_ = {};
  }

  test::ScriptedFrontEnd frontEnd_;
  RunController controller_{frontEnd_};
};

TEST_F(Workflow, loadsReplaceTheirPartsAndSettleTheFlags) {
  const std::string noProject = "Error opening file:   Error opening input file\n /no/such\n Loading Aborted.";
  const std::string badProject = "Error opening file: Error reading configuration file.";
  const std::string badSample = "Error: Error reading samples file";
  const std::string badRows = "Error: Error reading external samples file";
  const std::string badResults = "Error:   Error reading UA/SA file";
  const struct {
    Outcome (RunController::*load)(const std::string&);
    std::string path;
    bool keepsVels, staysInStage;
    std::string missing, damaged;
  } cases[] = {
      {&RunController::loadSampleFile, test::goldenPath("ishigami.sam"), false, true, badSample, badSample},
      {&RunController::importSampleFile, file("rows.txt"), false, true, badRows, badRows},
      {&RunController::loadResultsFile, test::goldenPath("ishigami.spc"), true, true, badResults, badResults},
      {&RunController::loadProject, file("a.psc"), true, false, noProject, badProject},
  };
  test::writeFile(file("damaged"), "Prep Configuration\n0\n7\n");
  for (const auto& c : cases) {
    setFlags(true);
    for (const std::string& bad : {std::string("/no/such"), file("damaged")})
      EXPECT_EQ((controller_.*c.load)(bad), Outcome::Refused) << c.path;
    ASSERT_EQ(frontEnd_.calls.size(), 2u);
    EXPECT_TRUE(frontEnd_.calls[0].starts_with(c.missing)) << frontEnd_.calls[0];
    EXPECT_TRUE(frontEnd_.calls[1].starts_with(c.damaged)) << frontEnd_.calls[1];
    frontEnd_.stopAtOnce = true;
    EXPECT_EQ((controller_.*c.load)(c.path), Outcome::Refused) << c.path;
    EXPECT_EQ(frontEnd_.calls.size(), 2u) << "a stop needs no message";
    frontEnd_.stopAtOnce = false;
    EXPECT_TRUE(controller_.modified() && controller_.sampleStale() && controller_.readyToRun()) << c.path;
    EXPECT_EQ(controller_.project().prep.samples.rows(), 48) << c.path;

    setFlags(true);
    EXPECT_EQ((controller_.*c.load)(c.path), Outcome::Done) << c.path;
    EXPECT_TRUE(frontEnd_.calls.empty()) << c.path;
    EXPECT_EQ(controller_.project().hasVels, c.keepsVels) << c.path;
    EXPECT_EQ(controller_.whyNot(Step::Analyse).empty(), c.keepsVels) << c.path << ": a sample drops the results";
    EXPECT_TRUE(controller_.project().hasPrep && controller_.project().hasModel) << c.path;
    EXPECT_FALSE(controller_.modified() || controller_.sampleStale()) << c.path;
    EXPECT_EQ(controller_.readyToRun(), c.staysInStage) << c.path;
    EXPECT_TRUE(controller_.demoMode()) << c.path << ": until a reset";
  }
}

TEST_F(Workflow, savesUnderTheNameWhereverTheUserIs) {
  ASSERT_EQ(::chdir(directory_.path().c_str()), 0);
  ASSERT_EQ(controller_.saveProjectAs("b.psc"), Outcome::Done);
  ASSERT_EQ(::chdir("/"), 0);
  const std::string text = test::readFile(file("b.psc"));
  test::writeFile(file("b.psc"), "");
  EXPECT_EQ(controller_.quickSave(), Outcome::Done);
  EXPECT_EQ(test::readFile(file("b.psc")), text);

  setFlags(true);
  EXPECT_EQ(controller_.saveProjectAs("/no/such/c.psc"), Outcome::Refused);
  EXPECT_EQ(
      frontEnd_.calls,
      Texts{"Write error:   Error writing output file\n /no/such/c.psc\n/no/such/c.psc: No such file or directory"});
  EXPECT_TRUE(controller_.modified()) << "nothing was tried";
  EXPECT_EQ(controller_.project().fileName, file("b.psc"));
  frontEnd_ = {};
  frontEnd_.stopAtOnce = true;
  EXPECT_EQ(controller_.quickSave(), Outcome::Refused);
  EXPECT_TRUE(controller_.modified() && frontEnd_.calls.empty());
  EXPECT_EQ(test::readFile(file("b.psc")), text) << "a stop keeps the old file";
  frontEnd_ = {};
  EXPECT_EQ(controller_.quickSave(), Outcome::Done);
  EXPECT_FALSE(controller_.modified());
  EXPECT_EQ(controller_.saveProject("/no/such/d.psc"), Outcome::Refused);
  EXPECT_TRUE(frontEnd_.calls.back().starts_with(
      "Error: Error trying to write to the Tarvex configuration file.\nIs it locked by another application?\n"));
  EXPECT_EQ(controller_.quickSave(), Outcome::Refused);
  EXPECT_EQ(frontEnd_.calls.back(),
            "Write error:   Error writing output file\n /no/such/d.psc\n/no/such/d.psc: No such file or directory");

  ASSERT_EQ(controller_.clearAll(), Outcome::Done);
  EXPECT_NE(controller_.whyNot(Step::QuickSave), "");
  EXPECT_EQ(controller_.saveProject(), Outcome::Refused);
  EXPECT_FALSE(std::filesystem::exists(ProjectConfiguration::kNoFile));
}

// Whatever the order of calls: an imported sample is not generated and its file not written.
TEST_F(Workflow, anExternalSampleStaysAsItWasImported) {
  const std::string rows = test::readFile(file("rows.txt"));
  ASSERT_EQ(controller_.importSampleFile(file("rows.txt")), Outcome::Done);
  EXPECT_EQ(controller_.generateSample(RunController::OldSample::Replace), Outcome::Refused);
  EXPECT_EQ(controller_.runModel(RunController::SampleUse::Replaced), Outcome::Refused);
  EXPECT_NE(controller_.whyNot(Step::Generate), "");
  ASSERT_EQ(controller_.saveProjectAs(file("external.psc")), Outcome::Done);
  ASSERT_EQ(controller_.loadProject(file("external.psc")), Outcome::Done);
  EXPECT_EQ(controller_.generateSample(RunController::OldSample::Replace), Outcome::Refused);
  EXPECT_EQ(test::readFile(file("rows.txt")), rows);

  frontEnd_ = {};
  frontEnd_.answer = false;
  EXPECT_EQ(controller_.mayEditPrep(), Outcome::Refused);
  EXPECT_EQ(controller_.project().prep.samples.rows(), 3);
  frontEnd_.answer = true;
  EXPECT_EQ(controller_.mayEditPrep(), Outcome::Done);
  EXPECT_EQ(frontEnd_.calls.back(),
            "External configuration? An external configuration\nhas been loaded and can't be edited,\ndo you want to "
            "discard it? ^Yes ^No");
  EXPECT_EQ(controller_.project().prep.external, 0);
  EXPECT_TRUE(controller_.project().hasPrep && controller_.sampleStale());
  EXPECT_EQ(controller_.generateSample(), Outcome::Refused) << "no method is chosen in an empty configuration";
  EXPECT_EQ(frontEnd_.calls.back(), "Warning:   No samples to generate");
}

TEST_F(Workflow, acceptsPartsAndClears) {
  setFlags(false);
  EXPECT_EQ(controller_.acceptModel(controller_.project().model.choice), Outcome::Done);
  EXPECT_TRUE(controller_.modified() && !controller_.sampleStale());
  EXPECT_EQ(controller_.whyNot(Step::Analyse), "") << "the same model: the results are still its";
  setFlags(false);
  EXPECT_EQ(controller_.acceptPrep(settings()), Outcome::Done);
  EXPECT_TRUE(controller_.modified() && controller_.sampleStale());
  EXPECT_TRUE(controller_.project().vels.selectedVariables().empty());
  ModelChoice other;
  other.setExternal("", file("model.out"), 0);
  EXPECT_EQ(controller_.acceptModel(std::move(other)), Outcome::Done);
  EXPECT_NE(controller_.whyNot(Step::Analyse), "");
  EXPECT_FALSE(controller_.project().hasVels);
  EXPECT_EQ(controller_.setDemoMode(1), Outcome::Done);
  for (const int value : {2, -1}) EXPECT_EQ(controller_.setDemoMode(value), Outcome::Refused);
  EXPECT_TRUE(controller_.demoMode());
  EXPECT_EQ(controller_.clearAll(), Outcome::Done);
  EXPECT_FALSE(controller_.project().hasPrep || controller_.project().hasModel || controller_.demoMode() ||
               controller_.modified() || controller_.monteCarloMode());
  EXPECT_TRUE(controller_.sampleStale());
  EXPECT_TRUE(frontEnd_.calls.empty());
}

TEST_F(Workflow, keepsTheRememberedDirectoriesOfASession) {
  const test::TempDirectory main;
  const std::string config = main.file("config.dat");
  test::writeFile(config, directory_.path() + "\n/no/such\n");
  {
    RunController session(frontEnd_, main.path(), RunController::CurrentDirectory::Follows);
    EXPECT_EQ(RememberedDirectories::get(RememberedDirectories::Prep), directory_.path());
    EXPECT_EQ(RememberedDirectories::get(RememberedDirectories::Vels), "");
    EXPECT_EQ(std::filesystem::current_path(), directory_.path());
    EXPECT_EQ(session.loadProject(file("a.psc")), Outcome::Done);
    EXPECT_EQ(test::readFile(config), "\n\n\n\n\n") << "the records of that project have none";
    RememberedDirectories::set(RememberedDirectories::Model, main.path());
  }
  EXPECT_EQ(test::readFile(config), "\n\n" + main.path() + "\n\n\n");
}

TEST_F(Workflow, opensDemonstrationCases) {
  const test::TempDirectory main;
  std::filesystem::create_directory(main.file("Demo"));
  std::string text = test::readFile(test::goldenPath("ishigami.spc"));
  text.replace(text.find("ishigami.sam"), 12, "[MAINDIR]\\Demo\\x.sam");
  test::writeFile(main.file("Demo/ISHIGAMI.dem"), text);
  test::writeFile(main.file("Demo/linear.dem"), text.substr(0, text.size() / 2));
  RunController session(frontEnd_, main.path());
  for (int i = 0; i < 2; ++i) EXPECT_EQ(session.openDemo("Ishigami"), Outcome::Done);
  EXPECT_TRUE(frontEnd_.calls.empty()) << "a case that is open asks nothing";
  EXPECT_TRUE(session.demoMode() && session.readyToRun() && session.project().hasVels);
  EXPECT_EQ(session.project().prep.sampleFile, "[MAINDIR]\\Demo\\x.sam");
  for (const char* name : {"Linear", "SobolG0"}) {
    ASSERT_EQ(session.acceptModel(session.project().model.choice), Outcome::Done);
    frontEnd_ = {};
    EXPECT_EQ(session.openDemo(name), Outcome::Refused);
    const std::string path = main.file(std::string("Demo/") + (*name == 'L' ? "linear.dem" : "SobolG0.dem"));
    EXPECT_EQ(frontEnd_.calls.back(), "Error initializing demo:   Error reading demo file:\n " + path);
    EXPECT_TRUE(session.modified() && session.demoMode());
    frontEnd_ = {};
    frontEnd_.answer = false;
    EXPECT_EQ(session.openDemo(name), Outcome::Refused);
    EXPECT_EQ(frontEnd_.calls.size(), 1u) << "the question alone";
  }
}

}  // namespace
}  // namespace tarvex
