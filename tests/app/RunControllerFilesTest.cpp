#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "app/RunController.h"
#include "app/ScriptedFrontEnd.h"
#include "base/RememberedDirectories.h"
#include "support/Copies.h"
#include "support/Golden.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"

namespace tarvex {
namespace {

using Texts = std::vector<std::string>;

class Workflow : public testing::Test {
 protected:
  void SetUp() override {
    RememberedDirectories::forget();
    test::writeFile(file("rows.txt"), "3\n2\na\nb\n1.5 10\n2.5 20\n4 15\n");
    ASSERT_TRUE(controller_.loadResultsFile(test::goldenPath("morris.spc")));
    ASSERT_TRUE(controller_.saveProjectAs(file("a.psc")));
  }
  void TearDown() override { RememberedDirectories::forget(); }
  std::string file(const std::string& name) const { return directory_.file(name); }
  void setFlags(bool value) {
    controller_.modified = controller_.sampleStale = controller_.monteCarloMode = controller_.demoMode = value;
    frontEnd_ = {};
  }

  test::ScopedCurrentDirectory stay_;
  test::TempDirectory directory_;
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
    bool (RunController::*load)(const std::string&);
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
    ASSERT_TRUE(controller_.loadResultsFile(test::goldenPath("morris.spc")));
    setFlags(true);
    EXPECT_FALSE((controller_.*c.load)("/no/such") || (controller_.*c.load)(file("damaged"))) << c.path;
    ASSERT_EQ(frontEnd_.calls.size(), 2u);
    EXPECT_TRUE(frontEnd_.calls[0].starts_with(c.missing) && frontEnd_.calls[1].starts_with(c.damaged)) << c.missing;
    EXPECT_TRUE(controller_.modified && controller_.sampleStale && controller_.readyToRun()) << c.path;
    EXPECT_EQ(controller_.project.prep.samples.rows(), 48) << c.path;

