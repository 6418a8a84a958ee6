#include <gtest/gtest.h>

#include <cstdlib>

#include "toolkit/Application.h"

// The application object lives as long as the tests. Offscreen, one font, no blinking: pictures are the same
// everywhere.
int main(int argc, char** argv) {
  ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
  ::setenv("XDG_RUNTIME_DIR", "/tmp", 0);
  testing::InitGoogleTest(&argc, argv);
  const tarvex::Application application(argc, argv, "Tarvex", "test");
  return RUN_ALL_TESTS();
}
