#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <filesystem>
#include <memory>

#include "app/RunController.h"
#include "base/RememberedDirectories.h"
#include "panels/main/PMainPanel.h"
#include "qt/ScriptedDialogs.h"
#include "support/Golden.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"
#include "toolkit/Display.h"

namespace tarvex::test {

// The real main panel over a main directory of its own, driven by the names of its gadgets.
class MainPanelTest : public testing::Test {
 protected:
  MainPanelTest() {
    RememberedDirectories::forget();
    std::filesystem::create_directory_symlink(TARVEX_DEMO, file("Demo"));
    display_.appendToSearchPath(TARVEX_SHARE "/Tarvex/TarvexPanels");
    display_.keepIn(QString::fromStdString(file("desktop.ini")));
    panel_ = make();
  }
  ~MainPanelTest() override {
    panel_.reset();
    RememberedDirectories::forget();
  }

  std::unique_ptr<PMainPanel> make() {
    return std::make_unique<PMainPanel>(display_, "PMainPanel", "Tarvex: start", directory_.path());
  }
  std::string file(const std::string& name) const { return directory_.file(name); }
  RunController& controller() { return panel_->controller(); }
  QString text(const char* label) { return panel_->gadget<QLabel>(label)->text(); }
  std::string field(const char* name) { return panel_->gadget<QLineEdit>(name)->text().toStdString(); }
  std::string description(const char* name) {
    return panel_->gadget<QPlainTextEdit>(name)->toPlainText().toStdString();
  }
  std::string title() const { return panel_->window()->windowTitle().toStdString(); }
  void source(int index) {
    panel_->gadget<QComboBox>("SelSamplesSource")->setCurrentIndex(index);
    panel_->call("changeSel");
  }
  // A chooser's file for the callback, and the callback.
  void choose(const char* callback, const std::string& path) {
    dialogs_.files = {path};
    panel_->call(callback);
  }
  std::vector<std::string> takeShown() { return std::exchange(dialogs_.shown, {}); }
  // Clicks the button with that callback as soon as the window is shown; nothing when that never happens.
  void clickWhenShown(const QString& window, const QString& callback) {
    auto* const timer = new QTimer(panel_->window());
    QObject::connect(timer, &QTimer::timeout, timer, [=] {
      for (QWidget* const top : QApplication::topLevelWidgets()) {
        if (top->objectName() != window || !top->isVisible()) continue;
        timer->deleteLater();
        timer->stop();
        for (auto* const button : top->findChildren<QPushButton*>())
          if (button->property("callback").toString() == callback) return button->click();
      }
    });
    timer->start(1);
  }

  ScopedCurrentDirectory stay_;
  TempDirectory directory_;
  ScriptedDialogs dialogs_;
  Display display_;
  std::unique_ptr<PMainPanel> panel_;
};

}  // namespace tarvex::test
