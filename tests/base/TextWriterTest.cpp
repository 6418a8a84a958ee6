#include "base/TextWriter.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>

#include "base/Temporaries.h"
#include "support/FailingCalls.h"
#include "support/Test.h"

namespace tarvex {
namespace {

namespace fs = std::filesystem;
using test::FailingCalls;

class TextWriterFile : public test::InDirectory {
 protected:
  // Long enough for several writes.
  static std::string longText() {
    std::string text;
    for (int i = 0; text.size() < 900000; ++i) text += std::to_string(i) + " and so on\n";
    return text;
  }
  static void writePieces(TextWriter& out, std::string_view text) {
    for (std::size_t i = 0; i < text.size(); i += 1000) out << text.substr(i, 1000);
  }
  static bool write(const std::string& path, std::string_view text) {
    TextWriter out(path);
    writePieces(out, text);
    return out.commit();
  }

  std::string path_ = file("target");
};

TEST_F(TextWriterFile, ReplacesTheTargetOnlyAtCommit) {
  test::writeFile(path_, "old");
  {
    TextWriter dropped(path_);
    dropped << longText();
    EXPECT_EQ(directory_.entries().size(), 2u);
  }
  EXPECT_EQ(directory_.entries(), std::vector<std::string>{"target"});
  EXPECT_EQ(test::readFile(path_), "old");
  fs::create_directory(file("other"));
  fs::current_path(directory_.path());
  TextWriter out("target");
  TextWriter second("target");  // two writers don't share a temporary
  out << "new";
  fs::current_path("other");  // and a change of directory doesn't move the target
  EXPECT_TRUE(out.commit());
  EXPECT_EQ(test::readFile(path_), "new");
}

TEST_F(TextWriterFile, KeepsModeAndLink) {
  const mode_t mask = ::umask(077);
  for (const auto mode : {fs::perms{0600}, fs::perms{0664}}) {
    EXPECT_TRUE(write(path_, "1"));
    EXPECT_EQ(fs::status(path_).permissions(), mode);
    fs::permissions(path_, fs::perms{0664});
  }
  ::umask(mask);
  EXPECT_EQ(fs::status(path_).permissions(), fs::perms{0664});
  fs::create_directory(file("sub"));
  fs::create_symlink("../target", file("sub/link"));
  fs::create_symlink("sub/link", file("outer"));
  EXPECT_TRUE(write(file("outer"), "3"));
  EXPECT_TRUE(fs::is_symlink(file("outer")) && fs::is_symlink(file("sub/link")));
  EXPECT_EQ(test::readFile(path_), "3");
  fs::create_symlink("fresh", file("dangling"));
  EXPECT_TRUE(write(file("dangling"), "4"));
  EXPECT_EQ(test::readFile(file("fresh")), "4");
  fs::create_symlink("loop", file("loop"));
  EXPECT_FALSE(write(file("loop"), "5"));
}

// Every write, the flush to disk, the closing and the rename in turn; the disk may be full for once or from then on.
TEST_F(TextWriterFile, AFullDiskKeepsTheOldFile) {
  const std::string text = longText();
  test::writeFile(path_, "old");
  FailingCalls calls;
  for (const auto call :
       {FailingCalls::kOpen, FailingCalls::kWrite, FailingCalls::kFsync, FailingCalls::kClose, FailingCalls::kRename}) {
    calls.clearFailures();
    ASSERT_TRUE(write(file("counted"), text));
    const int calledTimes = calls.count(call);
    ASSERT_GE(calledTimes, call == FailingCalls::kWrite ? 3 : 1);
    fs::remove(file("counted"));
    for (int n = 1; n <= calledTimes; ++n) {
      for (const bool once : {false, true}) {
        SCOPED_TRACE(testing::Message() << "call " << call << ", failure " << n << ", once " << once);
        calls.clearFailures();
        calls.fail(call, n, ENOSPC, once);
        TextWriter out(path_);
        writePieces(out, text);
        EXPECT_FALSE(out.commit());
        EXPECT_EQ(out.problem(), path_ + ": No space left on device");
        EXPECT_TRUE(test::readFile(path_) == "old");
        EXPECT_EQ(directory_.entries(), std::vector<std::string>{"target"});
      }
    }
  }
}

TEST_F(TextWriterFile, WhatIsNoRegularFileIsWrittenInPlace) {
  ASSERT_EQ(::mkfifo(path_.c_str(), 0600), 0);
  EXPECT_FALSE(write(path_, "nobody reads"));
  const std::string text = longText();
  std::string got;
  std::thread reader([&] { got = test::readFile(path_); });
  FailingCalls calls;
  calls.makeShort(1013);
  EXPECT_TRUE(write(path_, text));
  reader.join();
  EXPECT_EQ(got, text);
  EXPECT_TRUE(fs::is_fifo(path_));
  EXPECT_TRUE(canWriteFile("/dev/null"));
  EXPECT_FALSE(write("/dev/full", "x"));
  // A descriptor of this process on a file: others write there too, so nothing of theirs is replaced.
  std::FILE* log = std::fopen(file("log").c_str(), "a");
  ASSERT_NE(log, nullptr);
  std::fputs("before ", log);
  std::fflush(log);
  EXPECT_TRUE(write("/proc/self/fd/" + std::to_string(fileno(log)), "text"));
  std::fclose(log);
  EXPECT_EQ(test::readFile(file("log")), "before text");
}

TEST_F(TextWriterFile, WhatAKilledProcessLeftGoesWithTheNextFile) {
  const pid_t child = ::fork();
  if (child == 0) {
    TextWriter out(path_);
    const std::string directory = Temporaries::createDirectory(directory_.path());
    ::_exit(out.ok() && TextWriter(directory + "/file").ok() ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_EQ(status, 0);
  EXPECT_EQ(directory_.entries().size(), 2u);
  TextWriter alive(file("other"));
  EXPECT_TRUE(write(path_, "text"));
  EXPECT_EQ(directory_.entries().size(), 2u) << "the target and what is still being written";
  EXPECT_TRUE(alive.commit());
}

// The cleaner of another machine, which doesn't know this process, may come between a file's making and its lock.
struct Cleaner : SystemCalls {
  int open(const char* path, int flags, mode_t mode) override {
    const int fd = SystemCalls::open(path, flags, mode);
    if ((flags & O_CREAT) != 0 && ++made == 1) ::unlink(path);
    return fd;
  }
  int made = 0;
};

TEST_F(TextWriterFile, WhatAnotherCleanerTookIsMadeAgainAndWhatIsAnotherUsersStays) {
  Cleaner cleaner;
  SystemCalls* const before = SystemCalls::exchange(&cleaner);
  EXPECT_TRUE(write(path_, "text"));
  SystemCalls::exchange(before);
  EXPECT_EQ(cleaner.made, 2);
  EXPECT_EQ(test::readFile(path_), "text");
  const std::string foreign = file(".tarvex-999999999-1.tmp");
  test::writeFile(foreign, "");
  if (::chown(foreign.c_str(), 12345, 12345) != 0) GTEST_SKIP() << "only root makes files of other users";
  EXPECT_TRUE(write(path_, "text"));
  EXPECT_TRUE(fs::exists(foreign));
  ASSERT_EQ(::chown(foreign.c_str(), ::geteuid(), ::getegid()), 0);
  EXPECT_TRUE(write(path_, "text"));
  EXPECT_FALSE(fs::exists(foreign));
}

TEST_F(TextWriterFile, WhatCantBeWritten) {
  for (const std::string& path : {std::string(), directory_.path(), file("gone/file")}) {
    EXPECT_FALSE(canWriteFile(path)) << path;
    EXPECT_FALSE(write(path, "")) << path;
  }
  EXPECT_TRUE(canWriteFile(path_));
  EXPECT_TRUE(directory_.entries().empty());
  TextWriter out(path_);
  out << "text";
  out.refuse("the source of the text gave up");
  EXPECT_FALSE(out.commit());
  EXPECT_EQ(out.problem(), path_ + ": the source of the text gave up");
  EXPECT_TRUE(directory_.entries().empty());
}

}  // namespace
}  // namespace tarvex
