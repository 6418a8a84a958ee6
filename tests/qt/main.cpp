#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <cstdlib>

#include "toolkit/Application.h"

namespace {

// After the end of the program, which a test may ask for, every loop ends at once until that of the application has run
// again.
class NewLoop : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override {
    QTimer::singleShot(0, [] { QCoreApplication::exit(0); });
    QApplication::exec();
    QWidget none;
    QTest::keyRelease(&none, Qt::Key_Control);  // which the last key of another test may have left pressed
  }
};

}  // namespace

// The application object lives as long as the tests. Offscreen, one font, no blinking: pictures are the same
// everywhere.
int main(int argc, char** argv) {
  ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
  ::setenv("XDG_RUNTIME_DIR", "/tmp", 0);
  testing::InitGoogleTest(&argc, argv);
  const tarvex::Application application(argc, argv, "Tarvex", "test");
  testing::UnitTest::GetInstance()->listeners().Append(new NewLoop);  // which owns it
  return RUN_ALL_TESTS();
}
