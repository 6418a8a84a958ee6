#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>

#include "base/sampValues.h"
#include "support/Test.h"

namespace tarvex {
namespace {

struct Ending {
  int status = 0;
  long peakKilobytes = 0;
};

// Runs `work` in a process of its own, so that its peak of memory is its own.
Ending inChild(const std::function<int()>& work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work());
  Ending ending;
  struct rusage usage {};
  if (child < 0 || ::wait4(child, &ending.status, 0, &usage) != child) ADD_FAILURE() << "no child process";
  ending.peakKilobytes = usage.ru_maxrss;
  return ending;
}

constexpr std::int32_t kManyRows = 2000000;
constexpr std::int32_t kFewColumns = 20;
constexpr long kColumnKilobytes = kManyRows * 8L / 1024;

double largeCell(std::int32_t row, std::int32_t column) {
  return row * 32.0 + column;
}

// Filled by row, read by column, changed by column, read by row again. Returns 0, or the number of the step that went
// wrong.
int largePasses() {
  sampValues store;
  if (!store.allocate(kFewColumns)) return 1;
  double row[kFewColumns];
  for (std::int32_t r = 0; r < kManyRows; ++r) {
    for (std::int32_t c = 0; c < kFewColumns; ++c) row[c] = largeCell(r, c);
    if (store.addRow(row) != r + 1) return 2;
  }
  double value = 0;
  for (std::int32_t c = 0; c < kFewColumns; ++c) {
    for (std::int32_t r = 0; r < kManyRows; ++r) {
      if (!store.getColumnValue(r, c, value) || value != largeCell(r, c)) return 3;
      if (!store.setColumnValue(r, c, -largeCell(r, c))) return 4;
    }
  }
  for (std::int32_t r = 0; r < kManyRows; ++r) {
    if (!store.getRow(r, row)) return 5;
    for (std::int32_t c = 0; c < kFewColumns; ++c)
      if (row[c] != -largeCell(r, c)) return 6;
  }
  return 0;
}

TEST(SampValuesSize, ALargeTableTakesLittleMemory) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "the sanitizers' own memory and pace would be measured";
#endif
  const test::TempDirectory directory;
  const test::ScopedEnvironment temp("TEMP", directory.path());
  const auto start = std::chrono::steady_clock::now();
  const Ending ending = inChild(largePasses);
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  ASSERT_TRUE(WIFEXITED(ending.status));
  EXPECT_EQ(WEXITSTATUS(ending.status), 0) << "the step that went wrong";
  EXPECT_LT(ending.peakKilobytes, 64 * 1024 + kColumnKilobytes);
  EXPECT_LT(seconds, 60);
  EXPECT_TRUE(directory.entries().empty());
}

}  // namespace
}  // namespace tarvex
