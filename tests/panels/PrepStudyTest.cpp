// Whole pieces of work over the real panels, by mouse and keys.

#include <QApplication>
#include <QClipboard>
#include <QPlainTextEdit>

#include "panels/PrepFixture.h"
#include "panels/prep/PInputFactors.h"
#include "support/Golden.h"
#include "toolkit/TableView.h"

namespace tarvex {
namespace {

class PrepStudy : public test::PrepTest {
 protected:
  // Keys into what has the keyboard, after Tab led there.
  static void keysInto(QWidget& window, const char* gadget, const QString& keys) {
    constexpr int kMostTabs = 30;
    for (int i = 0; i < kMostTabs && window.focusWidget()->objectName() != gadget; ++i)
      QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    ASSERT_EQ(window.focusWidget()->objectName(), gadget);
    QTest::keyClicks(window.focusWidget(), keys);
  }
  static void pasteInto(QWidget& window, const char* gadget, const char* rows) {
    keysInto(window, gadget, {});
    QApplication::clipboard()->setText(rows);
    QTest::keyClick(window.focusWidget(), Qt::Key_V, Qt::ControlModifier);
  }
  static void press(QWidget& window, const char* button) {
    QTest::mouseClick(window.findChild<QPushButton*>(button), Qt::LeftButton);
  }
};

// A kind of each panel, typed as far as its parameters aren't the defaults; the file is the one that a shell samples
// from.
TEST_F(PrepStudy, AFactorOfEveryKindIsTypedAndSavedToTheLastByte) {
  using Typed = std::vector<std::pair<const char*, const char*>>;
  const struct {
    const char* menuKeys;
    const char* window;
    const char* name;
    const char* note;
    Typed fields;  // a table's rows are pasted, but for a single one, which is typed
  } rows[] = {
      {"FAN", "Normal Distribution", "norm", "first of all", {{"NMean", "1.5"}, {"NStdDeviation", ".25"}}},
      {"FAL", "LogNormal Distribution", "lognorm", "", {{"NMean", "0.2"}, {"NStdDeviation", "0.4"}}},
      {"FAU", "UniformDistribution", "flat", "", {{"MaValues", "-2\t3\t1"}}},
      {"FAU",
       "UniformDistribution",
       "steps",
       "",
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
      {"FAD",
       "Discrete Distribution",
       "sevenths",
       "",
       {{"MaValues",
         "0\t0.142857142857143\n0.5\t0.142857142857143\n1\t0.142857142857143\n1.5\t0.142857142857143\n"
         "2\t0.142857142857143\n2.5\t0.142857142857143\n3\t0.142857142857142"}}},
      {"FAN", "Normal Distribution", "cut", "", {{"NLeftTrunc", "0.05"}, {"NRightTrunc", "0.9"}}},
      {"FAR", "Relation", "branch", "", {{"TeRelation", "disc > 1 ? exp(-bet) : log10(1 + flat ** 2)"}}},
  };
  PInputFactors panel(display_, std::make_shared<FactorList>(), false, nullptr);
  ASSERT_TRUE(panel.show());
  QWidget& window = *panel.window();
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    window.activateWindow();  // as a window manager does when the panel above goes
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    whenShown(row.window, [&row](QWidget& definition) {
      keysInto(definition, "TName", row.name);
      keysInto(definition, "TNote", row.note);
      for (const auto& [gadget, text] : row.fields) {
        const bool isTable = gadget == std::string("MaValues");
        if (isTable && !QString(text).contains('\n')) {
          // From cell to cell, the last one as Enter takes it.
          keysInto(definition, gadget, {});
          for (const QString& cell : QString(text).split('\t')) {
            keys(cell);
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
          }
        } else if (isTable) {
          pasteInto(definition, gadget, text);
        } else {
          keysInto(definition, gadget, text);
        }
      }
      press(definition, "BOk");
      if (definition.isVisible()) {
        ADD_FAILURE() << definition.findChild<QLabel*>("MlMessage")->text().toStdString();
        definition.close();
      }
    });
    QTest::keyClick(&window, Qt::Key_F, Qt::AltModifier);
    for (const char* key = row.menuKeys + 1; *key != '\0'; ++key)
      QTest::keyClick(QApplication::activePopupWidget(), *key);
  }
  dialogs_.files = {file("kinds.fac")};
  press(window, "BSave");
  EXPECT_EQ(test::readFile(file("kinds.fac")), test::readFile(test::goldenPath("kinds.fac")));
  press(window, "BOk");
  EXPECT_TRUE(panel.accepted());
}

}  // namespace
}  // namespace tarvex
