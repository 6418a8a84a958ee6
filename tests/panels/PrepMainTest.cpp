#include <QListWidget>

#include "app/RunController.h"
#include "factors/FactorFiles.h"
#include "panels/PrepFixture.h"
#include "panels/main/PMainPanel.h"
#include "panels/prep/POutputSelection.h"
#include "panels/prep/PPrepMain.h"
#include "toolkit/TableView.h"

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
  }
  std::string methods() {
    const auto* const list = panel_->gadget<QListWidget>("SlMethods");
    std::string names;
    for (int i = 0; i < list->count(); ++i)
      names += list->item(i)->text().toStdString() + (i + 1 < list->count() ? ", " : "");
    return names;
  }
  std::string label(const char* name) { return panel_->gadget<QLabel>(name)->text().toStdString(); }
  bool sensitive(const char* name) { return panel_->gadget<QWidget>(name)->isEnabled(); }
  // Sets a method whose panel has that name; one that asks for a number of runs gets some.
  void choose(const char* method, const char* window) {
    whenShown(window, [](QWidget& settings) {
      if (settings.findChild<QLineEdit*>("NExecution") != nullptr) type(settings, {{"NExecution", "10"}});
      click(settings, "BOk");
    });
    auto* const list = panel_->gadget<QListWidget>("SlMethods");
    for (int i = 0; i < list->count(); ++i)
      if (list->item(i)->text() == method) list->setCurrentRow(i);
    panel_->call("specify");
    takeShown();
  }

  std::unique_ptr<PPrepMain> panel_;
};

