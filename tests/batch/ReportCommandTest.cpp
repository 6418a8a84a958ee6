#include "batch/CommandFixture.h"
#include "support/Test.h"

namespace tarvex {
namespace {

class ReportCommand : public test::CommandFixture {
 protected:
  int report(const std::string& input, const std::string& output) {
    return run({"report", input, "-o", output, "--title", "Reactor <3>"});
  }
};

TEST_F(ReportCommand, everyResultOnOnePage) {
  const struct {
    const char* input;
    std::vector<std::string> holds;
  } cases[] = {
      {"plant.spc", {"Reactor &lt;3&gt;", "Densities", "Latin Hypercube", "SHA-256", "Boost.Math", "PRCC"}},
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

}  // namespace
}  // namespace tarvex
