#include "batch/CommandFixture.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using test::Words;

class ProjectCommand : public test::CommandFixture {};

TEST_F(ProjectCommand, thereAndBackChangesNothing) {
  for (const char* name : {"ishigami.spc", "plant.spc", "unit-order2.spc", "fast-groups.spc", "pair.spc"}) {
    ASSERT_EQ(run({"project", test::goldenPath(name), "-o", file("a.psc")}), kSucceeded) << errors_;
    ASSERT_EQ(
        run({"project", file("a.psc"), "--results", file("a.spc"), "--sample", file("a.sam"), "-o", file("b.psc")}),
        kSucceeded);
    EXPECT_TRUE(test::readFile(file("a.spc")) == test::readFile(test::goldenPath(name))) << name;
    EXPECT_TRUE(test::readFile(file("a.psc")) == test::readFile(file("b.psc"))) << name;
    EXPECT_TRUE(test::readFile(file("a.spc")).starts_with(test::readFile(file("a.sam")))) << name;
  }
  for (const char* name : {"random-none.sam", "fixed.sam", "latin-stein.sam", "random-by-factor.sam"}) {
    ASSERT_EQ(run({"project", test::goldenPath(name), "-o", file("a.psc")}), kSucceeded) << errors_;
    ASSERT_EQ(run({"project", file("a.psc"), "--sample", file("a.sam")}), kSucceeded) << errors_;
    EXPECT_TRUE(test::readFile(file("a.sam")) == test::readFile(test::goldenPath(name))) << name;
  }
}

TEST_F(ProjectCommand, whatIsRefusedWritesNothing) {
  const std::string sample = test::goldenPath("ishigami.sam");
  const test::TempDirectory inputs;
  test::writeFile(inputs.file("empty.psc"), "No Prep Configuration\nNo Model Configuration\nNo Vels Configuration\n");
  const struct {
    const char* name;
    Words words;
    int status;
    const char* text;
  } cases[] = {
      {"nothing to write", {sample}, kWrongUsage, "--results"},
      {"no input", {"-o", file("a.psc")}, kWrongUsage, "FILE"},
      {"a missing sample", {"no.sam", "-o", file("a.psc")}, kFailed, "Error reading samples file\nno.sam"},
      {"missing results", {"no.spc", "-o", file("a.psc")}, kFailed, "  Error reading UA/SA file\nno.spc"},
      {"a missing project",
       {"no.psc", "--sample", file("a.sam")},
       kFailed,
       "Error reading configuration file.\nno.psc"},
      {"a directory", {directory_.path(), "--sample", file("a.sam")}, kFailed, "Error reading configuration file."},
      {"no results in it", {sample, "-o", file("a.psc"), "--results", file("a.spc")}, kFailed, "no results"},
      {"no sample in it", {inputs.file("empty.psc"), "--sample", file("a.sam")}, kFailed, "no sample"},
      {"no such place", {sample, "-o", file("no/a.psc")}, kFailed, "Tarvex configuration file.\nIs it locked"},
  };
  for (const auto& c : cases) {
    Words words{"project"};
    words.insert(words.end(), c.words.begin(), c.words.end());
    EXPECT_EQ(run(words), c.status) << c.name << errors_;
    EXPECT_NE(errors_.find(c.text), std::string::npos) << c.name << errors_;
    EXPECT_TRUE(directory_.entries().empty()) << c.name;
  }
}

TEST_F(ProjectCommand, writesWhereTheUserStands) {
  const test::TempDirectory elsewhere;
  std::string text = test::readFile(test::goldenPath("sobol.sam"));
  text.insert(text.rfind('\n', text.rfind(".sam")), elsewhere.path());  // a directory that the record remembers
  test::writeFile(file("a.sam"), text);
  std::filesystem::current_path(directory_.path());
  ASSERT_EQ(run({"project", "a.sam", "-o", "a.psc", "--sample", "b.sam"}), kSucceeded) << errors_;
  EXPECT_EQ(std::filesystem::current_path(), directory_.path()) << "no record moves it";
  EXPECT_EQ(test::readFile(file("b.sam")), text);
  EXPECT_EQ(directory_.entries(), (Words{"a.psc", "a.sam", "b.sam"}));
}

TEST_F(ProjectCommand, showsTheSections) {
  ASSERT_EQ(run({"project", test::goldenPath("times.spc"), "-o", file("a.psc")}), kSucceeded);
  std::filesystem::copy_file(file("a.psc"), file("a.other"));
  for (const char* name : {"a.psc", "a.other"}) {
    ASSERT_EQ(run({"show", file(name)}), kSucceeded) << errors_;
    for (const char* text : {"Prep Configuration\nMethod: Latin", "\nModel Configuration\nModel: ",
                             "48 runs of 2 outputs, ", "\nVels Configuration\n", "Sensitivity of dose[max]"})
      EXPECT_NE(out_.find(text), std::string::npos) << text << '\n' << out_;
  }
  ASSERT_EQ(run({"project", test::goldenPath("sobol.sam"), "-o", file("b.psc")}), kSucceeded);
  ASSERT_EQ(run({"show", file("b.psc")}), kSucceeded);
  EXPECT_TRUE(out_.ends_with("\nNo Model Configuration\n\nNo Vels Configuration\n")) << errors_;
}

}  // namespace
}  // namespace tarvex
