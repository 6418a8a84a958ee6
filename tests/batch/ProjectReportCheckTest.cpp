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

class ReportCommand : public test::CommandFixture {
 protected:
  int report(const std::string& input, const std::string& output) {
    return run({"report", input, "-o", output, "--title", "Reactor <3>", "--author", "A. & B.", "--date", "1 May"});
  }
};

TEST_F(ReportCommand, everyResultOnOnePage) {
  const struct {
    const char* input;
    std::vector<std::string> holds;
  } cases[] = {
      {"plant.spc",
       {"Reactor &lt;3&gt;", "Densities", "Latin Hypercube", "SHA-256", "Boost.Math", "PRCC",
        "60 runs are few for 15 factors", "It is 3.75 in all runs", "asked for", "Table 12. ", "A. &amp; B., 1 May"}},
      {"morris-run.spc", {"trajectories on", "Sensitivity of", "Sigma"}},  // neither statistics nor measures yet
      {"times.spc", {"dose[max]", "times from"}},
      {"unit-order2.spc", {"indices up to order 2"}},
      {"fast-groups.spc", {"Group one", "first order"}},
  };
  for (const auto& c : cases) {
    const std::string page = file("a.html");
    ASSERT_EQ(report(test::goldenPath(c.input), page), kSucceeded) << c.input << errors_;
    const std::string text = test::readFile(page);
    for (const std::string& part : c.holds) EXPECT_NE(text.find(part), std::string::npos) << c.input << ": " << part;
    EXPECT_NE(text.find("<img "), std::string::npos) << c.input;
    EXPECT_EQ(text.find("http://"), std::string::npos) << "a page needs nothing but itself";
  }
  ASSERT_EQ(report(test::goldenPath("plant.spc"), file("a.pdf")), kSucceeded) << errors_;
  EXPECT_EQ(test::readFile(file("a.pdf")).substr(0, 5), "%PDF-");
  ASSERT_EQ(run({"analyse", test::goldenPath("times-run.spc"), "-o", file("t.spc"), "-v", "dose[0]", "-v", "dose[1]"}),
            kSucceeded);
  ASSERT_EQ(report(file("t.spc"), file("a.html")), kSucceeded) << errors_;
  const std::string overTime = test::readFile(file("a.html"));
  for (const char* const caption :
       {"Measures of dose over time", "Mean, median and bands of quantiles of dose over time",
        "Rank correlations of the factors and the variables"})
    EXPECT_NE(overTime.find(caption), std::string::npos) << caption;
  EXPECT_EQ(overTime.find("quantiles of rate over"), std::string::npos) << "it isn't analysed";
}

TEST_F(ReportCommand, refusalsLeaveTheOldReport) {
  const struct {
    const char* input;
    std::string output;
    const char* message;
  } cases[] = {
      {"random-none.sam", "a.html", "holds no results"},
      {"nothing.spc", "a.html", "nothing.spc"},
      {"nothing.spc", "a.txt", ".html or a .pdf"},  // before anything is read
  };
  test::writeFile(file("a.html"), "old");
  for (const auto& c : cases) {
    EXPECT_EQ(report(test::goldenPath(c.input), file(c.output)), kFailed) << c.output;
    EXPECT_NE(errors_.find(c.message), std::string::npos) << errors_;
  }
  EXPECT_EQ(test::readFile(file("a.html")), "old");
  EXPECT_EQ(directory_.entries(), std::vector<std::string>{"a.html"});
}

class CheckCommand : public test::CommandFixture {};

TEST_F(CheckCommand, listsWhatIsWrongAndWhatIsDoubtful) {
  test::writeFile(file("gap.out"), "1\ny\ntime = no\n2\n1\nnan\n");
  test::writeFile(file("bad.out"), "1\ny\ntime = no\n2\n1\n1,37\n");
  const struct {
    test::Words words;
    int status;
    std::string text;
  } cases[] = {
      {{test::goldenPath("tree.fac"), test::goldenPath("times.spc")}, kSucceeded, "tree.fac: nothing wrong, factors\n"},
      {{"--kind", "output", file("gap.out")}, kSucceeded, "doubtful: 1 of 2 runs"},
      {{"--kind", "output", file("bad.out")},
       kFailed,
       "wrong: Error reading model output file\n  " + file("bad.out") + ":6"},
      {{"--kind", "stein", file("bad.out")}, kFailed, "wrong: "},
      {{"--kind", "rows", "--factors", test::goldenPath("mixed.fac"), test::goldenPath("rows.csv")},
       kSucceeded,
       "rows\n"},
      {{"--kind", "rows", test::goldenPath("rows.csv")}, kWrongUsage, ""},
      {{test::goldenPath("rows.csv"), test::goldenPath("tree.fac")}, kFailed, "--kind names it"},
      {{"none.psc"}, kFailed, "none.psc: wrong: "},
  };
  for (const auto& c : cases) {
    test::Words words = c.words;
    words.insert(words.begin(), "check");
    EXPECT_EQ(run(words), c.status) << c.words[0] << '\n' << out_ << errors_;
    EXPECT_NE(out_.find(c.text), std::string::npos) << c.words[0] << '\n' << out_;
  }
}

}  // namespace
}  // namespace tarvex
