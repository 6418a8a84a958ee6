#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <functional>

#include "base/RememberedDirectories.h"
#include "factors/FactorFiles.h"
#include "factors/FactorList.h"
#include "factors/TruncatedDistribution.h"
#include "factors/factorFields.h"
#include "factors/makeFactor.h"
#include "panels/Windows.h"
#include "qt/ScriptedDialogs.h"
#include "support/Golden.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"
#include "toolkit/Display.h"
#include "toolkit/Panel.h"
#include "toolkit/TableView.h"

namespace tarvex::test {

using Texts = std::vector<std::string>;
using Uses = std::vector<std::pair<const char*, const char*>>;  // names of gadgets, and what is done with them

constexpr const char* kAllEffects = "All first and total order effect calculation";
constexpr const char* kGroupEffects = "All first and total order effect calculation on groups";

// The panels of the pre-processor, driven by the names of their gadgets.
class PrepTest : public testing::Test {
 protected:
  PrepTest() {
    RememberedDirectories::forget();
    display_.appendToSearchPath(TARVEX_SHARE "/Tarvex/TarvexPanels");
  }
  ~PrepTest() override {
    RememberedDirectories::forget();
    EXPECT_TRUE(TruncatedDistribution::setDefaultTruncations(0.001, 0.999));
  }

  std::string file(const std::string& name) const { return directory_.file(name); }
  Texts takeShown() { return std::exchange(dialogs_.shown, {}); }
  // What is shown while the panel runs the callback.
  Texts shownBy(Panel& panel, const char* callback) {
    panel.call(callback);
    return takeShown();
  }
  // Runs the callback while dialogs answer so; of what is then shown a text that ends with "..." is the beginning.
  void step(Panel& panel, const char* callback, const Texts& expected, const std::deque<bool>& answers = {},
            const std::deque<std::string>& files = {}) {
    dialogs_.answers = answers;
    dialogs_.files = files;
    expectShown(shownBy(panel, callback), expected);
  }
  static void expectShown(Texts shown, const Texts& expected) {
    for (std::size_t i = 0; i < std::min(shown.size(), expected.size()); ++i)
      if (expected[i].ends_with("...") && shown[i].starts_with(expected[i].substr(0, expected[i].size() - 3)))
        shown[i] = expected[i];
    EXPECT_EQ(shown, expected);
  }
  static std::string label(Panel& panel, const char* name) { return panel.gadget<QLabel>(name)->text().toStdString(); }
  // The texts of a list or a table, "1 2|3 4|".
  static std::string cells(const QAbstractItemModel& model) {
    std::string text;
    for (int row = 0; row < model.rowCount(); ++row)
      for (int column = 0; column < model.columnCount(); ++column)
        text +=
            model.index(row, column).data().toString().toStdString() + (column + 1 < model.columnCount() ? ' ' : '|');
    return text;
  }
  // Texts of fields as a user types them.
  static void type(QWidget& window, const Uses& fields) {
    for (const auto& [name, text] : fields) {
      auto* const field = window.findChild<QLineEdit*>(name);
      ASSERT_NE(field, nullptr) << name;
      field->selectAll();
      QTest::keyClick(field, Qt::Key_Delete);
      QTest::keyClicks(field, text);
    }
  }
  // Fields are typed into, entries of lists chosen by keys, buttons pressed.
  static void use(QWidget& window, const Uses& uses) {
    for (const auto& [name, text] : uses) {
      auto* const list = window.findChild<QComboBox*>(name);
      if (list == nullptr) {
        window.findChild<QAbstractButton*>(name) != nullptr ? press(window, name) : type(window, {{name, text}});
        continue;
      }
      list->setFocus();
      QTest::keyClick(list, Qt::Key_Home);
      for (int i = 0; i < list->count() && list->currentText() != text; ++i) QTest::keyClick(list, Qt::Key_Down);
      EXPECT_EQ(list->currentText(), text) << name;
    }
  }
  // Keys into what has the keyboard, which a key may change.
  static void keys(const QString& text) {
    for (const QChar key : text) QTest::keyClick(QApplication::focusWidget(), key.toLatin1());
  }
  static void click(QWidget& window, const char* button) {
    auto* const found = window.findChild<QAbstractButton*>(button);
    ASSERT_NE(found, nullptr) << button;
    EXPECT_TRUE(found->isEnabled()) << button;
    found->click();
  }
  // Acts on the window as soon as it has the keyboard: once, whatever is modal above it.
  void whenShown(const QString& window, std::function<void(QWidget&)> act) {
    test::whenShown(&waiting_, window, std::move(act));
  }
  static void activate(QWidget& window) {
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
  }
  // A button's letter, once the window has the keyboard again.
  static void pressLetter(QWidget& window, Qt::Key letter) {
    activate(window);
    QTest::keyClick(&window, letter, Qt::AltModifier);
  }
  // By the mouse.
  static void press(QWidget& window, const char* button) {
    auto* const found = window.findChild<QAbstractButton*>(button);
    ASSERT_NE(found, nullptr) << button;
    QTest::mouseClick(found, Qt::LeftButton, {}, QPoint(found->height() / 2, found->height() / 2));
  }
  static void clickRow(QWidget& window, const char* name, int row, Qt::KeyboardModifiers keys = {}) {
    auto* const list = window.findChild<QListWidget*>(name);
    ASSERT_NE(list->item(row), nullptr) << name;
    QTest::mouseClick(list->viewport(), Qt::LeftButton, keys, list->visualItemRect(list->item(row)).center());
  }
  // The method on the pre-processor's panel, and its own panel, of that name.
  void specify(QWidget& window, const char* method, const char* panel, std::function<void(QWidget&)> act) {
    whenShown(panel, std::move(act));
    auto* const methods = window.findChild<QListWidget*>("SlMethods");
    const auto found = methods->findItems(method, Qt::MatchExactly);
    ASSERT_EQ(found.size(), 1);
    clickRow(window, "SlMethods", methods->row(found.front()));
    press(window, "BSpecify");
  }
  static void paste(TableView& view, int row, int column, const char* text) {
    QApplication::clipboard()->setText(text);
    view.setCurrentIndex(view.model()->index(row, column));
    QTest::keyClick(&view, Qt::Key_V, Qt::ControlModifier);
  }
  // By the keyboard, over what stands in the cell.
  static void typeCell(TableView& view, int row, int column, const char* text) {
    view.setFocus();
    view.setCurrentIndex(view.model()->index(row, column));
    QTest::keyClick(&view, Qt::Key_F2);
    QTest::keyClicks(view.window()->focusWidget(), text);
    QTest::keyClick(view.window()->focusWidget(), Qt::Key_Return);
  }
  // Types the value where the next panel asks for a correlation, and leaves that by Esc when it is refused.
  void answerValue(const char* value) {
    whenShown("CorrVal", [value](QWidget& window) {
      QTest::keyClicks(window.focusWidget(), value);
      QTest::keyClick(window.focusWidget(), Qt::Key_Return);
      if (window.isVisible()) QTest::keyClick(&window, Qt::Key_Escape);
    });
  }
  // A list of normal factors x1, x2, ...
  static std::shared_ptr<FactorList> normals(int count, CorrelationMode mode = kNoCorrelation) {
    auto list = std::make_shared<FactorList>();
    for (int i = 1; i <= count; ++i) {
      std::unique_ptr<Factor> factor = makeFactor("Normal");
      factor->name = "x" + std::to_string(i);
      list->addFactor(std::move(factor));
    }
    list->correlationMode = mode;
    return list;
  }
  static std::shared_ptr<FactorList> golden(const std::string& name) {
    auto list = std::make_shared<FactorList>();
    std::string message;
    EXPECT_TRUE(loadFactorFile(goldenPath(name), *list, message)) << message;
    return list;
  }
  // "x1 Normal 0, 1, 0.001, 0.999 | ..."
  static std::string described(const FactorList& list) {
    std::string text;
    for (std::int32_t i = 0; i < list.factorCount(); ++i)
      text += (i == 0 ? "" : " | ") + list.factor(i).name + ' ' + list.factor(i).typeName + ' ' +
              factorFields(list.factor(i));
    return text;
  }

