// Whole studies by mouse and keys over the real panels: from an empty project to the files of its factors and of its
// sample, and one of each method on to its report.

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QRegularExpression>
#include <algorithm>
#include <filesystem>

#include "app/RunController.h"
#include "base/uniformRandom.h"
#include "panels/PrepFixture.h"
#include "panels/main/PMainPanel.h"
#include "toolkit/Tree.h"

namespace tarvex {
namespace {

using test::kAllEffects;
using test::kGroupEffects;
using test::Uses;

struct Study {
  const char* sample;  // one of the expected files
  const char* method;
  const char* panel;                                                  // its name
  Uses settings = {};                                                 // fields, entries of lists, or buttons
  std::vector<std::pair<const char*, std::vector<int>>> groups = {};  // with the rows that are selected
  const char* equation = nullptr;                                     // of its model, where it goes on to a report
};

void PrintTo(const Study& study, std::ostream* out) {
  *out << study.sample;
}

// clang-format off
const Study kPrepStudies[] = {
    {"random-none.sam", "Random", "Random", {{"NExecution", "100"}}},
    {"random-tree.sam", "Random", "Random", {{"NExecution", "120"}, {"NSeed", "31"}}},
    {"random-matrix.sam", "Random", "Random", {{"NExecution", "150"}, {"NSeed", "5648423"}}, {}, "a + 2 * b * c"},
    {"latin-tree.sam", "Latin Hypercube", "Latin", {{"NExecution", "110"}, {"NSeed", "12"}}, {}, "child + root * other"},
    {"latin-stein.sam", "Latin Hypercube", "Latin", {{"NExecution", "48"}, {"NSeed", "8"}}},
    {"replatin-matrix.sam", "Replicated Latin Hypercube", "Replicated Latin Hypercube",
     {{"NBaseDesign", "20"}, {"NReplications", "6"}}, {}, "a + b ** 2"},
    {"fixed.sam", "Fixed samples", "Fixed", {{"BLoad", ""}}, {}, "x1 + x2 * x3"},
    {"morris.sam", "Morris", "Morris", {{"OExecution", "48"}, {"OLevels", "4"}, {"NSeed", "21"}}, {}, "x1 + x2 * x3"},
    {"fast-classic.sam", "Fast", "Fast", {{"NExecution", "315"}, {"NSeed", "2"}}},
    {"fast-extended.sam", "Fast", "Fast", {{"OSettings", kAllEffects}, {"NExecution", "345"}, {"NSeed", "2"}}, {}, "x1 + x2 * x3"},
    {"fast-groups.sam", "Fast", "Fast", {{"NExecution", "400"}, {"NSeed", "6"}, {"OSettings", kGroupEffects}},
     {{"one", {0, 2}}, {"two", {1}}}},
    {"lptau.sam", "QuasiRandom LpTau", "LpTau", {{"OExecutions", "128"}}, {}, "norm + 2 * bet"},
    {"sobol.sam", "Sobol", "Sobol", {}, {}, "x1 + x2 * x3"},
    {"sobol-order2.sam", "Sobol", "Sobol", {{"TOSwitchSel", ""}, {"TOrder", "2"}}},
};

// A kind of each panel, typed as far as its parameters aren't the defaults.
const struct {
  const char* menuKeys;
  const char* window;
  const char* name;
  const char* note;
  Uses fields;  // a table's rows are pasted, but for a single one, which is typed
} kTyped[] = {
    {"FAN", "Normal Distribution", "norm", "first of all", {{"NMean", "1.5"}, {"NStdDeviation", ".25"}}},
    {"FAL", "LogNormal Distribution", "lognorm", "", {{"NMean", "0.2"}, {"NStdDeviation", "0.4"}}},
    {"FAU", "UniformDistribution", "flat", "", {{"MaValues", "-2\t3\t1"}}},
    {"FAU", "UniformDistribution", "steps", "",
     {{"MaValues", "0\t1\t0.333333333333333\n1\t2.5\t0.333333333333333\n4\t5\t0.333333333333334\n"}}},
    {"FAO", "LogUniformDistribution", "logflat", "", {{"MaValues", "0.1\t10\t1"}}},
    {"FAO", "LogUniformDistribution", "logsteps", "", {{"MaValues", "1\t10\t0.7\r\n20\t200\t0.3\r\n"}}},
    {"FAW", "Weibull Distribution", "weib", "", {{"NBeta", "1.8"}, {"NN", "2"}, {"NB", "0.5"}}},
    {"FAC", "Constant", "gravity", "", {{"NValue", "9.81"}}},
    {"FAE", "Exponential Distribution", "expo", "", {{"NLambda", "0.5"}, {"NB", "1"}}},
    {"FAG", "Gamma Distribution", "gam", "", {{"NR", "2.5"}, {"NLambda", "15e-1"}, {"NB", "0.25"}}},
    {"FAB", "BetaDistribution", "bet", "", {{"NAlfa", "2"}, {"NBeta", "3.5"}}},
    {"FAB", "BetaDistribution", "betshift", "", {{"NBeta", "2"}, {"NLeftBound", "10"}, {"NRightBound", "20"}}},
    {"FAT", "Triangular Distribution", "tri", "", {{"NAlfa", "0"}, {"NBeta", "1"}, {"NGamma", "4"}}},
    {"FAR", "Relation", "rel", "", {{"TeRelation", "norm * gravity + sqrt(tri)"}}},
    {"FAD", "Discrete Distribution", "disc", "  blanks  ", {{"MaValues", "1\t0.2\n2\t0.3\n4\t0.5"}}},
    {"FAD", "Discrete Distribution", "sevenths", "",
     {{"MaValues", "0\t0.142857142857143\n0.5\t0.142857142857143\n1\t0.142857142857143\n1.5\t0.142857142857143\n"
                   "2\t0.142857142857143\n2.5\t0.142857142857143\n3\t0.142857142857142"}}},
    {"FAN", "Normal Distribution", "cut", "", {{"NLeftTrunc", "0.05"}, {"NRightTrunc", "0.9"}}},
    {"FAR", "Relation", "branch", "", {{"TeRelation", "disc > 1 ? exp(-bet) : log10(1 + flat ** 2)"}}},
};
// clang-format on

class PrepStudies : public test::PrepTest, public testing::WithParamInterface<Study> {
 protected:
  // Keys into what has the keyboard, after Tab led there.
  static void keysInto(QWidget& window, const char* gadget, const QString& text) {
    constexpr int kMostTabs = 30;
    for (int i = 0; i < kMostTabs && window.focusWidget()->objectName() != gadget; ++i)
      QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    ASSERT_EQ(window.focusWidget()->objectName(), gadget);
    QTest::keyClicks(window.focusWidget(), text);
  }
  static void pasteInto(QWidget& window, const char* gadget, const QString& rows) {
    keysInto(window, gadget, {});
    QApplication::clipboard()->setText(rows);
    QTest::keyClick(window.focusWidget(), Qt::Key_V, Qt::ControlModifier);
  }

