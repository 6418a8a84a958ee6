#include <QDir>
#include <QHelpContentWidget>
#include <QHelpIndexWidget>
#include <QHelpLink>
#include <QListWidget>
#include <QTabWidget>
#include <QTreeView>
#include <QXmlStreamReader>
#include <set>

#include "app/DemoCases.h"
#include "panels/MainPanelFixture.h"
#include "panels/help/HelpCollection.h"
#include "panels/help/PHelp.h"
#include "panels/help/PHelpViewer.h"
#include "panels/help/PQuickHelp.h"
#include "panels/help/hintText.h"
#include "panels/main/PLogFile.h"
#include "toolkit/HelpBrowser.h"

namespace tarvex {
namespace {

const QString kShare = TARVEX_BUILT_SHARE;
const QString kHelp = kShare + "/Tarvex/help";

QStringList pageNames() {
  return QDir(kHelp).entryList({"*.html"}, QDir::Files);
}

// What a page refers to, and what can be referred to in it.
struct Marks {
  QStringList references;
  std::set<QString> ids;
};

Marks marksOf(const QString& page) {
  Marks marks;
  QXmlStreamReader reader(QByteArray::fromStdString(test::readFile((kHelp + '/' + page).toStdString())));
  while (!reader.atEnd()) {
    if (reader.readNext() != QXmlStreamReader::StartElement) continue;
    for (const QXmlStreamAttribute& attribute : reader.attributes()) {
      const QString value = attribute.value().toString();
      if (attribute.name() == QLatin1String("id")) marks.ids.insert(value);
      if (attribute.name() == QLatin1String("src") || attribute.name() == QLatin1String("href"))
        marks.references << value;
      if (attribute.name() == QLatin1String("src")) marks.references << QString(value).replace(".png", "@2x.png");
    }
  }
  EXPECT_FALSE(reader.hasError()) << page.toStdString() << ": " << reader.errorString().toStdString();
  return marks;
}

class Help : public testing::Test {
 protected:
  Help() { display_.appendToSearchPath(kShare + "/Tarvex/TarvexPanels"); }

  std::unique_ptr<PHelpViewer> makeViewer() {
    auto viewer = std::make_unique<PHelpViewer>(display_, cache());
    EXPECT_TRUE(viewer->problems().isEmpty()) << viewer->problems().join('\n').toStdString();
    return viewer;
  }
  QString cache() const { return QString::fromStdString(directory_.file("cache")); }
  static QString shown(PHelpViewer& viewer) { return viewer.gadget<HelpBrowser>("TbPage")->source().fileName(); }