    setFlags(true);
    EXPECT_TRUE((controller_.*c.load)(c.path)) << c.path;
    EXPECT_TRUE(frontEnd_.calls.empty()) << c.path;
    EXPECT_EQ(controller_.project.hasVels, c.keepsVels) << c.path;
    EXPECT_TRUE(controller_.project.hasPrep && controller_.project.hasModel) << c.path;
    EXPECT_FALSE(controller_.modified || controller_.sampleStale) << c.path;
    EXPECT_EQ(controller_.readyToRun(), c.staysInStage) << c.path;
    EXPECT_TRUE(controller_.demoMode) << c.path << ": until a reset";
  }
}

TEST_F(Workflow, savesUnderTheNameWhereverTheUserIs) {
  ASSERT_EQ(::chdir(directory_.path().c_str()), 0);
  ASSERT_TRUE(controller_.saveProjectAs("b.psc"));
  ASSERT_EQ(::chdir("/"), 0);
  const std::string text = test::readFile(file("b.psc"));
  test::writeFile(file("b.psc"), "");
  controller_.modified = true;
  EXPECT_TRUE(controller_.quickSave());
  EXPECT_FALSE(controller_.modified);
  EXPECT_EQ(test::readFile(file("b.psc")), text);

  setFlags(true);
  EXPECT_FALSE(controller_.saveProjectAs("/no/such/c.psc"));
  EXPECT_EQ(frontEnd_.calls, Texts{"Write error:   Error writing output file\n /no/such/c.psc"});
  EXPECT_TRUE(controller_.modified) << "nothing was tried";
  EXPECT_EQ(controller_.project.fileName, file("b.psc"));
  frontEnd_ = {};
  controller_.project.fileName = "/no/such/d.psc";
  EXPECT_FALSE(controller_.quickSave());
  EXPECT_EQ(frontEnd_.calls, Texts{"Write error:   Error writing output file\n /no/such/d.psc"});
  frontEnd_ = {};
  controller_.project.fileName = ProjectConfiguration::kNoFile;
  EXPECT_FALSE(controller_.saveProject());
  EXPECT_FALSE(std::filesystem::exists(ProjectConfiguration::kNoFile));
  EXPECT_EQ(frontEnd_.calls, Texts{"Error: Error trying to write to the Tarvex configuration file.\nIs it locked by "
                                   "another application?"});
  EXPECT_FALSE(controller_.modified);
}

TEST_F(Workflow, asksBeforeSomethingIsLost) {
  const std::string buttons = " ^Yes ^No";
  const struct {
    Discard purpose;
    const char* question;
  } cases[] = {{Discard::ForProject, "Entering demo mode?   Discard current configuration\n and load a new one ?"},
               {Discard::ForDemo, "Entering demo mode?   Discard current configuration\n and switch to demo mode ?"},
               {Discard::ForReset, "Warning?   Discard current configuration ?"}};
  for (const auto& c : cases) {
    setFlags(false);
    EXPECT_TRUE(controller_.mayDiscard(c.purpose));
    EXPECT_TRUE(frontEnd_.calls.empty());
    controller_.modified = true;
    for (const bool answer : {true, false}) {
      frontEnd_.answer = answer;
      EXPECT_EQ(controller_.mayDiscard(c.purpose), answer);
      EXPECT_EQ(frontEnd_.calls.back(), c.question + buttons);
    }
  }
  setFlags(false);
  EXPECT_TRUE(controller_.mayEditPrep());
  ASSERT_TRUE(controller_.importSampleFile(file("rows.txt")));
  EXPECT_TRUE(frontEnd_.calls.empty());
  frontEnd_.answer = false;
  EXPECT_FALSE(controller_.mayEditPrep());
  EXPECT_EQ(controller_.project.prep.samples.rows(), 3);
  frontEnd_.answer = true;
  EXPECT_TRUE(controller_.mayEditPrep());
  EXPECT_EQ(frontEnd_.calls.back(),
            "External configuration? An external configuration\nhas been loaded and can't be edited,\ndo you want to "
            "discard it?" +
                buttons);
  EXPECT_EQ(controller_.project.prep.external, 0);
  EXPECT_TRUE(controller_.project.hasPrep && controller_.sampleStale);
  EXPECT_FALSE(controller_.generateSample()) << "no method is chosen in an empty configuration";
  EXPECT_EQ(frontEnd_.calls.back(), "Warning:   No samples to generate");
}

TEST_F(Workflow, acceptsPartsAndClears) {
  setFlags(false);
  EXPECT_TRUE(controller_.acceptModel(controller_.project.model.choice));
  EXPECT_TRUE(controller_.modified && controller_.project.hasVels && !controller_.sampleStale);
  setFlags(false);
  EXPECT_TRUE(controller_.acceptPrep(test::copyOf(controller_.project.prep)));
  EXPECT_TRUE(controller_.modified && controller_.sampleStale && !controller_.project.hasVels);
  EXPECT_TRUE(controller_.setDemoMode(1));
  EXPECT_FALSE(controller_.setDemoMode(2) || controller_.setDemoMode(-1));
  EXPECT_TRUE(controller_.demoMode);

  controller_.busy = true;
  EXPECT_TRUE(controller_.clearAll() && controller_.newPrep() && controller_.loadProject("/no/such") &&
              controller_.saveProjectAs("/no/such") && controller_.openDemo("x") && controller_.setDemoMode(0));
  EXPECT_TRUE(controller_.demoMode && controller_.project.hasModel) << "nothing happens while busy";
  controller_.busy = false;
  EXPECT_TRUE(controller_.clearAll());
  EXPECT_FALSE(controller_.project.hasPrep || controller_.project.hasModel || controller_.demoMode ||
               controller_.modified || controller_.monteCarloMode);
  EXPECT_TRUE(controller_.sampleStale);
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
    EXPECT_TRUE(session.loadProject(file("a.psc")));
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
  EXPECT_TRUE(session.openDemo("Ishigami") && session.openDemo("Ishigami"));
  EXPECT_TRUE(frontEnd_.calls.empty()) << "a case that is open asks nothing";
  EXPECT_TRUE(session.demoMode && session.readyToRun() && session.project.hasVels);
  EXPECT_EQ(session.project.prep.sampleFile, "[MAINDIR]\\Demo\\x.sam");
  for (const char* name : {"Linear", "SobolG0"}) {
    session.modified = true;
    frontEnd_ = {};
    EXPECT_FALSE(session.openDemo(name));
    const std::string path = main.file(std::string("Demo/") + (*name == 'L' ? "linear.dem" : "SobolG0.dem"));
    EXPECT_EQ(frontEnd_.calls.back(), "Error initializing demo:   Error reading demo file:\n " + path);
    EXPECT_TRUE(session.modified && session.demoMode);
    frontEnd_ = {};
    frontEnd_.answer = false;
    EXPECT_FALSE(session.openDemo(name));
    EXPECT_EQ(frontEnd_.calls.size(), 1u) << "the question alone";
  }
}

}  // namespace
}  // namespace tarvex
