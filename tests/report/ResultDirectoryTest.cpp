#include "report/ResultDirectory.h"

#include <filesystem>

#include "base/Temporaries.h"
#include "support/Test.h"

namespace tarvex {
namespace {

TEST(ResultDirectory, aStopBeforeTheLastStepLeavesNothing) {
  const test::TempDirectory directory;
  const std::string path = directory.file("out");
  ResultDirectory results(path);
  results.add("y", "table", ".txt", [](const std::string& file, std::string&) {
    test::writeFile(file, "1");
    return true;
  });
  Temporaries::cancel(true);
  EXPECT_FALSE(results.finish());
  Temporaries::cancel(false);
  EXPECT_FALSE(std::filesystem::exists(path));
}

}  // namespace
}  // namespace tarvex
