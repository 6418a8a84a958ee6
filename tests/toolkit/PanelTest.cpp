#include "toolkit/Panel.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <memory>

#include "qt/ScriptedDialogs.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"
#include "toolkit/Display.h"
#include "toolkit/TableView.h"
#include "toolkit/menuItem.h"

namespace tarvex {
namespace {

using test::ScriptedDialogs;

constexpr const char* kSample = R"(<?xml version="1.0" encoding="UTF-8"?>
<ui version="4.0"><class>PSample</class><widget class="QMainWindow" name="PSample"><widget class="QWidget" name="centre">
 <layout class="QVBoxLayout"><item><widget class="QPushButton" name="BOk"><property name="text"><string>Accept</string></property>
  <property name="callback" stdset="0"><string>ok</string></property></widget></item>
 <item><widget class="QPushButton" name="BOther"><property name="callback" stdset="0"><string>other</string></property></widget></item>
 <item><widget class="QLineEdit" name="TName"><property name="callback" stdset="0"><string>edited</string></property></widget></item>
 <item><widget class="QComboBox" name="SelKind"><property name="callback" stdset="0"><string>chosen</string></property>
  <item><property name="text"><string>a</string></property></item><item><property name="text"><string>b</string></property></item></widget></item>
 <item><widget class="TableView" name="MaRows"/></item></layout></widget>
 <widget class="QMenuBar" name="MnMenu"><widget class="QMenu" name="first"><property name="title"><string>First</string></property>
  <addaction name="one"/><addaction name="separator"/><addaction name="two"/></widget><addaction name="first"/></widget>
 <action name="one"><property name="text"><string>One</string></property></action>
 <action name="two"><property name="text"><string>Two</string></property><property name="callback" stdset="0"><string>two</string></property></action>
</widget></ui>)";

class PanelTest : public testing::Test {
 protected:
  PanelTest() {
    display_.appendToSearchPath(QString::fromStdString(directory_.path()));
    test::writeFile(directory_.file("PSample.ui"), kSample);
  }

  test::TempDirectory directory_;
  Display display_;
};

// A panel of which a test says what it fetches and implements.
class SamplePanel : public Panel {
 public:
  explicit SamplePanel(const Display& display, const QString& file = "PSample")
      : Panel(display, file, "sample", "A sample") {
    registerCallbacks(
        {{"ok", [this] { end(true); }},
         {"edited", [this] { log.push_back("edited " + gadget<QLineEdit>("TName")->text().toStdString()); }},
         {"chosen",
          [this] { log.push_back("chosen " + std::to_string(gadget<QComboBox>("SelKind")->currentIndex())); }},
         {"two", [this] { log.push_back("two"); }}});
  }

  std::vector<std::string> log;
};

TEST_F(PanelTest, GadgetsCallWhatThePanelImplementsAndTheRestSaysSo) {
  SamplePanel panel(display_);
  ASSERT_TRUE(panel.show());
  QTest::keyClicks(panel.gadget<QLineEdit>("TName"), "x1");
  QTest::keyClick(panel.gadget<QComboBox>("SelKind"), Qt::Key_Down);
  panel.gadget<QAction>("two")->trigger();
  EXPECT_EQ(panel.log, (std::vector<std::string>{"edited x", "edited x1", "chosen 1", "two"}));

  testing::internal::CaptureStderr();
  panel.gadget<QPushButton>("BOther")->click();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), " sample : other method ...\n");
  EXPECT_NE(panel.gadget<TableView>("MaRows"), nullptr);
  EXPECT_TRUE(panel.problems().isEmpty());
}

TEST_F(PanelTest, AModalPanelWaitsForItsEnd) {
  SamplePanel panel(display_);
  QTimer::singleShot(0, &panel, [&] { panel.gadget<QPushButton>("BOk")->click(); });
  EXPECT_TRUE(panel.runModal());
  EXPECT_TRUE(panel.accepted());
  QTimer::singleShot(0, &panel, [&] { panel.window()->close(); });
  EXPECT_TRUE(panel.runModal());
  EXPECT_FALSE(panel.accepted());
}

TEST_F(PanelTest, WhatIsMissingIsNamedWhereThePanelWouldStand) {
  test::writeFile(directory_.file("PDamaged.ui"), "<ui version=\"4.0\"><widget class=");
  test::writeFile(
      directory_.file("PUnknown.ui"),
      "<ui version=\"4.0\"><class>X</class><widget class=\"QWidget\" name=\"x\"><widget class=\"NoSuchThing\" "
      "name=\"y\"/></widget></ui>");
  const struct {
    const char* file;
    const char* named;
  } cases[] = {{"PAbsent", "There is no file PAbsent.ui in "},
               {"PDamaged", "PDamaged.ui: the file is damaged"},
               {"PUnknown", "the class NoSuchThing isn't known"}};
  for (const auto& [file, named] : cases) {
    SCOPED_TRACE(file);
    ScriptedDialogs dialogs;
    SamplePanel panel(display_, file);
    panel.gadget<QLabel>("MlAnything")->setText("no crash");
    EXPECT_FALSE(panel.runModal());
    ASSERT_EQ(dialogs.shown.size(), 1U);
    EXPECT_NE(dialogs.shown[0].find(named), std::string::npos) << dialogs.shown[0];
    EXPECT_NE(dialogs.shown[0].find("MlAnything"), std::string::npos);
  }
  SamplePanel panel(display_);
  panel.gadget<QComboBox>("BOk");
  EXPECT_EQ(panel.problems().join(""), "gadget BOk is of another kind than QComboBox");
}

TEST_F(PanelTest, MenuItemsAreCountedWithoutSeparators) {
  SamplePanel panel(display_);
  const QMenuBar& bar = *panel.gadget<QMenuBar>("MnMenu");
  EXPECT_EQ(menuItem(bar, 0, 1), panel.gadget<QAction>("two"));
  EXPECT_EQ(menuItem(bar, 0, 2), nullptr);
  EXPECT_EQ(menuItem(bar, 1, 0), nullptr);
}

TEST_F(PanelTest, BitmapsMayBeServedByAnotherKindOfPicture) {
  test::writeFile(directory_.file("a.svg"), "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"4\" height=\"4\"/>");
  test::writeFile(directory_.file("b.bmp"), "no picture");
  EXPECT_EQ(display_.findBitmap("a.bmp").toStdString(), directory_.file("a.svg"));
  EXPECT_EQ(display_.findBitmap("b.bmp").toStdString(), directory_.file("b.bmp"));
  EXPECT_EQ(display_.findBitmap("c.gif"), QString());
  EXPECT_TRUE(display_.bitmap("b.bmp").isNull());
}

}  // namespace
}  // namespace tarvex
