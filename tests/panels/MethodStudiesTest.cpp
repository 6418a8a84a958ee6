#include <QListWidget>
#include <ostream>

#include "base/uniformRandom.h"
#include "panels/PrepFixture.h"
#include "panels/main/PMainPanel.h"
#include "support/Golden.h"

namespace tarvex {
namespace {

constexpr const char* kOnGroups = "All first and total order effect calculation on groups";

// A study from an empty project to its sample file, with the mouse and the keys.
struct Study {
  const char* golden;
  const char* factors;
  const char* method;
  const char* panel;  // its name
  std::vector<std::pair<const char*, const char*>> settings;
  std::vector<std::pair<const char*, std::vector<int>>> groups = {};  // with the rows that are selected
};

void PrintTo(const Study& study, std::ostream* out) {
  *out << study.golden;
}

class MethodStudy : public test::PrepTest, public testing::WithParamInterface<Study> {
 protected:
  static void press(QWidget& window, const char* button) {
    auto* const found = window.findChild<QAbstractButton*>(button);
    ASSERT_NE(found, nullptr) << button;
    QTest::mouseClick(found, Qt::LeftButton, {}, QPoint(found->height() / 2, found->height() / 2));
  }
  static void pick(QListWidget& list, const QListWidgetItem* item, Qt::KeyboardModifiers keys = {}) {
    ASSERT_NE(item, nullptr);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, keys, list.visualItemRect(item).center());
  }
  // Entries are chosen as a user does without the mouse: by typing what they say.
  static void set(QWidget& window, const char* name, const char* text) {
    if (auto* const list = window.findChild<QComboBox*>(name)) {
      list->setFocus();
      QTest::keyClick(list, Qt::Key_Home);
      for (int i = 0; i < list->count() && list->currentText() != text; ++i) QTest::keyClick(list, Qt::Key_Down);
      EXPECT_EQ(list->currentText(), text);
    } else if (*text == '\0') {
      press(window, name);
    } else {
      type(window, {{name, text}});
    }
  }
  void makeGroups(QWidget& window) {
    for (const auto& [name, rows] : GetParam().groups) {
      dialogs_.texts = {name};
      whenShown("selGroup", [this, rows = rows](QWidget& members) {
        auto* const list = members.findChild<QListWidget*>("SlAvailable");
        for (const int row : rows) pick(*list, list->item(row), Qt::ControlModifier);
        press(members, "BRight");
        press(members, "BOk");
      });
      press(window, "BNewGroup");
    }
  }
  void specify(QWidget& window) {
    whenShown(GetParam().panel, [this](QWidget& panel) {
      for (const auto& [name, text] : GetParam().settings) set(panel, name, text);
      makeGroups(panel);
      press(panel, "BOk");
    });
    auto* const methods = window.findChild<QListWidget*>("SlMethods");
    const auto found = methods->findItems(GetParam().method, Qt::MatchExactly);
    ASSERT_EQ(found.size(), 1);
    pick(*methods, found.front());
    press(window, "BSpecify");
  }
};

TEST_P(MethodStudy, GivesTheSampleOfTheBatchProgram) {
  display_.keepIn(QString::fromStdString(file("desktop.ini")));
  PMainPanel main(display_, "PMainPanel", "Tarvex", directory_.path());
  dialogs_.files = {test::goldenPath(GetParam().factors)};
  if (GetParam().method == std::string("Fixed samples")) dialogs_.files.push_back(test::goldenPath("rows.csv"));
  dialogs_.files.push_back(file("x.sam"));
  whenShown("PrepMain", [this](QWidget& window) {
    press(window, "BInputSelection");
    specify(window);
    press(window, "BOutputSelection");
    press(window, "BOk");
  });
  main.window()->show();
  press(*main.window(), "BConfigure");
  restoreInitialRandomState();
  press(*main.window(), "BGenerate");
  EXPECT_TRUE(test::compareGolden(GetParam().golden, test::readFile(file("x.sam"))))
      << testing::PrintToString(takeShown());
}

const Study kStudies[] = {
    {"random-none.sam", "kinds.fac", "Random", "Random", {{"NExecution", "100"}}},
    {"latin-none.sam", "kinds.fac", "Latin Hypercube", "Latin", {{"NExecution", "100"}, {"NSeed", "9"}}},
    {"latin-stein.sam", "stein.fac", "Latin Hypercube", "Latin", {{"NExecution", "48"}, {"NSeed", "8"}}},
    {"replatin-matrix.sam",
     "matrix.fac",
     "Replicated Latin Hypercube",
     "Replicated Latin Hypercube",
     {{"NBaseDesign", "20"}, {"NReplications", "6"}}},
    {"fixed.sam", "mixed.fac", "Fixed samples", "Fixed", {{"BLoad", ""}}},
    {"morris.sam", "mixed.fac", "Morris", "Morris", {{"OExecution", "48"}, {"OLevels", "4"}, {"NSeed", "21"}}},
    {"fast-classic.sam", "mixed.fac", "Fast", "Fast", {{"NExecution", "315"}, {"NSeed", "2"}}},
    {"fast-groups.sam",
     "mixed.fac",
     "Fast",
     "Fast",
     {{"NExecution", "400"}, {"NSeed", "6"}, {"OSettings", kOnGroups}},
     {{"one", {0, 2}}, {"two", {1}}}},
    {"lptau.sam", "kinds.fac", "QuasiRandom LpTau", "LpTau", {{"OExecutions", "128"}}},
    {"sobol.sam", "mixed.fac", "Sobol", "Sobol", {}},
    {"sobol-order2.sam", "mixed.fac", "Sobol", "Sobol", {{"TOSwitchSel", ""}, {"TOrder", "2"}}},
};

INSTANTIATE_TEST_SUITE_P(, MethodStudy, testing::ValuesIn(kStudies));

}  // namespace
}  // namespace tarvex
