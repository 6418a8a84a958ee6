#include "base/TextReader.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <functional>
#include <thread>

#include "support/FailingCalls.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"

namespace tarvex {
namespace {

template <class Number>
void expectNumber(const char* text, bool good, Number expected) {
  SCOPED_TRACE(text);
  TextReader in = TextReader::fromText(text);
  Number value = 77;
  in >> value;
  EXPECT_EQ(in.ok(), good);
  EXPECT_EQ(value, good ? expected : 77);
}

TEST(TextReader, RangesOfTheTypes) {
  expectNumber<std::int32_t>(" \n\t\v\f\r 2147483647 ", true, 2147483647);
  expectNumber<std::int32_t>("-2147483648", true, -2147483647 - 1);
  expectNumber<std::int32_t>("2147483648", false, 0);
  expectNumber<std::int32_t>("-2147483649", false, 0);
  expectNumber<std::int32_t>("+7x", true, 7);
  expectNumber<std::int32_t>("+-7", false, 0);
  expectNumber<std::int32_t>("3.9", true, 3);
  expectNumber<std::int32_t>("x", false, 0);
  expectNumber<std::int32_t>("", false, 0);
  expectNumber<std::int32_t>("  \n", false, 0);
  expectNumber<std::uint32_t>("4294967295", true, 4294967295U);
  expectNumber<std::uint32_t>("-1", false, 0);
  expectNumber<std::int64_t>("-9223372036854775808", true, INT64_MIN);
  expectNumber<std::int64_t>("9223372036854775808", false, 0);
  expectNumber<double>("+1.5e3", true, 1500);
  expectNumber<double>("1e999", false, 0);
  expectNumber<double>("1e-999", true, 0);
  expectNumber<double>("-inf", true, -HUGE_VAL);
  expectNumber<float>("1e39", false, 0);
  expectNumber<float>("0.1", true, 0.1F);
}

TEST(TextReader, FailsForGoodAndLeavesArgumentsAlone) {
  TextReader in = TextReader::fromText("1 x 2\nline\n");
  std::int32_t a = 0;
  double b = 5;
  std::string line = "old";
  in >> a >> b >> a;
  EXPECT_TRUE(in.fail());
  EXPECT_EQ(a, 1);
  EXPECT_EQ(b, 5);
  EXPECT_FALSE(in.readLine(line, 10));
  EXPECT_FALSE(in.readLineCut(line, 10));
  in.readLinePart(&line, 10);
  EXPECT_EQ(line, "old");
  EXPECT_FALSE(in.skipPast('\n', 100));
  EXPECT_FALSE(in.checkCount(0, 0));
  EXPECT_EQ(in.peekLine(3), "");
}

struct LineCase {
  const char* name;
  const char* text;
  std::size_t limit;
  bool readLine;  // whether readLine succeeds
  const char* line;
  const char* rest;      // what is left behind it
  const char* partRest;  // what readLinePart leaves
};

TEST(TextReader, LinesAndTheirLimits) {
  const LineCase cases[] = {
      {"plain", "ab\ncd", 5, true, "ab", "cd", "cd"},
      {"exactly the limit", "abc\nd", 3, true, "abc", "d", "d"},
      {"one more than the limit", "abcd\ne", 3, false, "abc", "e", "d\ne"},
      {"CR LF", "abc\r\nd", 3, true, "abc", "d", "d"},
      {"CR inside", "a\rb\nd", 3, true, "a\rb", "d", "d"},
      {"two CR", "ab\r\r\nd", 3, true, "ab\r", "d", "d"},
      {"two CR beyond the limit", "abc\r\r\nd", 3, false, "abc", "d", "\r\r\nd"},
      {"last line without LF", "abc", 3, true, "abc", "", ""},
      {"last line with CR only", "abc\r", 3, true, "abc", "", ""},
      {"last line too long", "abcd", 3, false, "abc", "", "d"},
      {"empty", "\nx", 3, true, "", "x", "x"},
      {"limit of none", "\nx", 0, true, "", "x", "x"},
      {"no limit", "abcd\nx", std::string::npos, true, "abcd", "x", "x"},
  };
  for (const LineCase& c : cases) {
    SCOPED_TRACE(c.name);
    const auto rest = [](TextReader& in) { return std::string(in.remaining() ? in.peekLine(99) : ""); };
    const std::string firstOfRest = test::splitLines(c.rest)[0];
    std::string line = "old";
    TextReader whole = TextReader::fromText(c.text);
    EXPECT_EQ(whole.readLine(line, c.limit), c.readLine);
    EXPECT_EQ(line, c.readLine ? c.line : "old");
    EXPECT_EQ(whole.ok(), c.readLine);
    if (c.readLine) {
      EXPECT_EQ(rest(whole), firstOfRest);
    }

    TextReader cut = TextReader::fromText(c.text);
    EXPECT_EQ(cut.peekLine(c.limit), c.line);
    EXPECT_TRUE(cut.readLineCut(line, c.limit));
    EXPECT_EQ(line, c.line);
    EXPECT_EQ(rest(cut), firstOfRest);

    TextReader part = TextReader::fromText(c.text);
    part.readLinePart(&line, c.limit);
    EXPECT_EQ(line, c.line);
    EXPECT_EQ(part.remaining(), std::string(c.partRest).size());
    EXPECT_TRUE(part.ok());
  }
}

TEST(TextReader, StepsAtTheEnd) {
  TextReader in = TextReader::fromText("1\n");
  std::int32_t value = 0;
  in >> value;
  EXPECT_FALSE(in.atEnd());
  in.skipLine();
  EXPECT_TRUE(in.atEnd());
  in.skipLine();
  in.readLinePart(nullptr, 10);
  EXPECT_EQ(in.peekLine(10), "");
  EXPECT_TRUE(in.ok());
  std::string line;
  EXPECT_FALSE(in.readLine(line, 10));
  EXPECT_TRUE(in.fail());
}

TEST(TextReader, SkipPast) {
  TextReader in = TextReader::fromText("t\nx=5;abc=");
  EXPECT_TRUE(in.skipPast('=', 3));
  std::int32_t value = 0;
  in >> value;
  EXPECT_EQ(value, 5);
  EXPECT_FALSE(in.skipPast('=', 3));
  TextReader none = TextReader::fromText("abc");
  EXPECT_FALSE(none.skipPast('=', 100));
}

TEST(TextReader, CountsAreHeldAgainstWhatIsLeft) {
  for (const auto& [count, bytes, good] : {std::tuple<std::int64_t, std::uint64_t, bool>{5, 2, true},
                                           {6, 2, false},
                                           {-1, 0, false},
                                           {INT64_MAX, 8, false},
                                           {0, 8, true},
                                           {3, UINT64_MAX, false},
                                           {INT64_MAX, 0, true}}) {
    TextReader in = TextReader::fromText("0123456789");
    EXPECT_EQ(in.checkCount(count, bytes), good) << count;
    EXPECT_EQ(in.ok(), good);
  }
}

// A file of several buffers, with a number, a line end and a CR LF at every place of a buffer's end in turn.
class LargeFile : public testing::Test {
 protected:
  test::TempDirectory temp_;
  std::string path_ = temp_.file("large");
};

TEST_F(LargeFile, TokensThatStraddleBuffers) {
  std::string text;
  int count = 0;
  for (; text.size() < 1500000; ++count)
    text += std::to_string(count) + ".25e-1\t" + std::string(count % 7, ' ') + "x y\r\n";
  test::writeFile(path_, text);
  for (const std::size_t shortSize : {std::size_t{0}, std::size_t{1021}, std::size_t{262139}}) {
    test::FailingCalls calls;
    calls.makeShort(shortSize);
    TextReader in = TextReader::fromFile(path_);
    for (int i = 0; i < count; ++i) {
      double value = 0;
      std::string line;
      in >> value;
      ASSERT_EQ(value, (i + 0.25) / 10);
      if (i % 2 == 0) {
        ASSERT_TRUE(in.readLine(line, 30));
        ASSERT_EQ(line, '\t' + std::string(i % 7, ' ') + "x y");
      } else {
        in.skipLine();
      }
    }
    EXPECT_TRUE(in.atEnd() && in.ok());
    EXPECT_EQ(in.remaining(), 0u);
    if (shortSize == 0) {
      EXPECT_LE(calls.count(test::FailingCalls::kRead), 10);
    }
  }
}

TEST_F(LargeFile, VeryLongTokens) {
  const std::string zeros(300000, '0');
  test::writeFile(path_, zeros + "42 1." + zeros + "e-3 " + std::string(2000000, '1') + "\n" + zeros + "\nlast");
  TextReader in = TextReader::fromFile(path_);
  std::int32_t integer = 0;
  double real = 0;
  in >> integer >> real;
  EXPECT_EQ(integer, 42);
  EXPECT_EQ(real, 1e-3);
  TextReader longer = TextReader::fromFile(path_);
  std::string line;
  EXPECT_TRUE(longer.readLineCut(line, 3));
  EXPECT_EQ(line, "000");
  EXPECT_EQ(longer.peekLine(400000), zeros);
  longer.readLinePart(&line, 299999);
  longer.skipLine();
  EXPECT_TRUE(longer.readLine(line, 4));
  EXPECT_EQ(line, "last");
  in >> real;  // two million digits
  EXPECT_TRUE(in.fail());
}

TEST_F(LargeFile, FailureOfReadFailsTheReader) {
  test::writeFile(path_, std::string(1000000, 'a') + "\n");
  const std::function<void(TextReader&)> steps[] = {
      [](TextReader& in) { in.skipLine(); },
      [](TextReader& in) { in.skipPast('b', 2000000); },
      [](TextReader& in) {
        std::string line;
        in.readLine(line, 2000000);
      },
      [](TextReader& in) { in.readLinePart(nullptr, 2000000); },
  };
  for (const auto& step : steps) {
    test::FailingCalls calls;
    TextReader in = TextReader::fromFile(path_);
    calls.fail(test::FailingCalls::kRead, 2, EIO);
    step(in);
    EXPECT_TRUE(in.fail());
  }
}

TEST(TextReader, WhatCantBeRead) {
  const test::TempDirectory temp;
  EXPECT_TRUE(TextReader::fromFile(temp.file("missing")).fail());
  EXPECT_TRUE(TextReader::fromFile(temp.path()).fail());
  EXPECT_TRUE(TextReader::fromFile("").fail());
  test::writeFile(temp.file("x"), "1");
  EXPECT_TRUE(TextReader::fromFile(temp.path() + "\\x").ok());
  test::FailingCalls calls;
  calls.fail(test::FailingCalls::kOpen, 1, EACCES);
  EXPECT_TRUE(TextReader::fromFile(temp.file("x")).fail());
}

TEST(TextReader, APipeIsReadWhole) {
  const test::TempDirectory temp;
  const std::string path = temp.file("pipe");
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  std::thread source([&path] { test::writeFile(path, std::string(300000, ' ') + "7\n"); });
  TextReader in = TextReader::fromFile(path);
  source.join();
  EXPECT_EQ(in.remaining(), 300002u);
  std::int32_t value = 0;
  in >> value;
  EXPECT_EQ(value, 7);
}

}  // namespace
}  // namespace tarvex