  // Factors and their correlations.

  static void typeField(QWidget& definition, const char* gadget, const QString& text) {
    if (gadget != std::string("MaValues")) return keysInto(definition, gadget, text);
    if (text.contains('\n')) return pasteInto(definition, gadget, text);
    // From cell to cell, the last one as Enter takes it.
    keysInto(definition, gadget, {});
    for (const QString& cell : text.split('\t')) {
      keys(cell);
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
  }
  void typeFactors(QWidget& window) {
    for (const auto& row : kTyped) {
      SCOPED_TRACE(row.name);
      activate(window);  // as a window manager does when the panel above goes
      whenShown(row.window, [&row](QWidget& definition) {
        keysInto(definition, "TName", row.name);
        keysInto(definition, "TNote", row.note);
        for (const auto& [gadget, text] : row.fields) typeField(definition, gadget, text);
        if (auto* const expression = qobject_cast<QPlainTextEdit*>(definition.focusWidget()))
          QTest::keyClick(expression, Qt::Key_Return);  // Enter takes it from there, too
        else
          press(definition, "BOk");
        if (!definition.isVisible()) return;
        ADD_FAILURE() << definition.findChild<QLabel*>("MlMessage")->text().toStdString();
        definition.close();
      });
      QTest::keyClick(&window, Qt::Key_F, Qt::AltModifier);
      for (const char* key = row.menuKeys + 1; *key != '\0'; ++key)
        QTest::keyClick(QApplication::activePopupWidget(), *key);
    }
  }
  void correlate(QWidget& window, const std::string& factors) {
    auto* const methods = window.findChild<QComboBox*>("SeCorrType");
    if (factors == "matrix.fac") {
      auto* const view = window.findChild<TableView*>("MaCorrelations");
      for (const auto& [row, column, text] : {std::tuple{0, 1, "0.7"}, {2, 0, "-0.4"}, {1, 3, "0.3"}, {2, 3, ".2"}})
        typeCell(*view, row, column, text);
    } else if (factors == "stein.fac") {
      QTest::keyClick(methods, Qt::Key_End);
      pressLetter(window, Qt::Key_I);
    } else {
      QTest::keyClick(methods, Qt::Key_Home);
      auto* const outside = window.findChild<Tree*>("SlFactors");
      auto* const tree = window.findChild<Tree*>("TrCorrelation");
      QTest::keyClick(outside, Qt::Key_Home);
      const std::tuple<Qt::Key, Qt::Key, const char*> links[] = {// child, root, grandchild, other, against
                                                                 {Qt::Key_Down, Qt::Key_Home, nullptr},
                                                                 {Qt::Key_Home, Qt::Key_Home, "0.8"},
                                                                 {Qt::Key_Home, Qt::Key_End, "0.6"},
                                                                 {Qt::Key_End, Qt::Key_Home, "-0.7"}};
      for (const auto& [factor, parent, value] : links) {
        tree->setFocus();
        QTest::keyClick(tree, parent);
        outside->setFocus();
        QTest::keyClick(outside, factor);
        if (value != nullptr) answerValue(value);
        QTest::keyClick(outside, Qt::Key_Return);
      }
    }
    pressLetter(window, Qt::Key_O);
  }
  // One list is typed, the others are pasted from a spreadsheet.
  void makeFactors(QWidget& window, const std::string& factors) {
    if (factors == "kinds.fac") {
      typeFactors(window);
    } else {
      const auto list = golden(factors);
      std::string rows = "Name\tLaw\n";
      for (int i = 0; i < list->factorCount(); ++i)
        rows += list->factor(i).name + '\t' + list->factor(i).typeName + '\t' + factorFields(list->factor(i)) + "\r\n";
      pasteInto(window, "MaFactors", QString::fromStdString(rows));
      if (list->correlationMode != kNoCorrelation) {
        whenShown("Correlation", [this, factors](QWidget& panel) { correlate(panel, factors); });
        press(window, "BCorrelate");
      }
    }
    press(window, "BSave");
    press(window, "BOk");
  }
  void writeSteinFile() {
    const std::vector<std::string> lines = test::splitLines(test::readFile(test::goldenPath("stein.fac")));
    const auto block = std::ranges::find(lines, "Stein Information:") + 5;
    std::string text = "60 5\na\nk\nb\nc\nr\n";
    for (int row = 0; row < 60; ++row) text += block[row] + '\n';
    test::writeFile(file("stein.txt"), text);
    dialogs_.files.push_back("stein.txt");
  }

  // The method.

  void makeGroups(QWidget& window) {
    for (const auto& [name, rows] : GetParam().groups) {
      dialogs_.texts = {name};
      whenShown("selGroup", [rows = rows](QWidget& members) {
        for (const int row : rows) clickRow(members, "SlAvailable", row, Qt::ControlModifier);
        press(members, "BRight");
        press(members, "BOk");
      });
      press(window, "BNewGroup");
    }
  }

  // The model, its run, the report.

  // Enter accepts the equation from the field of its text.
  void chooseEquation(QWidget& selection) {
    auto* const kind = selection.findChild<QComboBox*>("SeSwitchModel");
    kind->setFocus();
    QTest::keyClick(kind, Qt::Key_Down);
    whenShown("PIntModel", [this](QWidget& editor) {
      whenShown("PNewExpression", [](QWidget& window) {
        type(window, {{"TExprName", "y"}});
        auto* const field = window.findChild<QPlainTextEdit*>("TExpr");
        QTest::mouseClick(field->viewport(), Qt::LeftButton);
        QTest::keyClicks(field, GetParam().equation);
        QTest::keyClick(field, Qt::Key_Return, Qt::ShiftModifier);
        QTest::keyClick(field, Qt::Key_Return);
      });
      press(editor, "BAdd");
      press(editor, "BOk");
    });
    press(selection, "BCreateNewIntModel");
  }
  void report(PMainPanel& main, const std::string& path) {
    QWidget& window = *main.window();
    whenShown("External", [this](QWidget& selection) {
      dialogs_.answers = {true};  // to save the equations
      dialogs_.files.push_back(file("m.imd"));
      chooseEquation(selection);
      press(selection, "BOk");
    });
    press(window, "BSelectInput");
    whenShown("PLinkFactors", [](QWidget& link) { press(link, "BOk"); });
    press(window, "BStart");
    ASSERT_GT(main.controller().project().model.results.runCount(), 0) << testing::PrintToString(takeShown());
    press(window, "BAnalyse");
    auto* const vels = window.findChild<QWidget*>("VelsMain");
    ASSERT_NE(vels, nullptr);
    // A shell has the digits of files, and so has the desktop on the next morning.
    dialogs_.files.push_back(file("panels.spc"));
    press(*vels, "BSave");
    dialogs_.answers = {true};  // the project isn't saved
    main.openFile(QString::fromStdString(file("panels.spc")));
    press(*vels, "BAddAll");
    whenShown("Report", [&](QWidget& panel) {
      type(panel, {{"TTitle", "A <study>"}, {"TAuthor", "A. Author"}, {"TDate", "1 May"}});
      dialogs_.files.push_back(path);
      QTest::keyClick(panel.focusWidget(), Qt::Key_Return);
    });
    press(*vels, "BReport");
    EXPECT_EQ(vels->findChild<QLabel*>("MlMessage")->text().toStdString(), "Written: " + path)
        << testing::PrintToString(takeShown());
  }
  static void shell(const QStringList& words) { ASSERT_EQ(QProcess::execute(TARVEX_BATCH_PROGRAM, words), 0); }

  // The words with which a shell makes the sample, and the list of factors that they name.
  QStringList command(std::string& factors) {
    QFile cases(QString::fromStdString(test::goldenPath("cases.json")));
    EXPECT_TRUE(cases.open(QIODevice::ReadOnly));
    QStringList words;
    for (const QJsonValue& one : QJsonDocument::fromJson(cases.readAll()).array()) {
      if (one["name"].toString() + ".sam" != GetParam().sample || one["command"][0].toString() != "sample") continue;
      for (const QJsonValue& word : one["command"].toArray()) words << word.toString();
      factors = words[1].mid(3).toStdString();
      words.replaceInStrings(QRegularExpression("^in/"), QString::fromStdString(test::goldenPath("")));
      words.replaceInStrings(QRegularExpression("^out/"), QString::fromStdString(file("")));
    }
    return words;
  }
  // The lines that say where a sample was written, and where the user last was, as of a shell in the place itself.
  std::string withoutPlaces(std::string text) const {
    for (const std::string& place : {directory_.path() + '/', directory_.path()})
      for (std::size_t at = text.find(place); at != std::string::npos; at = text.find(place))
        text.erase(at, place.size());
    return text;
  }
};

TEST_P(PrepStudies, GivesTheFilesOfTheShellToTheLastByte) {
  std::filesystem::current_path(directory_.path());
  const std::string sample = file(GetParam().sample);
  std::string factors;
  shell(command(factors));
  const std::string ofShell = test::readFile(sample);
  std::filesystem::remove(sample);
  display_.keepIn(QString::fromStdString(file("desktop.ini")));
  PMainPanel main(display_, "PMainPanel", "Tarvex", directory_.path());
  if (factors == "stein.fac") writeSteinFile();
  dialogs_.files.push_back(file(factors));
  if (GetParam().panel == std::string("Fixed")) dialogs_.files.push_back(test::goldenPath("rows.csv"));
  dialogs_.files.push_back(sample);
  whenShown("PrepMain", [&](QWidget& window) {
    whenShown("InputFactors", [&](QWidget& list) { makeFactors(list, factors); });
    press(window, "BCreate");
    specify(window, GetParam().method, GetParam().panel, [this](QWidget& panel) {
      use(panel, GetParam().settings);
      makeGroups(panel);
      press(panel, "BOk");
    });
    press(window, "BOutputSelection");
    press(window, "BOk");
  });
  main.window()->show();
  if (GetParam().equation != nullptr) press(*main.window(), "BMonteCarlo");
  press(*main.window(), "BConfigure");
  restoreInitialRandomState();
  press(*main.window(), "BGenerate");
  EXPECT_EQ(test::readFile(file(factors)), test::readFile(test::goldenPath(factors)))
      << testing::PrintToString(takeShown());
  const std::string made = withoutPlaces(test::readFile(sample));
  EXPECT_EQ(made, withoutPlaces(ofShell)) << testing::PrintToString(takeShown());
  EXPECT_EQ(made, test::readFile(test::goldenPath(GetParam().sample)));
  if (GetParam().equation == nullptr) return;

  report(main, file("panels.html"));
  const auto path = [this](const std::string& name) { return QString::fromStdString(file(name)); };
  shell({"run", QString::fromStdString(sample), "-o", path("shell.spc"), "--model", path("m.imd")});
  shell({"report", path("shell.spc"), "-o", path("shell.html"), "--title", "A <study>", "--author", "A. Author",
         "--date", "1 May"});
  EXPECT_EQ(test::readFile(file("panels.html")), test::readFile(file("shell.html")));
}

INSTANTIATE_TEST_SUITE_P(, PrepStudies, testing::ValuesIn(kPrepStudies));

}  // namespace
}  // namespace tarvex