  ScopedCurrentDirectory stay_;
  TempDirectory directory_;
  ScriptedDialogs dialogs_;
  Display display_;
  QObject waiting_;  // for windows that may never come
};

// One of them at a time.
template <class Tested>
class PrepPanelTest : public PrepTest {
 protected:
  void show(std::unique_ptr<Tested> panel) {
    panel_ = std::move(panel);
    ASSERT_TRUE(panel_);
    ASSERT_EQ(panel_->problems(), QStringList());
    panel_->window()->show();
  }
  QWidget& window() { return *panel_->window(); }
  template <class Gadget = QWidget>
  Gadget& in(const char* name) {
    return *panel_->template gadget<Gadget>(name);
  }
  TableView& table(const char* name) { return in<TableView>(name); }
  bool enabled(const char* name) { return in(name).isEnabled(); }
  using PrepTest::label;
  std::string label(const char* name) { return PrepTest::label(*panel_, name); }
  std::string message() { return label("MlMessage"); }
  std::string field(const char* name) { return in<QLineEdit>(name).text().toStdString(); }
  void does(const char* callback, const Texts& shown = {}, const std::deque<bool>& answers = {},
            const std::deque<std::string>& files = {}) {
    SCOPED_TRACE(callback);
    step(*panel_, callback, shown, answers, files);
  }

  std::unique_ptr<Tested> panel_;
};

}  // namespace tarvex::test