  test::TempDirectory directory_;
  test::ScriptedDialogs dialogs_;
  Display display_;
};

TEST_F(Help, EveryReferenceOfEveryPageLeadsSomewhere) {
  ASSERT_GT(pageNames().size(), 30);
  std::map<QString, Marks> pages;
  for (const QString& name : pageNames()) pages[name] = marksOf(name);
  for (const auto& [name, marks] : pages)
    for (const QString& reference : marks.references) {
      const QString file = reference.startsWith('#') ? name : reference.section('#', 0, 0);
      const QString part = reference.section('#', 1);
      EXPECT_TRUE(QFile::exists(kHelp + '/' + file)) << name.toStdString() << ": " << reference.toStdString();
      EXPECT_TRUE(part.isEmpty() || pages[file].ids.count(part) == 1)
          << name.toStdString() << ": " << reference.toStdString();
    }
}

TEST_F(Help, EverythingThatIsAskedForHasItsPageAndItsPlace) {
  const HelpCollection help(kHelp, cache());
  ASSERT_EQ(help.problem(), "");
  QStringList topics;
  for (const QString& panel : QDir(kShare).entryList({"*"}, QDir::Dirs | QDir::NoDotAndDotDot))
    for (const QString& folder : QDir(kShare + '/' + panel).entryList({"*Panels"}, QDir::Dirs))
      for (const QString& file : QDir(kShare + '/' + panel + '/' + folder).entryList({"*.ui"}))
        topics << file.chopped(3);
  ASSERT_GT(topics.size(), 7);
  for (const QString& topic : topics) EXPECT_TRUE(help.page(topic).isValid()) << "no page " << topic.toStdString();
  EXPECT_FALSE(help.page("none").isValid());
  for (const DemoCase& demo : kDemoCases) {
    const QString name = demo.name;
    EXPECT_EQ(marksOf("cases.html").ids.count(name), 1U) << demo.name;
    EXPECT_FALSE(display_.bitmap("../help/" + name + ".bmp").isNull()) << demo.name;
    EXPECT_EQ(hintText(display_, "../help/" + name + ".bmp").isEmpty(), !demo.canRun) << demo.name;
  }
  for (const QString& panel : PHelp::panelsWithHint()) {
    const auto hint = PHelp::hintOf(display_, panel, nullptr);
    EXPECT_FALSE(hint->gadget<QLabel>("IcText")->pixmap().isNull()) << panel.toStdString();
    EXPECT_FALSE(hint->gadget<QLabel>("TText")->text().isEmpty()) << panel.toStdString();
    EXPECT_TRUE(help.page(hint->helpTopic()).isValid()) << panel.toStdString();
  }
  EXPECT_EQ(PHelp::hintOf(display_, "PMainPanel", nullptr), nullptr);
  EXPECT_EQ(PHelp::hintOf(display_, "PRepLatin", nullptr)->gadget<QLabel>("MlTitle")->text(),
            "Pratictioner's Hint. rep Latin");
  PQuickHelp quick(display_, nullptr);
  for (int method = 0; method < 8; ++method) {
    quick.showMethod(method);
    EXPECT_TRUE(quick.isVisible());
    EXPECT_FALSE(quick.gadget<QLabel>("IcText")->pixmap().isNull()) << method;
    EXPECT_FALSE(quick.gadget<QLabel>("TText")->text().isEmpty()) << method;
  }
  quick.showMethod(-1);
  EXPECT_FALSE(quick.isVisible());
}

TEST_F(Help, ContentsAndIndexHoldEveryPageAndEveryEntryLeadsToOne) {
  const HelpCollection help(kHelp, cache());
  ASSERT_EQ(help.problem(), "");
  QHelpContentModel* const contents = help.engine()->contentModel();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !contents->isCreatingContents() && contents->rowCount() > 0; }));
  std::set<QString> left;
  for (const QString& page : pageNames()) left.insert(page);
  const std::function<void(const QModelIndex&)> visit = [&](const QModelIndex& parent) {
    for (int row = 0; row < contents->rowCount(parent); ++row) {
      const QModelIndex index = contents->index(row, 0, parent);
      left.erase(contents->contentItemAt(index)->url().fileName());
      visit(index);
    }
  };
  visit({});
  EXPECT_TRUE(left.empty()) << left.begin()->toStdString();
  QHelpIndexModel* const index = help.engine()->indexModel();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !index->isCreatingIndex() && index->rowCount() > 0; }));
  std::set<QString> unindexed;
  for (const QString& page : pageNames()) unindexed.insert(page);
  for (const QString& keyword : index->stringList()) {
    const QList<QHelpLink> links = help.engine()->documentsForKeyword(keyword);
    ASSERT_EQ(links.size(), 1) << keyword.toStdString() << " leads to several pages";
    const QUrl url = links.first().url;
    unindexed.erase(url.fileName());
    EXPECT_TRUE(!url.hasFragment() || marksOf(url.fileName()).ids.count(url.fragment()) == 1) << keyword.toStdString();
  }
  EXPECT_TRUE(unindexed.empty()) << unindexed.begin()->toStdString();
}

TEST_F(Help, TheViewerFindsGoesBackAndStaysInStep) {
  const auto viewer = makeViewer();
  viewer->serve(HelpCommand::Topic, "morris");
  EXPECT_EQ(shown(*viewer), "morris.html");
  viewer->serve(HelpCommand::Topic, "cases#LevelE");
  auto* const browser = viewer->gadget<HelpBrowser>("TbPage");
  EXPECT_EQ(browser->source().fragment(), "LevelE");
  viewer->call("back");
  EXPECT_EQ(shown(*viewer), "morris.html");
  viewer->call("forward");
  EXPECT_EQ(shown(*viewer), "cases.html");
  viewer->serve(HelpCommand::Topic, "PNone");
  EXPECT_EQ(shown(*viewer), "PMainPanel.html");
  EXPECT_EQ(viewer->gadget<QLabel>("MlStatus")->text(), "There is no page on PNone.");
  // Found: what begins with all of the words; what a user types is no query language.
  viewer->serve(HelpCommand::Search, {});
  auto* const list = viewer->gadget<QListWidget>("LwResults");
  auto* const field = viewer->gadget<QLineEdit>("TSearch");
  const auto found = [&](const QString& text) {
    QStringList titles;
    field->setText(text);
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return list->count() > 0 || viewer->gadget<QLabel>("MlResults")->text().startsWith("No page"); }));
    for (int row = 0; row < list->count(); ++row) titles << list->item(row)->text();
    list->clear();
    viewer->gadget<QLabel>("MlResults")->clear();
    return titles;
  };
  ASSERT_TRUE(QTest::qWaitFor([&] { return found("elementary effe").contains("Morris"); }));
  EXPECT_FALSE(found("elementary effe").contains("Random sampling"));
  EXPECT_TRUE(found("\"trajectories\" (Morris:").contains("Morris"));
  EXPECT_TRUE(found("qwertz").isEmpty());
  viewer->serve(HelpCommand::Topic, "morris");
  viewer->gadget<QLineEdit>("TFind")->setText("SCREENING");
  viewer->call("findText");
  EXPECT_EQ(viewer->gadget<QLabel>("MlStatus")->text(), "SCREENING isn't on this page.");
  viewer->gadget<QLineEdit>("TFind")->setText("TRAJECTORY");
  viewer->call("findText");
  EXPECT_EQ(browser->textCursor().selectedText(), "trajectory");
  const int first = browser->textCursor().position();
  QTest::keyClick(viewer->gadget<QLineEdit>("TFind"), Qt::Key_Return);
  EXPECT_GT(browser->textCursor().position(), first);
  QTest::keyClick(viewer->gadget<QLineEdit>("TFind"), Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(browser->textCursor().position(), first);
}

