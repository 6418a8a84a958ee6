// Studies with every kind of external model, by mouse and keys, against the program for shells.

#include <QProcess>
#include <QStandardPaths>
#include <ostream>

#include "app/RunController.h"
#include "base/uniformRandom.h"
#include "model/OfficeApplication.h"
#include "panels/ModelFixture.h"
#include "panels/main/PMainPanel.h"
#include "support/FlatWorkbook.h"
#include "support/Golden.h"

namespace tarvex {
namespace {

constexpr const char* kIshigami = "ishigami.fac";
constexpr const char* kRuns = "5";

// What is filled in, gadget by gadget: a switch is pressed, a text typed. DIR and LEVELE stand for places.
struct Model {
  const char* name;
  const char* factors;
  std::vector<std::pair<const char*, const char*>> typed;
  std::vector<const char*> cells;  // beside the factors, and then name and cell of an output
  const char* words;               // for the shell, each behind a '|'
  const char* needs = "";
};

void PrintTo(const Model& model, std::ostream* out) {
  *out << model.name;
}

class ModelStudy : public test::ModelTest, public testing::WithParamInterface<Model> {
 protected:
  QString filled(const char* text) const {
    return QString(text).replace("DIR", QString::fromStdString(directory_.path())).replace("LEVELE", TARVEX_LEVELE);
  }
  void choose(QWidget& selection) {
    const Model& model = GetParam();
    for (const auto& [name, text] : model.typed)
      if (*text == '\0')
        press(selection, name);
      else
        type(selection, {{name, filled(text).toStdString().c_str()}});
    auto* const table = selection.findChild<TableView*>("MaCells");
    for (std::size_t i = 0; i < model.cells.size(); ++i) {
      const QModelIndex cell = table->model()->index(std::min(static_cast<int>(i), 3), i == 3 ? 1 : 2);
      table->scrollTo(cell);
      QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->visualRect(cell).center());
      keys(model.cells[i]);
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
      QApplication::processEvents();
    }
    EXPECT_EQ(said(selection), "");
    press(selection, "BOk");
  }
  std::vector<std::string> valuesIn(const char* name) const {
    std::vector<std::string> lines = test::readLines(file(name));
    std::erase_if(lines, [](const std::string& line) { return !line.starts_with("t="); });
    return lines;
  }
  void writeModels() const {
    const QString page = QString::fromStdString(test::readFile(TARVEX_SHARE "/Tarvex/help/programs.html"));
    QString program = page.mid(page.indexOf("id=\"python\"")).section("<pre>", 1).section("</pre>", 0, 0);
    program.replace("&lt;", "<").replace("&gt;", ">").replace("&quot;", "\"");
    test::writeFile(file("m.py"), program.toStdString());
    test::writeFile(file("cells.fods"),
                    test::flatWorkbook({{"Model", {{"0", "0"}, {"0", "=SIN([.A1])+7*SIN([.A2])^2+[.B1]"}}}}));
    std::filesystem::copy_file(TARVEX_EXAMPLES "/workbook/ishigami.ods", file("rows.ods"));
  }
};

TEST_P(ModelStudy, GivesTheNumbersOfTheBatchProgram) {
  const Model& model = GetParam();
  const bool isWorkbook = model.needs == std::string("LibreOffice");
  if (isWorkbook && std::string_view(TARVEX_SHEET_PROGRAM).empty()) GTEST_SKIP() << "tarvex-sheet is not built";
  if (*model.needs != '\0' && !isWorkbook && QStandardPaths::findExecutable(model.needs).isEmpty())
    GTEST_SKIP() << model.needs << " isn't here";
  writeModels();
  display_.keepIn(QString::fromStdString(file("desktop.ini")));
  PMainPanel main(display_, "PMainPanel", "Tarvex", directory_.path());
  main.controller().userAtWorkbook = false;
  main.controller().makeSpreadsheetApplication = [](auto serve) {
    return std::make_unique<OfficeApplication>(std::move(serve), TARVEX_SHEET_PROGRAM);
  };
  main.window()->show();
  press(*main.window(), "BMonteCarlo");
  dialogs_.files = {std::string(TARVEX_DEMO) + '/' + model.factors, file("x.sam")};
  whenShown("PrepMain", [this](QWidget& window) {
    press(window, "BInputSelection");
    specify(window, "Random", "Random", [](QWidget& panel) {
      type(panel, {{"NExecution", kRuns}});
      QTest::keyClick(panel.focusWidget(), Qt::Key_Return);
    });
    press(window, "BOutputSelection");
    press(window, "BOk");
  });
  press(*main.window(), "BConfigure");
  whenShown("External", [this](QWidget& selection) { choose(selection); });
  press(*main.window(), "BSelectInput");
  whenShown("PLinkFactors", [](QWidget& link) { press(link, "BOk"); });
  restoreInitialRandomState();
  press(*main.window(), "BStart");
  EXPECT_EQ(main.controller().project().model.results.runCount(), std::stoi(kRuns))
      << testing::PrintToString(takeShown());
  ASSERT_EQ(main.controller().saveResultsFile(file("panels.spc")), Outcome::Done);

  QProcess batch;
  batch.setWorkingDirectory(QString::fromStdString(directory_.path()));
  batch.start(TARVEX_BATCH_PROGRAM, QString("run|x.sam|-o|shell.spc" + filled(model.words)).split('|'));
  ASSERT_TRUE(batch.waitForFinished());
  ASSERT_EQ(batch.exitCode(), 0) << batch.readAllStandardError().toStdString();
  EXPECT_GE(valuesIn("panels.spc").size(), std::stoul(kRuns));
  EXPECT_EQ(valuesIn("panels.spc"), valuesIn("shell.spc"));
}

// clang-format off
const Model kModels[] = {
    {"levele", "levelE.fac", {{"CModel", "LEVELE {sample} {output}"}, {"TOutput", "DIR/levele.out"}}, {},
     "|--executable|LEVELE|--output|levele.out"},
    {"python", kIshigami, {{"CModel", "python3 DIR/m.py"}, {"TOutput", "DIR/p.out"}}, {},
     "|--executable|python3 m.py|--output|q.out", "python3"},
    {"rows", kIshigami, {{"TExcel", ""}, {"TOutput", "DIR/rows.ods"}}, {}, "|--workbook|rows.ods", "LibreOffice"},
    {"cells", kIshigami, {{"TExcel", ""}, {"TOutput", "DIR/cells.fods"}},
     {"Model!A1", "A2", "B1", "y", "B2"},
     "|--workbook|cells.fods|--input-cell|x3=Model!B1|--input-cell|x1=Model!A1|--input-cell|x2=Model!A2"
     "|--output-cell|y=Model!B2", "LibreOffice"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(, ModelStudy, testing::ValuesIn(kModels));

}  // namespace
}  // namespace tarvex
