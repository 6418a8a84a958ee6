#include <QAction>
#include <QTabWidget>

#include "app/RunController.h"
#include "factors/FactorFiles.h"
#include "panels/PrepFixture.h"
#include "panels/main/PMainPanel.h"
#include "panels/prep/PInputFactors.h"
#include "panels/prep/POutputSelection.h"
#include "panels/prep/PPrepMain.h"
#include "panels/prep/definitionKinds.h"
#include "panels/prep/editFactor.h"
#include "panels/sampling/makeMethodPanel.h"
#include "sampling/Sampler.h"
#include "sampling/SamplerFactory.h"
#include "support/Golden.h"
#include "toolkit/Tree.h"

namespace tarvex {
namespace {

using test::Texts;

class PrepMain : public test::PrepTest {
 protected:
  void open(const FactorList& factors, bool demo = false, const QString& from = {}) {
    PrepSettings settings;
    std::string problem;
    ASSERT_TRUE(settings.factors.copyFrom(factors, problem));
    panel_ = std::make_unique<PPrepMain>(display_, std::move(settings), from, demo, nullptr);
    ASSERT_EQ(panel_->problems(), QStringList());
    panel_->window()->show();
  }
  std::string methods() { return cells(*panel_->gadget<QListWidget>("SlMethods")->model()); }
  std::string label(const char* name) { return PrepTest::label(*panel_, name); }
  bool sensitive(const char* name) { return panel_->gadget<QWidget>(name)->isEnabled(); }
  // Sets a method; one that asks for a number of runs gets some.
  void choose(QWidget& window, const char* method, const char* panel) {
    specify(window, method, panel, [](QWidget& settings) {
      if (settings.findChild<QLineEdit*>("NExecution") != nullptr) type(settings, {{"NExecution", "10"}});
      click(settings, "BOk");
    });
  }
  // What the project is saved as.
  std::string bytes(PMainPanel& main) {
    EXPECT_EQ(main.controller().saveProjectAs(file("p.psc")), Outcome::Done);
    return test::readFile(file("p.psc"));
  }
  // Changes whatever can be changed in the window.
  static void disturb(QWidget& window) {
    for (auto* const list : window.findChildren<QComboBox*>()) {
      if (!list->isEnabled() || list->objectName() == "ODistType") continue;
      list->setCurrentIndex(list->count() - 1);
      Q_EMIT list->activated(list->currentIndex());
    }
    for (auto* const field : window.findChildren<QLineEdit*>())
      if (field->isEnabled() && !field->isReadOnly() && field->property("callback").isValid() &&
          field->objectName() != "TSearch")
        type(window, {{field->objectName().toLatin1(), field->objectName() == "TName" ? "other" : "7"}});
    for (auto* const table : window.findChildren<TableView*>())
      static_cast<void>(table->model()->setData(table->model()->index(0, 0), "other"));  // where it is for typing
  }
  // By a button, a menu item, or an item of a tree.
  static void open(QWidget& window, const char* name) {
    auto* const found = window.findChild<QObject*>(name);
    ASSERT_NE(found, nullptr) << name;
    if (auto* const action = qobject_cast<QAction*>(found)) return action->trigger();
    if (auto* const button = qobject_cast<QAbstractButton*>(found)) return button->click();
    window.findChild<QTabWidget*>("NoCorrelation")->setCurrentIndex(0);
    auto* const tree = static_cast<Tree*>(found);
    tree->setCurrent(0);
    tree->setFocus();
    QTest::keyClick(tree, Qt::Key_Return);
  }
  enum Leaving { kOk, kCancel, kEscape, kClose, kWays };
  static void leave(QWidget& window, int way) {
    auto* const button = window.findChild<QAbstractButton*>(way == kOk ? "BOk" : "BCancel");
    if (way == kEscape) QTest::keyClick(&window, Qt::Key_Escape);
    if (way <= kCancel && button != nullptr) button->click();
    if (window.isVisible()) window.close();
  }

