#include "base/TextWriter.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <thread>

#include "support/FailingCalls.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"

namespace tarvex {
namespace {

namespace fs = std::filesystem;
using test::FailingCalls;

TEST(TextWriter, WritesTheKindsOfValues) {
  TextWriter out;
  out << "text " << std::string_view("view") << ' ' << 3 << ' ' << -2147483648LL << ' ' << std::size_t{7} << '\n';
  out << 1.0 / 3 << '\t' << 0.1F << '\t' << 1e100 << '\n';
  EXPECT_EQ(out.setPrecision(10), 6);
  out << 1.0 / 3 << '\n';
  EXPECT_EQ(out.setPrecision(6), 10);
  out << std::numeric_limits<std::int64_t>::min() << ' ' << std::uint8_t{65};
  EXPECT_EQ(out.text(), "text view 3 -2147483648 7\n0.333333\t0.1\t1e+100\n0.3333333333\n-9223372036854775808 65");
  EXPECT_TRUE(out.commit());
}

class TextWriterFile : public testing::Test {
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
  static mode_t modeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0);
    return status.st_mode;
  }

  test::ScopedCurrentDirectory current_;
  test::TempDirectory temp_;
  std::string path_ = temp_.file("target");
};

TEST_F(TextWriterFile, ReplacesTheTargetOnlyAtCommit) {
  test::writeFile(path_, "old");
  {
    TextWriter dropped(path_);
    dropped << longText();
    EXPECT_EQ(temp_.entries().size(), 2u);
  }
  EXPECT_EQ(temp_.entries(), std::vector<std::string>{"target"});
  EXPECT_EQ(test::readFile(path_), "old");
  const fs::path other = temp_.file("other");
  fs::create_directory(other);
  fs::current_path(temp_.path());
  TextWriter out("target");
  TextWriter second("target");  // two writers don't share a temporary
  out << "new";
  fs::current_path(other);  // and a change of directory doesn't move the target
  EXPECT_TRUE(out.commit());
  EXPECT_EQ(test::readFile(path_), "new");
}

TEST_F(TextWriterFile, KeepsModeAndLink) {
  const mode_t mask = ::umask(077);
  EXPECT_TRUE(write(path_, "1"));
  EXPECT_EQ(modeOf(path_) & 0777, 0600u);
  ASSERT_EQ(::chmod(path_.c_str(), 0664), 0);
  EXPECT_TRUE(write(path_, "2"));
  EXPECT_EQ(modeOf(path_) & 0777, 0664u);
  ::umask(mask);

  fs::create_directory(temp_.file("sub"));
  fs::create_symlink("../target", temp_.file("sub/link"));
  fs::create_symlink("sub/link", temp_.file("outer"));
  EXPECT_TRUE(write(temp_.file("outer"), "3"));
  EXPECT_TRUE(S_ISLNK(modeOf(temp_.file("outer"))) && S_ISLNK(modeOf(temp_.file("sub/link"))));
  EXPECT_EQ(test::readFile(path_), "3");
  fs::create_symlink("fresh", temp_.file("dangling"));
  EXPECT_TRUE(write(temp_.file("dangling"), "4"));
  EXPECT_EQ(test::readFile(temp_.file("fresh")), "4");
  fs::create_symlink("loop", temp_.file("loop"));
  EXPECT_FALSE(write(temp_.file("loop"), "5"));
}

// Every write, the flush to disk, the closing and the rename in turn; the disk may be full for once or from then on.
TEST_F(TextWriterFile, AFullDiskKeepsTheOldFile) {
  const std::string text = longText();
  test::writeFile(path_, "old");
  FailingCalls calls;
  for (const auto call :
       {FailingCalls::kOpen, FailingCalls::kWrite, FailingCalls::kFsync, FailingCalls::kClose, FailingCalls::kRename}) {
    calls.clearFailures();
    ASSERT_TRUE(write(temp_.file("counted"), text));
    const int calledTimes = calls.count(call);
    ASSERT_GE(calledTimes, call == FailingCalls::kWrite ? 3 : 1);
    fs::remove(temp_.file("counted"));
    for (int n = 1; n <= calledTimes; ++n) {
      for (const bool once : {false, true}) {
        SCOPED_TRACE(testing::Message() << "call " << call << ", failure " << n << ", once " << once);
        calls.clearFailures();
        calls.fail(call, n, ENOSPC, once);
        TextWriter out(path_);
        writePieces(out, text);
        EXPECT_FALSE(out.commit());
        EXPECT_EQ(out.error(), ENOSPC);
        EXPECT_TRUE(test::readFile(path_) == "old");
        EXPECT_EQ(temp_.entries(), std::vector<std::string>{"target"});
      }
    }
  }
}

TEST_F(TextWriterFile, ShortAndInterruptedWrites) {
  FailingCalls calls;
  calls.makeShort(1013);
  const std::string text = longText();
  EXPECT_TRUE(write(path_, text));
  EXPECT_EQ(test::readFile(path_), text);
}

TEST_F(TextWriterFile, WhatIsNoRegularFileIsWrittenInPlace) {
  ASSERT_EQ(::mkfifo(path_.c_str(), 0600), 0);
  const std::string text = longText();
  std::string got;
  std::thread reader([&] { got = test::readFile(path_); });
  EXPECT_TRUE(write(path_, text));
  reader.join();
  EXPECT_EQ(got, text);
  EXPECT_TRUE(S_ISFIFO(modeOf(path_)));
  EXPECT_TRUE(write("/dev/null", "x"));
  EXPECT_TRUE(canWriteFile("/dev/null"));
  TextWriter full("/dev/full");
  full << "x";
  EXPECT_FALSE(full.commit());
  EXPECT_EQ(full.error(), ENOSPC);
}

// A descriptor of this process on a file: others write there too, so nothing of theirs is replaced.
TEST_F(TextWriterFile, AnOpenDescriptorIsAppendedTo) {
  std::FILE* log = std::fopen(path_.c_str(), "a");
  ASSERT_NE(log, nullptr);
  std::fputs("before ", log);
  std::fflush(log);
  EXPECT_TRUE(write("/proc/self/fd/" + std::to_string(fileno(log)), "text"));
  std::fputs(" after", log);
  std::fclose(log);
  EXPECT_EQ(test::readFile(path_), "before text after");
}

TEST_F(TextWriterFile, WhatCantBeWritten) {
  for (const std::string& path : {std::string(), temp_.path(), temp_.file("gone/file")}) {
    SCOPED_TRACE(path);
    EXPECT_FALSE(canWriteFile(path));
    TextWriter out(path);
    EXPECT_FALSE(out.ok());
    EXPECT_FALSE(out.commit());
  }
  EXPECT_TRUE(canWriteFile(path_));
  EXPECT_TRUE(temp_.entries().empty());
  TextWriter out(path_);
  out << "text";
  out.setError(EIO);  // the source of the text gave up
  EXPECT_FALSE(out.commit());
  EXPECT_EQ(out.error(), EIO);
  EXPECT_TRUE(temp_.entries().empty());
}

}  // namespace
}  // namespace tarvex