TEST_F(Help, WhatIsMissingIsSaidAndThePagesAreShown) {
  const QString share = QString::fromStdString(directory_.file("share"));
  const QString help = share + "/help";
  QDir().mkpath(help);
  QFile::copy(kShare + "/Tarvex/TarvexPanels/PHelpViewer.ui", share + "/PHelpViewer.ui");
  const QString compiled = help + '/' + HelpCollection::kCompiled;
  const std::string whole = test::readFile((kHelp + '/' + HelpCollection::kCompiled).toStdString());
  const auto message = [&](const QString& topic) {
    Display display;
    QDir().mkpath(share + "/panels");
    display.appendToSearchPath(share);
    display.appendToSearchPath(share + "/panels");
    PHelpViewer viewer(display, cache());
    viewer.serve(HelpCommand::Topic, topic);
    const auto* const label = viewer.gadget<QLabel>("MlProblem");
    EXPECT_NE(label->isVisible(), viewer.gadget<QTabWidget>("TwPages")->isVisible());
    return label->isVisible() ? label->text() + " | " + shown(viewer) : shown(viewer);
  };
  EXPECT_TRUE(message("morris").startsWith("The pages of the help are missing."));
  for (const char* const page : {"PMainPanel.html", "morris.html"}) QFile::copy(kHelp + '/' + page, help + '/' + page);
  EXPECT_TRUE(message("morris").endsWith("tarvex.qch is missing. | morris.html"));
  for (const std::string& damaged : {std::string("no database"), std::string(), whole.substr(0, whole.size() / 2)}) {
    test::writeFile(compiled.toStdString(), damaged);
    EXPECT_TRUE(message("morris").endsWith("| morris.html")) << damaged.size();
  }
  test::writeFile(compiled.toStdString(), whole);
  EXPECT_EQ(message("sobol"), "sobol.html");
  // A cache that is damaged is made anew, and one that can't be made is done without.
  const QStringList kept = QDir(cache()).entryList({"help-*"}, QDir::Dirs);
  ASSERT_EQ(kept.size(), 1);
  test::writeFile((cache() + '/' + kept.first() + "/tarvex.qhc").toStdString(), "no database");
  EXPECT_EQ(message("sobol"), "sobol.html");
  QDir(cache()).removeRecursively();
  test::writeFile(cache().toStdString(), "in the way");
  EXPECT_EQ(message("sobol"), "sobol.html");
}

class HelpKey : public test::MainPanelTest {};

TEST_F(HelpKey, LandsOnThePanelsOwnPageAlsoWhileAPanelWaits) {
  Display built;
  built.appendToSearchPath(kShare + "/Tarvex/TarvexPanels");
  PHelpViewer viewer(built, QString::fromStdString(file("cache")));
  display_.setHelp([&](HelpCommand command, const QString& topic) { viewer.serve(command, topic); });
  // The toolkit's own test is content with an active parent.
  const auto becomesActive = [](const Panel& panel) {
    return QTest::qWaitFor([&] { return QApplication::activeWindow() == panel.window(); });
  };
  const auto pageOf = [&](Panel& panel) {
    EXPECT_TRUE(panel.show() && becomesActive(panel));
    QTest::keyClick(panel.window(), Qt::Key_F1);
    const QString page = viewer.gadget<HelpBrowser>("TbPage")->source().fileName();
    viewer.hide();
    return page.toStdString();
  };
  EXPECT_EQ(pageOf(*panel_), "PMainPanel.html");
  // A panel that waits for its end keeps its parent from being used, and not the help.
  PLogFile modal(display_, panel_->window());
  QTimer::singleShot(0, &modal, [&] {
    EXPECT_EQ(pageOf(modal), "PLogFile.html");
    viewer.serve(HelpCommand::Topic, "sobol");
    EXPECT_TRUE(becomesActive(viewer));
    QTest::mouseClick(viewer.gadget<QPushButton>("BBack"), Qt::LeftButton);
    EXPECT_EQ(viewer.gadget<HelpBrowser>("TbPage")->source().fileName(), "PLogFile.html");
    EXPECT_EQ(QApplication::activeModalWidget(), modal.window());
    modal.window()->close();
  });
  EXPECT_TRUE(modal.runModal());
}

}  // namespace
}  // namespace tarvex
