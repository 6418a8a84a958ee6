#include "app/StartUp.h"

#include <unistd.h>

#include "app/DemoRepair.h"
#include "app/MainDirectory.h"
#include "support/FailingCalls.h"
#include "support/Test.h"

namespace tarvex {
namespace {

class Start : public test::InDirectory {
 protected:
  void SetUp() override {
    ASSERT_EQ(::chdir(directory_.path().c_str()), 0);
    std::filesystem::create_directory(file("Demo"));
    MainDirectory::set("");
  }
  void TearDown() override { MainDirectory::set(""); }
  std::string demo(const std::string& name) const { return file("Demo/" + name); }
};

TEST_F(Start, repairsOnceAndKeepsOtherMarks) {
  const struct {
    const char *name, *mark;
    std::int32_t after;
    bool repairs;
  } cases[] = {{"first start", "0\n", 1, true},
               {"later start", "1\n", 1, false},
               {"mark 7", "7", 7, false},
               {"mark -1", "-1\n", -1, false},
               {"no mark", "", 1, true},
               {"a word", "zero\n", 1, true},
               {"out of range", "99999999999\n", 1, true},
               {"CR LF", "\r\n7\r\n", 7, false}};
  for (const auto& c : cases) {
    test::writeFile(demo("linear.dem"), "[MAINDIR]/Demo/x.sam\n");
    test::writeFile("Tarvex.cfg", directory_.path() + "\n" + c.mark);
    StartUp start;
    ASSERT_TRUE(start.run()) << c.name;
    EXPECT_EQ(start.mark(), c.after) << c.name;
    EXPECT_EQ(MainDirectory::get(), directory_.path()) << c.name;
    EXPECT_EQ(test::readFile("Tarvex.cfg"), directory_.path() + "\n" + std::to_string(c.after) + "\n") << c.name;
    EXPECT_EQ(test::readFile(demo("linear.dem")),
              c.repairs ? directory_.path() + "/Demo/x.sam\n\n" : "[MAINDIR]/Demo/x.sam\n")
        << c.name;
  }
}

TEST_F(Start, withoutADirectoryNothingHappens) {
  const struct {
    const char* name;
    std::string text;
  } cases[] = {
      {"no file", ""}, {"an empty line", "\n0\n"}, {"a line of 1024 characters", std::string(1024, 'x') + "\n0\n"}};
  for (const auto& c : cases) {
    if (!c.text.empty()) test::writeFile("Tarvex.cfg", c.text);
    StartUp start;
    EXPECT_FALSE(start.run()) << c.name;
    EXPECT_EQ(start.errorText(),
              "    Error opening PrepVels configuration file.\nCan't open PrepVels.cfg in the current "
              "directory.\n\t Terminating.");
    EXPECT_EQ(MainDirectory::get(), "") << c.name;
    EXPECT_EQ(c.text.empty() ? "" : test::readFile("Tarvex.cfg"), c.text) << c.name;
  }
}

TEST_F(Start, aFileThatCannotBeRewrittenGoesUnnoticed) {
  test::writeFile("Tarvex.cfg", directory_.path() + "\n7\n");
  test::FailingCalls calls;
  calls.fail(test::FailingCalls::kRename, 1);
  StartUp start;
  EXPECT_TRUE(start.run());
  EXPECT_EQ(test::readFile("Tarvex.cfg"), directory_.path() + "\n7\n");
}

TEST_F(Start, repairsTheSevenCasesWhateverTheirCase) {
  const std::string longLine(5000, '7');
  const std::string text = "0\n[MAINDIR]\\Demo\\x.spc\n\nold text ] [MAINDIR]\nMAINDIR\n" + longLine + "\n";
  const std::string repaired =
      "0\nC:\\x\\Demo\\x.spc\n\n" + std::string("C:\\x [MAINDIR]\nMAINDIR\n") + longLine + "\n\n";
  for (const char* name : {"ISHIGAMI.DEM", "Linear.dem", "levelE.dem", "sobolg0.dem", "SobolG1.Dem", "sobolG2.dem"})
    test::writeFile(demo(name), text);
  // The directory as it stands in the files need not be where they lie.
  const std::string place = directory_.path() + "/C:\\x";
  std::filesystem::create_directory(place);
  std::filesystem::rename(file("Demo"), place + "/Demo");
  repairDemoFiles("C:\\x");
  for (const char* name : {"ISHIGAMI.DEM", "Linear.dem", "levelE.dem", "sobolg0.dem", "SobolG1.Dem", "sobolG2.dem"})
    EXPECT_EQ(test::readFile(place + "/Demo/" + name), repaired) << name;
  EXPECT_EQ(test::readFile(place + "/Demo/sobolG3.dem"), "") << "a missing file is made, empty";
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(place + "/Demo"), {}), 7);
}

TEST_F(Start, aRepairThatFailsKeepsTheFile) {
  using Calls = test::FailingCalls;
  test::writeFile(demo("linear.dem"), "[MAINDIR]/x\n");
  for (const auto call : {Calls::kOpen, Calls::kRead, Calls::kWrite, Calls::kRename}) {
    Calls calls;
    calls.fail(call, 1, EIO);
    repairDemoFiles(directory_.path());
    EXPECT_EQ(test::readFile(demo("linear.dem")), "[MAINDIR]/x\n") << call;
  }
}

}  // namespace
}  // namespace tarvex