  std::unique_ptr<PPrepMain> panel_;
};

TEST_F(PrepMain, OffersTheMethodsThatFactorsAndCorrelationAllow) {
  constexpr int kCounts[] = {0, 1, 2, 370, 371};
  const std::string plain = "Random|Latin Hypercube|Fixed samples|";
  const std::string replicated = "Random|Latin Hypercube|Replicated Latin Hypercube|Fixed samples|";
  const std::string all = plain + "Morris|Fast|QuasiRandom LpTau|Sobol|";
  const std::string latin = "Latin Hypercube|";
  const std::string latins = latin + "Replicated Latin Hypercube|";
  const std::string offered[][5] = {{"", plain, plain, plain, plain},
                                    {"", plain, replicated, replicated, replicated},
                                    {"", plain + "Morris|QuasiRandom LpTau|", all, all, plain + "Morris|Fast|"},
                                    {"", latin, latins, latins, latins}};
  for (int mode = kDependenceTree; mode <= kSteinSample; ++mode)
    for (int i = 0; i < 5; ++i) {
      const auto list = normals(kCounts[i], static_cast<CorrelationMode>(mode));
      list->addFactor(makeFactor("Constant"));  // which counts for nothing
      open(*list);
      EXPECT_EQ(methods(), offered[mode][i]) << mode << ' ' << kCounts[i];
      EXPECT_EQ(sensitive("SlMethods") && sensitive("BModify") && sensitive("BVisualize"), kCounts[i] > 0);
      EXPECT_EQ(label("MlSourceInfo"), kCounts[i] > 0 ? "Using factors from panel" : "No factors");
      EXPECT_FALSE(sensitive("BSpecify") || sensitive("BOk"));
    }
  // The method that is set, in this panel's spelling.
  for (std::int32_t method = 0; method < kMethodCount; ++method) {
    PrepSettings settings;
    settings.sampler = makeSampler(method);
    PPrepMain panel(display_, std::move(settings), {}, false, nullptr);
    const std::string name(methodNameOf(method));
    EXPECT_EQ(panel.gadget<QLabel>("MlMethodInfo")->text().toStdString(),
              "Currently selected: " + (method == kLpTau ? "Quasirandom Lptau" : name));
  }
  // A file's list can be changed although nothing of it is sampled.
  open(*normals(0), false, "/somewhere/x.fac");
  EXPECT_TRUE(sensitive("BModify") && sensitive("SlMethods"));
  EXPECT_EQ(label("MlSourceInfo") + methods(), "Using factors from file");
}

TEST_F(PrepMain, MethodAndFileAreAskedForAgainWhenFactorsChange) {
  open(*normals(2), false, "/somewhere/x.fac");
  EXPECT_EQ(label("MlSourceInfo") + label("MlMethodInfo"), "Using factors from fileNo Method");
  EXPECT_EQ(panel_->gadget<QLineEdit>("TInputSelection")->text(), "/somewhere/x.fac");
  choose(*panel_->window(), "QuasiRandom LpTau", "LpTau");
  EXPECT_EQ(label("MlMethodInfo"), "Currently selected: QuasiRandom LpTau");
  EXPECT_FALSE(sensitive("BOk"));
  EXPECT_EQ(label("MlMessage"), "Choose the file that the sample is written to.");
  const std::string saves = "Output file for sample: save *.sam *.*",
                    opens = "Open list of factors file: open *.fac *.*";
  step(*panel_, "outputSelection", {saves, "Error: ...", saves}, {}, {std::string(5000, 'x') + ".sam", file("x.sam")});
  EXPECT_TRUE(sensitive("BOk"));

  step(*panel_, "inputSelection", {opens, "Error: Error reading factors file\n..."}, {}, {file("none.fac")});
  EXPECT_TRUE(sensitive("BOk"));
  std::string problem;
  ASSERT_TRUE(saveFactorFile(file("y.fac"), *normals(3), problem)) << problem;
  step(*panel_, "inputSelection", {opens}, {}, {file("y.fac")});
  EXPECT_EQ(label("MlMethodInfo"), "No Method");
  EXPECT_FALSE(sensitive("BOk"));

  whenShown("InputFactors", [](QWidget& window) { click(window, "BOk"); });
  choose(*panel_->window(), "Random", "Random");
  EXPECT_TRUE(sensitive("BOk"));
  specify(*panel_->window(), "Random", "Random", [](QWidget& settings) {
    EXPECT_EQ(settings.findChild<QLineEdit*>("NExecution")->text(), "10");  // as it was set
    click(settings, "BCancel");
  });
  panel_->call("modify");
  EXPECT_EQ(label("MlSourceInfo") + label("MlMethodInfo"), "Using factors from panelNo Method");
  EXPECT_FALSE(sensitive("BOk"));
  whenShown("InputFactors", [](QWidget& window) { click(window, "BOk"); });
  panel_->call("create");
  EXPECT_EQ(label("MlSourceInfo") + methods(), "No factors");
  EXPECT_FALSE(sensitive("BModify") || sensitive("FMethods"));
}

TEST_F(PrepMain, TheFormatIsTaken) {
  POutputSelection empty(display_, std::make_shared<FactorList>(), 0, nullptr);
  EXPECT_EQ(empty.gadget<TableView>("MaFactors")->model()->rowCount(), 0);
  open(*normals(6));
  whenShown("OutSelection", [](QWidget& window) {
    auto* const view = window.findChild<TableView*>("MaFactors");
    for (const auto& [button, row] : {std::pair("BScrollDown", 0), {"BScrollDown", 1}, {"BScrollUp", 0}}) {
      click(window, button);
      EXPECT_EQ(view->currentIndex().row(), row);
    }
    window.findChild<QComboBox*>("SelOrder")->setCurrentIndex(1);
    click(window, "BOk");
  });
  panel_->call("setting");
  EXPECT_EQ(panel_->takeSettings().order, 1);
}

TEST_F(PrepMain, DemonstrationsAreForReading) {
  const auto list = normals(2);
  std::vector<std::pair<std::unique_ptr<Panel>, QString>> panels;  // with their titles
  panels.emplace_back(std::make_unique<PPrepMain>(display_, PrepSettings(), "", true, nullptr),
                      "Prep - Main Panel (Demo mode)");
  panels.emplace_back(std::make_unique<PInputFactors>(display_, list, true, nullptr),
                      "Input factors selection (Demo mode)[*]");
  for (std::int32_t method = 0; method < kMethodCount; ++method)
    panels.emplace_back(makeMethodPanel(display_, method, {list.get(), nullptr, true}, nullptr), QString());
  for (const std::string& kind : factorKinds())
    panels.emplace_back(makeDefinition(display_, *makeFactor(kind), {list.get(), -1, true}, nullptr),
                        kind == "Beta" ? "Beta distribution (Demo mode)" : "");
  const QStringList reads{"ok",      "cancel", "help",   "save",      "apply",
                          "formula", "reset",  "modify", "visualize", "correlate"};  // what shows, or leaves the panel
  for (const auto& [panel, title] : panels) {
    SCOPED_TRACE(panel->window()->windowTitle().toStdString());
    EXPECT_TRUE(title.isEmpty() || panel->window()->windowTitle() == title);
    for (const QLineEdit* const field : panel->window()->findChildren<QLineEdit*>())
      EXPECT_TRUE(field->isReadOnly() || !field->property("callback").isValid() || field->objectName() == "TSearch")
          << field->objectName().toStdString();
    for (const QComboBox* const box : panel->window()->findChildren<QComboBox*>())
      EXPECT_FALSE(box->isEnabled()) << box->objectName().toStdString();
    for (const QAbstractButton* const button : panel->window()->findChildren<QAbstractButton*>()) {
      const QString callback = button->property("callback").toString();
      EXPECT_TRUE(callback.isEmpty() || !button->isEnabled() || reads.contains(callback)) << callback.toStdString();
    }
    panel->call("ok");
    const bool isPassedOver = title.startsWith("Prep") || title.startsWith("Input");  // by who opened it
    EXPECT_EQ(panel->accepted(), isPassedOver);
  }
}

TEST_F(PrepMain, DefaultTruncationsComeAndGoWithTheFactors) {
  display_.keepIn(QString::fromStdString(file("desktop.ini")));
  PMainPanel main(display_, "PMainPanel", "Tarvex", directory_.path());
  whenShown("PrepMain", [&](QWidget& window) {
    whenShown("InputFactors", [&](QWidget& factors) {
      whenShown("Truncation", [](QWidget& defaults) {
        type(defaults, {{"NLeftTrunc", "0.05"}});
        click(defaults, "BOk");
      });
      typeCell(*factors.findChild<TableView*>("MaFactors"), 0, 0, "flow");
      factors.findChild<QAction*>("ATruncation")->trigger();
      click(factors, "BOk");
    });
    click(window, "BCreate");
    choose(window, "Random", "Random");
    dialogs_.files = {file("x.sam")};
    click(window, "BOutputSelection");
    click(window, "BOk");
  });
  main.call("configure");
  main.call("undo");
  EXPECT_FALSE(main.controller().project().hasPrep);
  EXPECT_EQ(TruncatedDistribution::defaultLeftTruncation(), 0.001);
  main.call("redo");
  EXPECT_EQ(TruncatedDistribution::defaultLeftTruncation(), 0.05);
  const std::string before = bytes(main);
  std::string problem;
  ASSERT_TRUE(TruncatedDistribution::setDefaultTruncations(0.2, 0.8));
  ASSERT_TRUE(saveFactorFile(file("y.fac"), *normals(3), problem)) << problem;
  ASSERT_TRUE(TruncatedDistribution::setDefaultTruncations(0.05, 0.999));
  main.openFile(QString::fromStdString(file("y.fac")));
  EXPECT_EQ(TruncatedDistribution::defaultLeftTruncation(), 0.2);
  main.call("undo");
  EXPECT_EQ(bytes(main), before);
}

// However the last panel of a way is left, whatever was changed in it and in those above: a cancel above leaves all.
TEST_F(PrepMain, ACancelAtEveryPanelLeavesTheProjectsBytes) {
  using Way = std::vector<std::pair<const char*, const char*>>;  // what opens a panel, and its name
  struct Row {
    const char* factors;
    Way way;
    int selected = 0;  // of the factors, or of the methods
    int leaving = -1;  // -1: in each way
  };
  const Way list{{"BModify", "InputFactors"}};
  const auto below = [&list](const char* opens, const char* name) { return Way{list.front(), {opens, name}}; };
  std::vector<Row> rows{{"kinds.fac", list},
                        {"kinds.fac", {{"BCreate", "InputFactors"}}},
                        {"kinds.fac", {{"BSetting", "OutSelection"}}},
                        {"kinds.fac", {{"BVisualize", "VisInputFactors"}}},
                        {"kinds.fac", below("ATruncation", "Truncation")},
                        {"kinds.fac", below("BVisualize", "Graphics")},
                        {"stein.fac", below("BCorrelate", "Correlation")},
                        {"tree.fac", {list.front(), {"BCorrelate", "Correlation"}, {"TrCorrelation", "CorrVal"}}},
                        {"mixed.fac", {{"BSpecify", "Fast"}, {"BNewGroup", "selGroup"}}, 4}};
  const char* const methods[] = {"Random", "Latin", "Fixed", "Morris", "Fast", "LpTau", "Sobol"};
  for (int i = 0; i < 7; ++i) rows.push_back({"mixed.fac", {{"BSpecify", methods[i]}}, i, i % kWays});
  rows.push_back({"matrix.fac", {{"BSpecify", "Replicated Latin Hypercube"}}, 2});
  FactorList kinds;
  std::string problem;
  ASSERT_TRUE(loadFactorFile(test::goldenPath("kinds.fac"), kinds, problem)) << problem;
  for (int i = 0; i < kinds.factorCount(); ++i)
    rows.push_back({"kinds.fac", below("BModify", definitionKind(kinds.factor(i).typeName).name), i, i % kWays});

  display_.keepIn(QString::fromStdString(file("desktop.ini")));
  PMainPanel main(display_, "PMainPanel", "Tarvex", directory_.path());
  int left = 0;
  std::function<void(QWidget&, const Row&, std::size_t, int)> visit = [&](QWidget& window, const Row& row,
                                                                          std::size_t depth, int leaving) {
    disturb(window);
    if (auto* const all = window.findChild<QListWidget*>("SlMethods")) all->setCurrentRow(row.selected);
    if (auto* const grid = window.findChild<TableView*>("MaFactors")) grid->selectRow(row.selected);
    if (depth < row.way.size()) {
      dialogs_.texts = {"group"};
      whenShown(row.way[depth].second, [&, depth](QWidget& next) { visit(next, row, depth + 1, leaving); });
      open(window, row.way[depth].first);
    }
    leave(window, depth == row.way.size() ? leaving : kCancel);
    ++left;
  };
  std::string shown;
  std::string before;
  for (const Row& row : rows)
    for (int leaving = 0; leaving < kWays; ++leaving) {
      if (row.leaving != -1 && row.leaving != leaving) continue;
      SCOPED_TRACE(std::string(row.factors) + ' ' + row.way.back().second + std::to_string(leaving));
      if (shown != row.factors) {
        PrepSettings settings;
        ASSERT_TRUE(loadFactorFile(test::goldenPath(row.factors), settings.factors, problem)) << problem;
        settings.sampler = makeSampler(kLatin);
        settings.sampleFile = file("x.sam");
        main.acceptPrep(std::move(settings), "factors");
        shown = row.factors;
        before = bytes(main);
      }
      left = 0;
      whenShown("PrepMain", [&](QWidget& window) { visit(window, row, 0, leaving); });
      main.call("configure");
      EXPECT_EQ(static_cast<std::size_t>(left), row.way.size() + 1) << testing::PrintToString(takeShown());
      EXPECT_EQ(bytes(main), before);
    }
}

}  // namespace
}  // namespace tarvex
