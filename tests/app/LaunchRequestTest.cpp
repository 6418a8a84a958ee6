#include "app/LaunchRequest.h"

#include <gtest/gtest.h>

#include "app/RunController.h"
#include "app/ScriptedFrontEnd.h"
#include "base/RememberedDirectories.h"
#include "support/Golden.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"

namespace tarvex {
namespace {

using Texts = std::vector<std::string>;

class Launch : public testing::Test {
 protected:
  void TearDown() override { RememberedDirectories::forget(); }
  LaunchRequest request(const std::string& text) {
    test::writeFile(directory_.file("Tarvex.ini"), text);
    return LaunchRequest::read(directory_.path());
  }

  test::ScopedCurrentDirectory stay_;
  test::TempDirectory directory_;
  test::ScriptedFrontEnd frontEnd_;
  RunController controller_{frontEnd_};
};

TEST_F(Launch, filesInTheirOrder) {
  const struct {
    const char* name;
    std::string text;
    Texts files;  // s, e, r for the kind, then the path
  } cases[] = {
      {"nothing", "", {}},
      {"each label",
       "Tarvex configuration file:a.spc\nExternal sample file: b\nTarvex sample file:c.sam\n",
       {"ra.spc", "eb", "sc.sam"}},
      {"the same label again", "Tarvex sample file:a\nTarvex sample file:b\n", {"sa", "sb"}},
      {"blanks", "External sample file:    a b.txt\n", {"ea b.txt"}},
      {"leading blanks", "  External sample file:a\n", {}},
      {"no value", "Tarvex sample file:\nTarvex sample file:   \n", {}},
      {"CR LF, no line end", "Tarvex sample file:a\r\nTarvex sample file:b", {"sa", "sb"}},
      {"lines of no label", "# note\n\ntarvex sample file:a\nTarvex sample file a\n", {}},
      {"a line of 1023 characters", std::string(1023, 'x') + "\nTarvex sample file:a\n", {"sa"}},
      {"a line of 1024", "Tarvex sample file:a\n" + std::string(1024, 'x') + "\nTarvex sample file:b\n", {"sa"}},
  };
  for (const auto& c : cases) {
    Texts files;
    const LaunchRequest launch = request(c.text);
    for (const LaunchRequest::File& file : launch.files())
      files.push_back("ser"[static_cast<int>(file.kind)] + file.path);
    EXPECT_EQ(files, c.files) << c.name;
  }
  EXPECT_TRUE(LaunchRequest::read("/no/such").files().empty());
}

TEST_F(Launch, opensAsTheUserWould) {
  const std::string sample = test::goldenPath("ishigami.sam");
  const std::string results = test::goldenPath("morris.spc");
  const std::string outside = directory_.file("a b.txt");
  test::writeFile(outside, "2\n1\nx\n5\n6\n");
  const struct {
    const char* name;
    std::string text;
    std::int32_t rows;
    bool vels;
    Texts calls;
  } cases[] = {
      {"a sample", "Tarvex sample file:" + sample, 200, false, {}},
      {"an external sample", "External sample file:    " + outside, 2, false, {}},
      {"results", "Tarvex configuration file:" + results, 48, true, {}},
      {"the last wins", "Tarvex configuration file:" + results + "\nTarvex sample file:" + sample, 200, false, {}},
      {"missing files",
       "Tarvex sample file:/no/such\nExternal sample file:/no/such\nTarvex configuration file:/no/such\n",
       0,
       false,
       {"Error: Error reading samples file", "Error: Error reading external samples file",
        "Error:   Error reading UA/SA file"}},
  };
  for (const auto& c : cases) {
    frontEnd_ = {};
    controller_.clearAll();
    const LaunchRequest launch = request(c.text);
    for (const LaunchRequest::File& file : launch.files())
      EXPECT_EQ(LaunchRequest::open(file, controller_), c.calls.empty()) << c.name;
    EXPECT_EQ(controller_.project.prep.samples.rows(), c.rows) << c.name;
    EXPECT_EQ(controller_.project.hasVels, c.vels) << c.name;
    EXPECT_EQ(frontEnd_.calls, c.calls) << c.name;
  }
}

TEST_F(Launch, theModelComesLast) {
  const std::string equations = "Internal model:" + test::goldenPath("ishigami.imd") + "\n";
  const std::string executable = "External model executable:/bin/a model\n";
  const std::string workbook = "External model executable:Excel Application\n";
  const std::string output = "External model output file:out put\n";
  const struct {
    const char* name;
    std::string text;
    bool hasModel;
    std::int32_t kind, spreadsheet;
    const char* executable;
  } cases[] = {
      {"nothing", "", false, kNoModelToStart, 0, ""},
      {"an executable without output", executable, false, kNoModelToStart, 0, ""},
      {"output alone", output, true, kNoModelToStart, 0, ""},
      {"both, executable last", output + executable, true, kNoModelToStart, 0, "/bin/a model"},
      {"a workbook", workbook + output, true, kNoModelToStart, 1, "Excel Application"},
      {"an empty value is none", output + workbook + "External model executable: \n", true, kNoModelToStart, 1,
       "Excel Application"},
      {"equations", equations, true, kInternalModel, 0, ""},
      {"equations win", equations + executable + output, true, kInternalModel, 0, ""},
      {"equations that are missing", "Internal model:/no/such\n", false, kNoModelToStart, 0, ""},
      {"missing ones don't win", "Internal model:/no/such\n" + executable + output, true, kNoModelToStart, 0,
       "/bin/a model"},
  };
  for (const auto& c : cases) {
    controller_.clearAll();
    EXPECT_EQ(request(c.text).applyModel(controller_), c.hasModel) << c.name;
    const ModelConfiguration& model = controller_.project.model;
    EXPECT_EQ(controller_.project.hasModel, c.hasModel) << c.name;
    EXPECT_EQ(model.kind, c.kind) << c.name;
    EXPECT_EQ(model.spreadsheet, c.spreadsheet) << c.name;
    EXPECT_EQ(model.executable, c.executable) << c.name;
    EXPECT_EQ(model.outputFile, *c.executable != '\0' || c.text == output ? "out put" : "") << c.name;
    EXPECT_EQ(model.internalModel() != nullptr ? model.internalModel()->fileName() : "",
              c.kind == kInternalModel ? test::goldenPath("ishigami.imd") : "")
        << c.name;
  }
  EXPECT_TRUE(frontEnd_.calls.empty()) << "the model labels are silent";
}

}  // namespace
}  // namespace tarvex
