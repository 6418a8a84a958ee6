#include "base/WorkingFile.h"

#include <utility>

#include "support/FailingCalls.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using test::FailingCalls;

TEST(WorkingFile, DirectoryByTempThenTmpdir) {
  const test::ScopedEnvironment temp("TEMP", "/a");
  const test::ScopedEnvironment tmpdir("TMPDIR", "/b");
  EXPECT_EQ(WorkingFile::directory(), "/a");
  const test::ScopedEnvironment noTemp("TEMP", "");
  EXPECT_EQ(WorkingFile::directory(), "/b");
  const test::ScopedEnvironment noTmpdir("TMPDIR", std::nullopt);
  EXPECT_EQ(WorkingFile::directory(), "/tmp");
}

TEST(WorkingFile, KeepsBytesAndLeavesNoName) {
  const test::TempDirectory directory;
  const test::ScopedEnvironment temp("TEMP", directory.path());
  FailingCalls calls;
  calls.makeShort(3);
  WorkingFile file;
  double value = 7;
  ASSERT_TRUE(file.read(0, &value, sizeof value));
  EXPECT_EQ(value, 0);
  const std::uint64_t far = 3ULL << 32;  // beyond 32 bits
  const double written[] = {1.5, -2.5};
  ASSERT_TRUE(file.write(far, written, sizeof written));
  EXPECT_TRUE(directory.entries().empty());
  WorkingFile moved = std::move(file);
  std::vector<double> back(4, 9);
  ASSERT_TRUE(moved.read(far - 8, back.data(), 32));
  EXPECT_EQ(back, (std::vector<double>{0, 1.5, -2.5, 0}));
  moved.clear();
  ASSERT_TRUE(moved.read(far, back.data(), 8));
  EXPECT_EQ(back[0], 0);
}

TEST(WorkingFile, TellsTheErrorOfTheSystem) {
  const double value = 1;
  double back = 5;
  const struct {
    FailingCalls::Call call;
    const char* what;
  } cases[] = {{FailingCalls::kOpen, "create a"},
               {FailingCalls::kUnlink, "create a"},
               {FailingCalls::kPwrite, "write the"},
               {FailingCalls::kPread, "read the"}};
  for (const auto& [call, what] : cases) {
    const test::TempDirectory directory;
    const test::ScopedEnvironment temp("TEMP", directory.path());
    WorkingFile file;
    FailingCalls calls;
    calls.fail(call, 1, EDQUOT, true);
    EXPECT_FALSE(file.write(0, &value, sizeof value) && file.read(0, &back, sizeof back));
    EXPECT_EQ(file.errorText(),
              std::string("Cannot ") + what + " working file in " + directory.path() + ": Disk quota exceeded");
    EXPECT_TRUE(file.write(0, &value, sizeof value) && file.read(0, &back, sizeof back));
    EXPECT_EQ(back, 1);
  }
}

}  // namespace
}  // namespace tarvex
