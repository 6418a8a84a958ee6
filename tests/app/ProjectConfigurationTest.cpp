#include "app/ProjectConfiguration.h"

#include "app/ScriptedFrontEnd.h"
#include "base/RememberedDirectories.h"
#include "postproc/PostProcessorFile.h"
#include "sampling/SampleFiles.h"
#include "support/Copies.h"
#include "support/Test.h"

namespace tarvex {
namespace {

class Project : public test::InDirectory {
 protected:
  void SetUp() override { RememberedDirectories::forget(); }
  void TearDown() override { RememberedDirectories::forget(); }

  static ProjectConfiguration fromSample(const std::string& name) {
    ProjectConfiguration project;
    std::string message;
    project.hasPrep = tarvex::loadSampleFile(test::goldenPath(name), project.prep, message);
    EXPECT_TRUE(project.hasPrep) << name;
    return project;
  }
  static ProjectConfiguration fromResults(const std::string& name) {
    ProjectConfiguration project;
    std::string message;
    EXPECT_TRUE(loadPostProcessorFile(test::goldenPath(name), project.prep, project.model, project.vels, message));
    project.hasPrep = project.hasModel = project.hasVels = true;
    return project;
  }
  std::string saved(ProjectConfiguration& project) const {
    EXPECT_TRUE(project.save(file("saved.psc")));
    return test::readFile(file("saved.psc"));
  }
};

// Of studies with results, and of each other kind of sample with the results of one.
TEST_F(Project, everyCombinationOfPartsIsWrittenBackByteForByte) {
  std::istringstream names(
      "ishigami.spc plant.spc morris.spc unit-classic.spc unit-extended.spc fast-groups.spc unit-sobol.spc "
      "unit-order2.spc pair.spc plain.spc times.spc times-at.spc pair-run.spc random-none.sam random-tree.sam "
      "random-matrix.sam random-by-factor.sam latin-stein.sam replatin-stein.sam lptau.sam morris.sam "
      "fast-classic.sam fast-extended.sam fast-groups.sam sobol.sam sobol-order2.sam fixed.sam factors-alone");
  for (std::string name; names >> name;) {
    const bool alone = name == "factors-alone";
    ProjectConfiguration whole = fromResults(name.ends_with(".spc") ? name : "plain.spc");
    if (!name.ends_with(".spc")) whole.prep = fromSample(alone ? "sobol.sam" : name).prep;
    if (alone) {
      whole.prep.sampler.reset();
      whole.prep.samples.clear();
    }
    for (unsigned parts = 0; parts < 8; ++parts) {
      SCOPED_TRACE(name + ", parts " + std::to_string(parts));
      ProjectConfiguration project;
      project.hasPrep = (parts & 1) != 0;
      project.hasModel = (parts & 2) != 0;
      project.hasVels = (parts & 4) != 0;
      if (project.hasPrep) project.prep = test::copyOf(whole.prep);
      if (project.hasModel) project.model = test::copyOf(whole.model);
      if (project.hasVels) project.vels = whole.vels;
      const std::string first = saved(project);
      ProjectConfiguration again = fromResults("ishigami.spc");
      ASSERT_TRUE(again.load(file("saved.psc")));
      EXPECT_EQ(again.hasPrep, project.hasPrep);
      EXPECT_EQ(again.hasModel, project.hasModel);
      EXPECT_EQ(again.hasVels, project.hasVels);
      EXPECT_EQ(again.prep.sampler != nullptr, project.hasPrep && !alone) << "an absent part is empty";
      EXPECT_EQ(again.fileName, file("saved.psc"));
      EXPECT_TRUE(saved(again) == first);
      if (parts != 7 || alone) continue;
      std::string message;
      ASSERT_TRUE(name.ends_with(".spc")
                      ? savePostProcessorFile(file("back"), again.prep, again.model, again.vels, message)
                      : saveSampleFile(file("back"), again.prep, message));
      EXPECT_TRUE(test::compareGolden(name, test::readFile(file("back"))));
    }
  }
}

TEST_F(Project, headingsOfSections) {
  const std::string no = "No Prep Configuration\nNo Model Configuration\nNo Vels Configuration\n";
  const std::string longest(99, 'x');
  const struct {
    const char* name;
    std::string text;
    bool loads;
  } cases[] = {
      {"nothing in it", no, true},
      {"with CR LF", "No Prep Configuration\r\nNo Model Configuration\r\nNo Vels Configuration\r\n", true},
      {"any other lines for two of them", "a\n\nNo Vels Configuration", true},
      {"no line of a project", "a\n\n" + longest, false},
      {"blanks behind it", no + "\n \t\n", true},
      {"text behind it", no + "\nx\n", false},
      {"a heading of 100 characters", longest + "x\nb\nc\n", false},
      {"a model heading of 100 characters", "a\n" + longest + "x\nc\n", false},
      {"the last section missing", "a\nb\n", false},
      {"an empty file", "", false},
      {"an empty record", "a\nModel Configuration\nNo Vels Configuration\n", false},
  };
  for (const auto& c : cases) {
    test::writeFile(file("case.psc"), c.text);
    ProjectConfiguration project = fromSample("sobol.sam");
    EXPECT_EQ(project.load(file("case.psc")), c.loads) << c.name;
    EXPECT_EQ(project.hasPrep, !c.loads) << c.name;
    EXPECT_EQ(project.fileName, c.loads ? file("case.psc") : ProjectConfiguration::kNoFile) << c.name;
    EXPECT_FALSE(project.hasModel || project.hasVels) << c.name;
  }
  ProjectConfiguration empty;
  EXPECT_EQ(saved(empty), no);
}

TEST_F(Project, cutFilesLeaveTheProject) {
  ProjectConfiguration small = fromResults("pair.spc");
  const std::string text = saved(small);
  ProjectConfiguration project = fromResults("ishigami.spc");
  const std::string before = saved(project);
  const std::string name = project.fileName;
  for (std::size_t at = text.find('\n'); at + 1 < text.size(); at = text.find('\n', at + 1)) {
    test::writeFile(file("case.psc"), text.substr(0, at));
    EXPECT_FALSE(project.load(file("case.psc"))) << at;
    EXPECT_TRUE(project.hasPrep && project.hasModel && project.hasVels && project.fileName == name) << at;
  }
  EXPECT_FALSE(project.load(file("nothing.psc")));
  EXPECT_TRUE(saved(project) == before);
}

TEST_F(Project, goesToTheDirectoriesThatStillExist) {
  const test::TempDirectory other;
  ProjectConfiguration project = fromResults("pair.spc");
  RememberedDirectories::set(RememberedDirectories::Prep, other.path());
  std::string text = saved(project);
  for (const bool exists : {true, false}) {
    RememberedDirectories::forget();
    RememberedDirectories::set(RememberedDirectories::Vels, directory_.path());
    if (!exists) text.replace(text.find(other.path()), other.path().size(), "/no/longer");
    test::writeFile(file("case.psc"), text);
    ASSERT_TRUE(project.load(file("case.psc")));
    EXPECT_EQ(RememberedDirectories::get(RememberedDirectories::Prep), exists ? other.path() : "");
    EXPECT_EQ(RememberedDirectories::get(RememberedDirectories::Vels), "") << "the record's line is empty";
  }
}

}  // namespace
}  // namespace tarvex
