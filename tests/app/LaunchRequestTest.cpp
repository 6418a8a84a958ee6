#include "app/LaunchRequest.h"

#include "app/RunController.h"
#include "app/ScriptedFrontEnd.h"
#include "base/RememberedDirectories.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using Texts = std::vector<std::string>;

class Launch : public test::InDirectory {
 protected:
  void TearDown() override { RememberedDirectories::forget(); }
  LaunchRequest request(const std::string& text) {
    test::writeFile(file("Tarvex.ini"), text);
    return LaunchRequest::read(directory_.path());
  }

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

TEST_F(Launch, theModelComesLast) {
  const std::string equations = "Internal model:" + test::goldenPath("ishigami.imd") + "\n";
  const std::string executable = "External model executable:/bin/a model\n";
  const std::string workbook = "External model executable:Excel Application\n";
  const std::string output = "External model output file:out put\n";
  const struct {
    const char* name;
    std::string text;
    std::string model;  // kind, spreadsheet, executable, output file, file of the equations
  } cases[] = {
      {"nothing", "", "none"},
      {"an executable without output", executable, "none"},
      {"output alone", output, "2 0 | out put |"},
      {"both, executable last", output + executable, "2 0 /bin/a model| out put |"},
      {"a workbook", workbook + output, "2 1 Excel Application| out put |"},
      {"an empty value", workbook + output + "External model executable: \n", "2 1 Excel Application| out put |"},
      {"equations", equations, "0 0 |  | ishigami.imd"},
      {"equations win", equations + executable + output, "0 0 |  | ishigami.imd"},
      {"equations that are missing", "Internal model:/no/such\n", "none"},
      {"missing ones don't win", "Internal model:/no/such\n" + executable + output, "2 0 /bin/a model| out put |"},
  };
  for (const auto& c : cases) {
    ASSERT_EQ(controller_.clearAll(), Outcome::Done);
    EXPECT_EQ(request(c.text).applyModel(controller_), c.model != "none") << c.name;
    const ModelChoice& model = controller_.project().model.choice;
    std::string text = std::to_string(model.kind) + ' ' + std::to_string(model.spreadsheet) + ' ' + model.executable +
                       "| " + model.outputFile + " |";
    if (const InternalModel* internal = model.internalModel())
      text += ' ' + std::filesystem::path(internal->fileName()).filename().string();
    EXPECT_EQ(controller_.project().hasModel ? text : "none", c.model) << c.name;
  }
  EXPECT_TRUE(frontEnd_.calls.empty()) << "the model labels are silent";
}

}  // namespace
}  // namespace tarvex