TEST_F(PrepMain, OffersTheMethodsThatFactorsAndCorrelationAllow) {
  const struct {
    CorrelationMode mode;
    int factors;
    std::string methods;
  } rows[] = {
      {kNoCorrelation, 0, ""},
      {kNoCorrelation, 371, "Random, Latin Hypercube, Fixed samples, Morris, Fast"},
      {kImanConover, 2, "Random, Latin Hypercube, Replicated Latin Hypercube, Fixed samples"},
  };
  for (const auto& row : rows) {
    open(*normals(row.factors, row.mode));
    EXPECT_EQ(methods(), row.methods) << row.mode << ' ' << row.factors;
    EXPECT_EQ(sensitive("SlMethods") && sensitive("BModify") && sensitive("BVisualize"), row.factors > 0);
    EXPECT_FALSE(sensitive("BSpecify") || sensitive("BOk"));
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
  choose("QuasiRandom LpTau", "LpTau");
  EXPECT_EQ(label("MlMethodInfo"), "Currently selected: QuasiRandom LpTau");
  EXPECT_FALSE(sensitive("BOk"));
  EXPECT_EQ(label("MlMessage"), "Choose the file that the sample is written to.");
  dialogs_.files = {std::string(5000, 'x') + ".sam", file("x.sam")};
  const Texts shown = shownBy(*panel_, "outputSelection");
  ASSERT_EQ(shown.size(), 3U);
  EXPECT_EQ(shown[0] + shown[2], "Output file for sample: save *.sam *.*Output file for sample: save *.sam *.*");
  EXPECT_TRUE(sensitive("BOk"));

  dialogs_.files = {file("none.fac")};
  const Texts failed = shownBy(*panel_, "inputSelection");
  ASSERT_EQ(failed.size(), 2U);
  EXPECT_EQ(failed[1].rfind("Error: Error reading factors file\n", 0), 0U);
  EXPECT_TRUE(sensitive("BOk"));
  std::string problem;
  ASSERT_TRUE(saveFactorFile(file("y.fac"), *normals(3), problem)) << problem;
  dialogs_.files = {file("y.fac")};
  EXPECT_EQ(shownBy(*panel_, "inputSelection"), Texts{"Open list of factors file: open *.fac *.*"});
  EXPECT_EQ(label("MlMethodInfo"), "No Method");
  EXPECT_FALSE(sensitive("BOk"));

  whenShown("InputFactors", [](QWidget& window) { click(window, "BOk"); });
  choose("Random", "Random");
  EXPECT_TRUE(sensitive("BOk"));
  panel_->call("modify");
  EXPECT_EQ(label("MlSourceInfo") + label("MlMethodInfo"), "Using factors from panelNo Method");
  EXPECT_FALSE(sensitive("BOk"));
  whenShown("InputFactors", [](QWidget& window) { click(window, "BOk"); });
  panel_->call("create");
  EXPECT_EQ(label("MlSourceInfo") + methods(), "No factors");
  EXPECT_FALSE(sensitive("BModify") || sensitive("FMethods"));
}

TEST_F(PrepMain, TheFormatIsTakenAndDemonstrationsAreForReading) {
  POutputSelection empty(display_, std::make_shared<FactorList>(), 0, nullptr);
  EXPECT_EQ(empty.gadget<TableView>("MaFactors")->model()->rowCount(), 0);
  open(*normals(6));
  whenShown("OutSelection", [](QWidget& window) {
    auto* const view = window.findChild<TableView*>("MaFactors");
    click(window, "BScrollDown");
    click(window, "BScrollDown");
    EXPECT_EQ(view->currentIndex().row(), 1);
    click(window, "BScrollUp");
    EXPECT_EQ(view->currentIndex().row(), 0);
    window.findChild<QComboBox*>("SelOrder")->setCurrentIndex(1);
    click(window, "BOk");
  });
  panel_->call("setting");
  EXPECT_EQ(panel_->takeSettings().order, 1);

  open(*normals(2), true);
  EXPECT_EQ(panel_->window()->windowTitle(), "Prep - Main Panel (Demo mode)");
  for (const char* const name : {"BCreate", "BSetting", "BInputSelection", "BOutputSelection"})
    EXPECT_FALSE(sensitive(name)) << name;
  EXPECT_TRUE(sensitive("BModify") && sensitive("BVisualize"));
}

TEST_F(PrepMain, AnEmptyProjectGetsFactorsMethodAndFileAndACancelLeavesIt) {
  display_.keepIn(QString::fromStdString(file("desktop.ini")));
  PMainPanel main(display_, "PMainPanel", "Tarvex", directory_.path());
  const auto truncate = [this](QWidget& factors, const char* left) {
    whenShown("Truncation", [left](QWidget& window) {
      type(window, {{"NLeftTrunc", left}});
      click(window, "BOk");
    });
    factors.findChild<QAction*>("ATruncation")->trigger();
  };
  whenShown("PrepMain", [&](QWidget& window) {
    whenShown("InputFactors", [&](QWidget& factors) {
      whenShown("Normal Distribution", [](QWidget& normal) {
        type(normal, {{"TName", "flow"}, {"NMean", "10"}});
        click(normal, "BOk");
      });
      click(factors, "BAdd");
      truncate(factors, "0.05");
      click(factors, "BOk");
    });
    click(window, "BCreate");
    window.findChild<QListWidget*>("SlMethods")->setCurrentRow(0);
    whenShown("Random", [](QWidget& settings) {
      type(settings, {{"NExecution", "10"}});
      click(settings, "BOk");
    });
    click(window, "BSpecify");
    dialogs_.files = {file("x.sam")};
    click(window, "BOutputSelection");
    click(window, "BOk");
  });
  main.call("configure");
  const PrepConfiguration& prep = main.controller().project().prep;
  ASSERT_TRUE(main.controller().project().hasPrep);
  EXPECT_EQ(described(prep.factors), "flow Normal 10, 1, 0.001, 0.999");
  EXPECT_EQ(prep.sampler->methodName + ' ' + prep.sampleFile, "Random " + file("x.sam"));
  main.call("undo");
  EXPECT_FALSE(main.controller().project().hasPrep);
  EXPECT_EQ(TruncatedDistribution::defaultLeftTruncation(), 0.001);
  main.call("redo");
  EXPECT_EQ(TruncatedDistribution::defaultLeftTruncation(), 0.05);

  const auto bytes = [&] {
    EXPECT_EQ(main.controller().saveProjectAs(file("p.psc")), Outcome::Done);
    return test::readFile(file("p.psc"));
  };
  const std::string before = bytes();
  std::string problem;
  ASSERT_TRUE(TruncatedDistribution::setDefaultTruncations(0.2, 0.8));
  ASSERT_TRUE(saveFactorFile(file("y.fac"), *normals(3), problem)) << problem;
  ASSERT_TRUE(TruncatedDistribution::setDefaultTruncations(0.05, 0.999));
  whenShown("PrepMain", [&](QWidget& window) {
    EXPECT_EQ(window.findChild<QLabel*>("MlMethodInfo")->text(), "Currently selected: Random");
    for (const char* const end : {"BCancel", "BOk"}) {
      whenShown("InputFactors", [&](QWidget& factors) {
        whenShown("Normal Distribution", [](QWidget& normal) { click(normal, "BCancel"); });
        click(factors, "BModify");
        truncate(factors, "0.3");
        auto* const grid = factors.findChild<TableView*>("MaFactors");
        EXPECT_TRUE(grid->model()->setData(grid->model()->index(0, 0), "other"));
        dialogs_.answers = {true};
        dialogs_.files = {file("y.fac")};
        click(factors, "BOpen");
        click(factors, end);
      });
      click(window, "BModify");
    }
    dialogs_.files = {file("y.fac")};
    click(window, "BInputSelection");
    click(window, "BCancel");
  });
  main.call("configure");
  EXPECT_EQ(bytes(), before);
  // A file of factors brings its own defaults, which go with it.
  main.openFile(QString::fromStdString(file("y.fac")));
  EXPECT_EQ(TruncatedDistribution::defaultLeftTruncation(), 0.2);
  main.call("undo");
  EXPECT_EQ(bytes(), before);
  takeShown();
}

}  // namespace
}  // namespace tarvex
