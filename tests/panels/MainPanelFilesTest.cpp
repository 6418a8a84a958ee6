#include <QDragEnterEvent>
#include <QLockFile>
#include <QMenu>
#include <QMimeData>
#include <QUrl>

#include "panels/MainPanelFixture.h"
#include "support/FailingCalls.h"

namespace tarvex {
namespace {

using test::goldenPath;
using Texts = std::vector<std::string>;

class MainPanelFiles : public test::MainPanelTest {
 protected:
  void SetUp() override {
    test::writeFile(file("rows.txt"), "3\n2\na\nb\n1.5 10\n2.5 20\n4 15\n");
    test::writeFile(file("damaged"), "Prep Configuration\n12 rubbish");
    for (const char* const name :
         {"damaged.sam", "damaged.spc", "damaged.psc", "damaged.imd", "damaged.fac", "damaged.dem"})
      test::writeFile(file(name), "12 rubbish");
    choose("velsFile", goldenPath("ishigami-run.spc"));
    choose("saveCfg", file("good.psc"));
    panel_->call("resetConfiguration");
    takeShown();
  }
  void drop(const std::string& path) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(panel_->window(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(panel_->window(), &event);
    QCoreApplication::processEvents();
  }
};

TEST_F(MainPanelFiles, EveryLoadByMenuArgumentAndDropTellsOnceOrShowsWhatItLoaded) {
  const struct {
    const char* callback;
    const char* chooser;
    const char* good;
    const char* damaged;
    const char* field;
    const char* heading;
  } rows[] = {
      {"oldGeneration", "Open preprocessed file: open *.sam *", "ishigami.sam", "damaged.sam", "TOldGeneration",
       "Saved Configuration"},
      {"importGeneration", "Open external file: open *", "rows.txt", "damaged.sam", "TImportFile",
       "External Configuration"},
      {"velsFile", "Open file for postprocessing: open *.spc *", "ishigami-run.spc", "damaged.spc", "TVelsFile",
       "Saved Configuration"},
      {"loadCfg", "Open Tarvex configuration: open *.psc *", "good.psc", "damaged.psc", nullptr, "Saved Configuration"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.callback);
    std::string good = file(row.good);
    if (!std::filesystem::exists(good)) good = goldenPath(row.good);
    const std::string before = description("TeConfiguration");
    const std::string titleBefore = title();
    for (const char* const name : {row.damaged, "missing.spc"}) {
      choose(row.callback, file(name));
      const Texts shown = takeShown();
      ASSERT_EQ(shown.size(), 2U) << name;
      EXPECT_EQ(shown[0], row.chooser);
      EXPECT_EQ(shown[1].substr(0, 5), "Error");
      EXPECT_NE(shown[1].find(file(name)), std::string::npos) << shown[1];
      EXPECT_EQ(description("TeConfiguration"), before);
      EXPECT_EQ(title(), titleBefore);
    }
    panel_->call(row.callback);  // cancelled
    EXPECT_EQ(takeShown(), Texts{row.chooser});
    EXPECT_EQ(description("TeConfiguration"), before);

    for (const bool dropped : {false, true}) {
      panel_->call("resetConfiguration");
      if (dropped)
        drop(good);
      else
        choose(row.callback, good);
      EXPECT_EQ(takeShown().size(), dropped ? 0U : 1U);
      EXPECT_EQ(description("TeConfiguration").substr(0, std::string(row.heading).size()), row.heading);
      if (row.field != nullptr) {
        EXPECT_EQ(field(row.field), good);
      }
    }
  }
  EXPECT_EQ(title(), "PrepVels - " + file("good.psc") + "[*]");
  for (const char* const name : {"damaged.imd", "damaged.fac", "damaged.dem", "none.fac"}) {
    const std::string before = description("TeConfiguration") + description("TeExternalConf") + title();
    drop(file(name));
    EXPECT_EQ(takeShown().size(), 1U) << name;
    EXPECT_EQ(description("TeConfiguration") + description("TeExternalConf") + title(), before) << name;
  }
  const auto factors = [&] { return controller().project().prep.factors.factorCount(); };
  const auto had = factors();
  drop(goldenPath("plant.fac"));
  EXPECT_NE(factors(), had);
  EXPECT_TRUE(takeShown().empty());
  panel_->gadget<QAction>("AUndo")->trigger();
  EXPECT_EQ(factors(), had);
  dialogs_.answers = {true};
  panel_->call("resetConfiguration");
  drop(goldenPath("plant.fac"));
  EXPECT_EQ(controller().project().prep.sampleFile, goldenPath("plant.sam"));
  EXPECT_EQ(panel_->gadget<QMenu>("MnRecent")->actions().first()->toolTip().toStdString(), file("good.psc"));
}

TEST_F(MainPanelFiles, WhatIsUnsavedIsAskedForAndSavesThatFailSaySo) {
  choose("velsFile", goldenPath("ishigami-run.spc"));
  ModelChoice choice;
  choice.setExternal("/bin/true", file("model.out"), 0);
  takeShown();
  const struct {
    const char* callback;
    const char* question;
  } rows[] = {
      {"loadCfg", "Entering demo mode:   Discard current configuration\n and load a new one ? [^Yes/^No]"},
      {"ishigami", "Entering demo mode:   Discard current configuration\n and switch to demo mode ? [^Yes/^No]"},
      {"resetConfiguration", "Warning:   Discard current configuration ? [^Yes/^No]"},
      {"terminate", "Warning:   Discard current configuration ? [^Yes/^No]"}};
  for (const auto& [callback, question] : rows) {
    SCOPED_TRACE(callback);
    ASSERT_TRUE(panel_->acceptModel(choice, "model"));
    panel_->window()->show();
    panel_->call(callback);
    EXPECT_EQ(takeShown(), Texts{question});
    EXPECT_TRUE(controller().modified() && panel_->window()->isVisible());
  }
  EXPECT_TRUE(panel_->window()->isWindowModified());
  choose("saveCfg", "/proc/none/a.psc");
  EXPECT_EQ(takeShown(), (Texts{"Save current configuration: save *.psc *",
                                "Write error:   Error writing output file\n /proc/none/a.psc\n/proc/none/a.psc: "
                                "No such file or directory"}));
  choose("saveCfg", file("b.psc"));
  EXPECT_EQ(title(), "Tarvex - " + file("b.psc") + "[*]");
  EXPECT_FALSE(panel_->window()->isWindowModified());
  panel_->call("quickSave");
  EXPECT_EQ(takeShown().size(), 1U);
  panel_->call("terminate");
  EXPECT_FALSE(panel_->window()->isVisible());
  EXPECT_TRUE(takeShown().empty());
}

TEST_F(MainPanelFiles, ALaunchRequestOpensWhatItNames) {
  test::writeFile(file("Tarvex.ini"), "Tarvex sample file: " + goldenPath("ishigami.sam") + "\nExternal sample file:" +
                                          file("no.txt") + "\nInternal model: " + goldenPath("ishigami.imd") + "\n");
  panel_->readLaunchRequest();
  const Texts shown = takeShown();
  ASSERT_EQ(shown.size(), 1U);
  EXPECT_EQ(shown[0].rfind("Error: Error reading external samples file", 0), 0U);
  EXPECT_EQ(field("TOldGeneration"), goldenPath("ishigami.sam"));
  EXPECT_EQ(text("MlPrepVels"), "Internal model selection");
  EXPECT_EQ(description("TeExternalConf").substr(0, 26), "Internal model executable:");
  EXPECT_FALSE(controller().modified());
  test::writeFile(file("Tarvex.ini"), "External model output file: out.txt\n");
  panel_->readLaunchRequest();
  EXPECT_NE(description("TeExternalConf").find("   No model selected"), std::string::npos);
}

TEST_F(MainPanelFiles, UnsavedChangesOutliveTheProgram) {
  const auto change = [&](const std::string& executable) {
    ModelChoice choice;
    choice.setExternal(executable, file("model.out"), 0);
    ASSERT_TRUE(panel_->acceptModel(choice, "model"));
    panel_->saveCopyNow();
  };
  // As if it were killed: the copy stays, nobody locks it.
  const auto restart = [&](const std::string& copy) {
    std::filesystem::copy_file(copy, file("kept"), std::filesystem::copy_options::overwrite_existing);
    panel_.reset();
    std::filesystem::rename(file("kept"), copy);
    panel_ = make();
  };
  choose("loadCfg", file("good.psc"));
  const std::string copy = file(".good.psc.autosave");
  EXPECT_FALSE(std::filesystem::exists(copy));
  change("/bin/first");
  restart(copy);
  dialogs_.answers = {true};
  takeShown();
  panel_->offerRecovery();
  const Texts shown = takeShown();
  ASSERT_EQ(shown.size(), 1U);
  EXPECT_NE(shown[0].find("before the last changes were saved to\n" + file("good.psc")), std::string::npos) << shown[0];
  EXPECT_EQ(controller().project().model.choice.executable, "/bin/first");
  EXPECT_EQ(controller().project().fileName, file("good.psc"));
  EXPECT_TRUE(controller().modified());
  panel_->call("quickSave");
  EXPECT_FALSE(std::filesystem::exists(copy));

  change("/bin/second");
  restart(copy);
  panel_->offerRecovery();  // no: kept aside
  EXPECT_TRUE(std::filesystem::exists(copy + "-1.psc"));
  EXPECT_EQ(controller().project().model.choice.executable, "/bin/first");
  EXPECT_FALSE(controller().modified());
}

TEST_F(MainPanelFiles, ASecondProgramIsTold) {
  QLockFile other(QString::fromStdString(file(".good.psc.lock")));
  ASSERT_TRUE(other.tryLock(0));
  choose("loadCfg", file("good.psc"));
  const Texts shown = takeShown();
  ASSERT_EQ(shown.size(), 2U);
  EXPECT_NE(shown[1].find("is open in another Tarvex: process " + std::to_string(::getpid()) + " on "),
            std::string::npos)
      << shown[1];
  EXPECT_EQ(controller().project().fileName, ProjectConfiguration::kNoFile);
  other.unlock();
}

// A full disk at the copy of what isn't saved: the copy before stays, the user is told once, and saving works again
// when there is room.
TEST_F(MainPanelFiles, AFullDiskLeavesTheCopyBeforeAndIsTold) {
  const auto change = [&](const std::string& executable) {
    ModelChoice choice;
    choice.setExternal(executable, file("model.out"), 0);
    ASSERT_TRUE(panel_->acceptModel(choice, "model"));
  };
  choose("loadCfg", file("good.psc"));
  change("/bin/first");
  panel_->saveCopyNow();
  const std::string copy = file(".good.psc.autosave");
  const std::string before = test::readFile(copy);
  takeShown();
  {
    test::FailingCalls full;
    full.fail(test::FailingCalls::kWrite, 1);
    change("/bin/second");
    panel_->saveCopyNow();
    EXPECT_TRUE(text("MlPrepVels").startsWith("No copy of unsaved changes can be kept: "));
    EXPECT_TRUE(text("MlPrepVels").contains("No space left on device")) << text("MlPrepVels").toStdString();
    EXPECT_EQ(test::readFile(copy), before);
    panel_->call("monteCarlo");
    panel_->saveCopyNow();
    EXPECT_TRUE(text("MlPrepVels").startsWith("New configuration")) << "told once";
    EXPECT_TRUE(takeShown().empty());
    panel_->call("quickSave");
    EXPECT_EQ(takeShown().size(), 1U);
    // The flag of unsaved changes is gone with the failed save; the copy isn't.
    EXPECT_FALSE(controller().modified());
    EXPECT_EQ(test::readFile(copy), before);
  }
  panel_->saveCopyNow();
  panel_->call("terminate");
  EXPECT_TRUE(std::filesystem::exists(copy));
  panel_ = make();
  dialogs_.answers = {true};
  choose("loadCfg", file("good.psc"));
  EXPECT_EQ(controller().project().model.choice.executable, "/bin/first");
  EXPECT_TRUE(controller().modified());
  panel_->call("quickSave");
  EXPECT_FALSE(std::filesystem::exists(copy) || controller().modified());
}

// Nothing can be kept, no picture is found, and in the end no panel file: the program says so and goes on, or doesn't
// begin.
TEST_F(MainPanelFiles, AMainDirectoryThatCantBeWrittenAndMissingFilesAreToldAndNoMore) {
  panel_.reset();
  Display bare;
  std::filesystem::create_directory(file("panels"));
  for (const auto& entry : std::filesystem::directory_iterator(TARVEX_SHARE "/Tarvex/TarvexPanels"))
    std::filesystem::copy(entry.path(), std::filesystem::path(file("panels")) / entry.path().filename());
  bare.appendToSearchPath(QString::fromStdString(file("panels")));
  bare.keepIn("/proc/none/desktop.ini");
  {
    PMainPanel unkept(bare, "PMainPanel", "Tarvex", "/proc/none");
    EXPECT_TRUE(unkept.show());
    unkept.openFile(QString::fromStdString(goldenPath("ishigami.sam")));
    ModelChoice choice;
    choice.setExternal("/bin/true", file("model.out"), 0);
    ASSERT_TRUE(unkept.acceptModel(choice, "model"));
    EXPECT_TRUE(takeShown().empty());
    unkept.saveCopyNow();
    EXPECT_EQ(
        unkept.gadget<QLabel>("MlPrepVels")->text(),
        "No copy of unsaved changes can be kept: no lock can be made beside the project or in the main directory");
    EXPECT_FALSE(unkept.gadget<QPushButton>("BStart")->text().isEmpty());
  }
  test::writeFile(file("panels/PAbout.ui"), "<ui version=\"4.0\"><widget");
  PMainPanel whole(bare, "PMainPanel", "Tarvex", directory_.path());
  whole.call("AboutTarvex");
  EXPECT_NE(takeShown().at(0).find("PAbout.ui: the file is damaged"), std::string::npos);
  std::filesystem::remove(file("panels/PMainPanel.ui"));
  PMainPanel none(bare, "PMainPanel", "Tarvex", directory_.path());
  EXPECT_FALSE(none.show());
  EXPECT_NE(takeShown().at(0).find("There is no file PMainPanel.ui in " + file("panels")), std::string::npos);
}

}  // namespace
}  // namespace tarvex
