#include <QTabWidget>

#include "app/RunController.h"
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
#include "toolkit/Tree.h"

namespace tarvex {
namespace {

using test::Texts;

class PrepMain : public test::PrepPanelTest<PPrepMain> {
 protected:
  void open(const FactorList& factors, const QString& from = {}, std::int32_t method = -1) {
    PrepSettings settings;
    std::string problem;
    ASSERT_TRUE(settings.factors.copyFrom(factors, problem));
    if (method >= 0) settings.sampler = makeSampler(method);
    show(std::make_unique<PPrepMain>(display_, std::move(settings), from, false, nullptr));
  }
  std::string methods() { return cells(*in<QListWidget>("SlMethods").model()); }
  // Where the factors are from, and the method.
  std::string origin() { return label("MlSourceInfo") + ", " + label("MlMethodInfo"); }
  // Sets a method; one that asks for a number of runs gets some.
  void choose(QWidget& window, const char* method, const char* panel) {
    specify(window, method, panel, [](QWidget& settings) {
      if (settings.findChild<QLineEdit*>("NExecution") != nullptr) type(settings, {{"NExecution", "10"}});
      click(settings, "BOk");
    });
  }
  // A file of factors that brings default truncations.
  std::string truncating() {
    std::string problem;
    const DefaultTruncations before;
    EXPECT_TRUE(TruncatedDistribution::setDefaultTruncations(0.2, 0.8));
    EXPECT_TRUE(saveFactorFile(file("y.fac"), *normals(3), problem)) << problem;
    before.restore();
    return file("y.fac");
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
  static void enter(QWidget& window, const char* name) {
    auto* const found = window.findChild<QObject*>(name);
    if (auto* const action = qobject_cast<QAction*>(found)) return action->trigger();
    auto* const tree = dynamic_cast<Tree*>(found);
    if (tree == nullptr) return click(window, name);
    window.findChild<QTabWidget*>("NoCorrelation")->setCurrentIndex(0);
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
};

TEST_F(PrepMain, OffersTheMethodsThatFactorsAndCorrelationAllow) {
  constexpr int kCounts[] = {0, 1, 2, 370, 371};
  const std::string plain = "Random|Latin Hypercube|Fixed samples|", latin = "Latin Hypercube|";
  const std::string replicated = "Random|Latin Hypercube|Replicated Latin Hypercube|Fixed samples|";
  const std::string all = plain + "Morris|Fast|QuasiRandom LpTau|Sobol|", latins = latin + "Replicated " + latin;
  const std::string offered[][5] = {{"", plain, plain, plain, plain},
                                    {"", plain, replicated, replicated, replicated},
                                    {"", plain + "Morris|QuasiRandom LpTau|", all, all, plain + "Morris|Fast|"},
                                    {"", latin, latins, latins, latins}};
  for (int mode = kDependenceTree; mode <= kSteinSample; ++mode)
    for (int i = 0; i < 5; ++i) {
      const auto list = normals(kCounts[i], static_cast<CorrelationMode>(mode));
      list->addFactor(makeFactor("Constant"));  // which counts for nothing
      open(*list);
      const bool some = kCounts[i] > 0;
      EXPECT_EQ(methods(), offered[mode][i]) << mode << ' ' << kCounts[i];
      EXPECT_EQ(enabled("SlMethods") && enabled("BModify") && enabled("BVisualize"), some);
      EXPECT_EQ(origin(), some ? "Using factors from panel, No Method" : "No factors, No Method");
      EXPECT_FALSE(enabled("BSpecify") || enabled("BOk"));
    }
  // A file's list can be changed although nothing of it is sampled; a method that is set is in this panel's spelling.
  for (std::int32_t method = 0; method < kMethodCount; ++method) {
    open(*normals(0), "/somewhere/x.fac", method);
    EXPECT_TRUE(enabled("BModify") && enabled("SlMethods"));
    const std::string name = method == kLpTau ? "Quasirandom Lptau" : std::string(methodNameOf(method));
    EXPECT_EQ(origin() + methods(), "Using factors from file, Currently selected: " + name);
  }
}

TEST_F(PrepMain, MethodAndFileAreAskedForAgainWhenFactorsChange) {
  open(*normals(2), "/somewhere/x.fac");
  EXPECT_EQ(field("TInputSelection"), "/somewhere/x.fac");
  choose(window(), "QuasiRandom LpTau", "LpTau");
  EXPECT_EQ(origin(), "Using factors from file, Currently selected: QuasiRandom LpTau");
  EXPECT_FALSE(enabled("BOk"));
  EXPECT_EQ(message(), "Choose the file that the sample is written to.");
  const std::string saves = "Output file for sample: save *.sam *.*",
                    opens = "Open list of factors file: open *.fac *.*";
  does("outputSelection", {saves, "Error: ...", saves}, {}, {std::string(5000, 'x') + ".sam", file("x.sam")});
  does("inputSelection", {opens, "Error: Error reading factors file\n..."}, {}, {file("none.fac")});
  EXPECT_TRUE(enabled("BOk"));
  does("inputSelection", {opens}, {}, {truncating()});
  EXPECT_EQ(TruncatedDistribution::defaultLeftTruncation(), 0.2);
  EXPECT_EQ(origin(), "Using factors from file, No Method");
  EXPECT_FALSE(enabled("BOk"));

  choose(window(), "Random", "Random");
  EXPECT_TRUE(enabled("BOk"));
  specify(window(), "Random", "Random", [](QWidget& settings) {
    EXPECT_EQ(settings.findChild<QLineEdit*>("NExecution")->text(), "10");  // as it was set
    click(settings, "BCancel");
  });
  const std::tuple<const char*, const char*, std::string> ways[] = {
      {"create", "BCancel", "Using factors from file, Currently selected: Random"},
      {"modify", "BOk", "Using factors from panel, No Method"},
      {"create", "BOk", "No factors, No Method"}};
  for (const auto& [callback, button, after] : ways) {
    whenShown("InputFactors", [name = button](QWidget& panel) { click(panel, name); });
    does(callback);
    EXPECT_EQ(origin(), after);
    EXPECT_EQ(enabled("BOk"), after.ends_with("Random"));
  }
  EXPECT_FALSE(enabled("BModify") || enabled("FMethods"));
  does("cancel");
  EXPECT_EQ(TruncatedDistribution::defaultLeftTruncation(), 0.001) << "as before the file";
}

TEST_F(PrepMain, TheFormatIsTaken) {
  POutputSelection empty(display_, std::make_shared<FactorList>(), 0, nullptr);
  EXPECT_EQ(empty.gadget<TableView>("MaFactors")->model()->rowCount(), 0);
  open(*normals(6));
  whenShown("OutSelection", [](QWidget& panel) {
    auto* const view = panel.findChild<TableView*>("MaFactors");
    for (const auto& [button, row] : {std::pair("BScrollDown", 0), {"BScrollDown", 1}, {"BScrollUp", 0}}) {
      click(panel, button);
      EXPECT_EQ(view->currentIndex().row(), row);
    }
    panel.findChild<QComboBox*>("SelOrder")->setCurrentIndex(1);
    click(panel, "BOk");
  });
  does("setting");
  whenShown("OutSelection", [](QWidget& panel) {
    panel.findChild<QComboBox*>("SelOrder")->setCurrentIndex(0);
    click(panel, "BCancel");
  });
  does("setting");
  EXPECT_EQ(panel_->takeSettings().order, 1);
}

TEST_F(PrepMain, DemonstrationsAreForReading) {
  const auto list = normals(2);
  std::vector<std::unique_ptr<Panel>> panels;
  panels.push_back(std::make_unique<PPrepMain>(display_, PrepSettings(), "", true, nullptr));
  panels.push_back(std::make_unique<PInputFactors>(display_, list, true, nullptr));
  panels.push_back(makeDefinition(display_, *makeFactor("Beta"), {list.get(), -1, true}, nullptr));
  const QStringList titles{"Prep - Main Panel (Demo mode)", "Input factors selection (Demo mode)[*]",
                           "Beta distribution (Demo mode)"};
  for (qsizetype i = 0; i < titles.size(); ++i) EXPECT_EQ(panels[i]->window()->windowTitle(), titles[i]);
  for (std::int32_t method = 0; method < kMethodCount; ++method)
    panels.push_back(makeMethodPanel(display_, method, {list.get(), nullptr, true}, nullptr));
  for (const std::string& kind : factorKinds())
    panels.push_back(makeDefinition(display_, *makeFactor(kind), {list.get(), -1, true}, nullptr));
  const QStringList reads{"ok",      "cancel", "help",   "save",      "apply",
                          "formula", "reset",  "modify", "visualize", "correlate"};  // what shows, or leaves the panel
  const auto changes = [&reads](const QObject& gadget) {
    const QString callback = gadget.property("callback").toString();
    return !callback.isEmpty() && gadget.property("enabled").toBool() && !reads.contains(callback);
  };
  for (const auto& panel : panels) {
    SCOPED_TRACE(panel->window()->windowTitle().toStdString());
    for (const QLineEdit* const field : panel->window()->findChildren<QLineEdit*>())
      EXPECT_TRUE(field->isReadOnly() || !changes(*field) || field->objectName() == "TSearch");
    for (const QComboBox* const box : panel->window()->findChildren<QComboBox*>()) EXPECT_FALSE(box->isEnabled());
    for (const QAbstractButton* const button : panel->window()->findChildren<QAbstractButton*>())
      EXPECT_FALSE(changes(*button)) << button->objectName().toStdString();
    panel->call("ok");
    EXPECT_EQ(panel->accepted(), panel == panels[0] || panel == panels[1]) << "who opened those passes it over";
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
      enter(factors, "ATruncation");
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
  main.openFile(QString::fromStdString(truncating()));
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
  };
  const auto below = [](const char* opens, const char* name) {
    return Way{{"BModify", "InputFactors"}, {opens, name}};
  };
  std::vector<Row> rows{{"kinds.fac", {{"BCreate", "InputFactors"}}},
                        {"kinds.fac", {{"BSetting", "OutSelection"}}},
                        {"kinds.fac", {{"BVisualize", "VisInputFactors"}}},
                        {"kinds.fac", below("ATruncation", "Truncation")},
                        {"kinds.fac", below("BVisualize", "Graphics")},
                        {"stein.fac", below("BCorrelate", "Correlation")},
                        {"tree.fac", below("BCorrelate", "Correlation")},
                        {"mixed.fac", {{"BSpecify", "Fast"}, {"BNewGroup", "selGroup"}}, 4}};
  rows[6].way.emplace_back("TrCorrelation", "CorrVal");
  const char* const methods[] = {"Random", "Latin", "Fixed", "Morris", "Fast", "LpTau", "Sobol"};
  for (int i = 0; i < 7; ++i) rows.push_back({"mixed.fac", {{"BSpecify", methods[i]}}, i});
  rows.push_back({"matrix.fac", {{"BSpecify", "Replicated Latin Hypercube"}}, 2});
  rows.push_back({"kinds.fac", {{"BModify", "InputFactors"}}});
  const auto kinds = golden("kinds.fac");
  for (int i = 0; i < kinds->factorCount(); ++i)
    rows.push_back({"kinds.fac", below("BModify", definitionKind(kinds->factor(i).typeName).name), i});

  display_.keepIn(QString::fromStdString(file("desktop.ini")));
  PMainPanel main(display_, "PMainPanel", "Tarvex", directory_.path());
  std::size_t left = 0;
  std::function<void(QWidget&, const Row&, std::size_t, int)> visit = [&](QWidget& window, const Row& row,
                                                                          std::size_t depth, int leaving) {
    disturb(window);
    if (auto* const all = window.findChild<QListWidget*>("SlMethods")) all->setCurrentRow(row.selected);
    if (auto* const grid = window.findChild<TableView*>("MaFactors")) grid->selectRow(row.selected);
    if (depth < row.way.size()) {
      dialogs_.texts = {"group"};
      whenShown(row.way[depth].second, [&, depth](QWidget& next) { visit(next, row, depth + 1, leaving); });
      enter(window, row.way[depth].first);
    }
    leave(window, depth == row.way.size() ? leaving : kCancel);
    ++left;
  };
  for (const Row& row : rows) {
    PrepSettings settings;
    std::string problem;
    ASSERT_TRUE(settings.factors.copyFrom(*golden(row.factors), problem));
    settings.sampler = makeSampler(kLatin);
    settings.sampleFile = file("x.sam");
    main.acceptPrep(std::move(settings), "factors");
    const std::string before = bytes(main);
    for (int leaving = 0; leaving < kWays; ++leaving) {
      SCOPED_TRACE(std::string(row.factors) + ' ' + row.way.back().second + std::to_string(leaving));
      left = 0;
      whenShown("PrepMain", [&](QWidget& window) { visit(window, row, 0, leaving); });
      main.call("configure");
      EXPECT_EQ(left, row.way.size() + 1) << testing::PrintToString(takeShown());
      EXPECT_EQ(bytes(main), before);
    }
  }
}

}  // namespace
}  // namespace tarvex
