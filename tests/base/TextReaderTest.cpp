#include "base/TextReader.h"

#include <sys/stat.h>

#include <cstdlib>
#include <cstring>
#include <random>
#include <thread>

#include "support/FailingCalls.h"
#include "support/Test.h"

namespace tarvex {
namespace {

template <class Number>
Number numberIn(const char* text) {
  TextReader in = TextReader::fromText(text);
  Number value = 77;  // of a failed read
  in >> value;
  return in.ok() ? value : Number{77};
}

TEST(TextReader, RangesOfTheTypes) {
  EXPECT_EQ(numberIn<std::int32_t>(" \n\t\v\f\r 2147483647 "), 2147483647);
  for (const char* text : {"2147483648", "-2147483649"}) EXPECT_EQ(numberIn<std::int32_t>(text), 77) << text;
  EXPECT_EQ(numberIn<std::int32_t>("+7x") + numberIn<std::int32_t>("3.9"), 10);
  EXPECT_EQ(numberIn<std::uint32_t>("4294967295"), 4294967295U);
  EXPECT_EQ(numberIn<std::uint32_t>("-1"), 77U);
  EXPECT_EQ(numberIn<std::int64_t>("9223372036854775808"), 77);
  EXPECT_EQ(numberIn<double>("1e999") + numberIn<float>("1e39"), 154.0);
}

TEST(TextReader, SaysWhatMadeItFail) {
  TextReader number = TextReader::fromText(
      "\xEF\xBB\xBF"
      "1\n\n  abc\tdef  \r\n4");
  std::int32_t value = 0;
  number.expect("the number of runs") >> value;
  number.expect("the number of factors") >> value >> value;
  EXPECT_EQ(number.problem(), "line 3: expected the number of factors, found 'abc def'");
  EXPECT_FALSE(number.refuse("another reason"));
  EXPECT_EQ(number.problem(), "line 3: expected the number of factors, found 'abc def'");

  TextReader end = TextReader::fromText("1\n2\n");
  end >> value >> value >> value;
  EXPECT_EQ(end.problem(), "line 3: expected a whole number, found the end of the file");

  TextReader refused = TextReader::fromText("5\n-3\n7\n");
  refused >> value >> value;
  EXPECT_FALSE(refused.atEnd());
  EXPECT_FALSE(refused.refuse("at least 1 run is needed, not -3"));
  EXPECT_EQ(refused.problem(), "line 2: at least 1 run is needed, not -3");

  std::string line;
  TextReader longLine = TextReader::fromText("a\n" + std::string(50, 'b') + "\n");
  longLine.readLine(line, 10);
  longLine.readLine(line, 10);
  EXPECT_EQ(longLine.problem(), "line 2: expected a line, found a line of more than 10 characters");

  EXPECT_EQ(TextReader::fromFile("/nowhere/x.fac").problem(), "/nowhere/x.fac: No such file or directory");
  EXPECT_EQ(TextReader::fromFile("/tmp").problem(), "/tmp: Is a directory");

  // Behind more than one block of the buffer.
  const test::TempDirectory directory;
  const std::string path = directory.file("long.txt");
  std::string text;
  for (int i = 0; i < 200000; ++i) text += "12345\n";
  test::writeFile(path, text + "x\n");
  TextReader large = TextReader::fromFile(path);
  while (large.ok()) large >> value;
  EXPECT_EQ(large.problem(), path + ":200001: expected a whole number, found 'x'");
}

TEST(TextReader, FailsForGoodAndLeavesArgumentsAlone) {
  TextReader in = TextReader::fromText("t\n=1 x 2\nline\n");
  std::int32_t a = 0;
  double b = 5;
  std::string line = "old";
  ASSERT_TRUE(in.skipPast('=', 3));
  in >> a >> b >> a;
  EXPECT_TRUE(in.fail());
  EXPECT_EQ(a, 1);
  EXPECT_EQ(b, 5);
  EXPECT_FALSE(in.readLine(line, 10) || in.readLineCut(line, 10));
  in.readLinePart(&line, 10);
  EXPECT_EQ(line, "old");
  EXPECT_FALSE(in.skipPast('\n', 100) || in.checkCount(0, 0));
  EXPECT_EQ(in.peekLine(3), "");
  EXPECT_FALSE(TextReader::fromText("abcd=").skipPast('=', 3));
  EXPECT_FALSE(TextReader::fromText("abc").skipPast('=', 100));
}

struct LineCase {
  const char *name, *text;
  std::size_t limit;
  bool readLine;  // whether readLine succeeds
  const char* line;
  const char* rest;      // what is left behind it
  const char* partRest;  // what readLinePart leaves
};

// Many numbers at once are read, and fail, as one by one. TARVEX_LONG_TEST is how many texts.
TEST(TextReader, ManyNumbersAtOnce) {
  const char* const asked = std::getenv("TARVEX_LONG_TEST");
  std::mt19937_64 random(2);
  const auto below = [&random](std::size_t count) { return random() % count; };
  const auto digits = [&](std::size_t most) {
    std::string text;
    for (std::size_t left = below(most + 1); left > 0; --left) text += static_cast<char>('0' + below(10));
    return text;
  };
  constexpr const char* kSpaces[] = {"\t", "\t", "\t", "\t\n", "\t\r\n", " ", "\n", "   \t", ""};
  constexpr const char* kOthers[] = {"1e-5", "-2.5e3", "nan", "-inf", "12", "+1.5", "x", ".5", "1.", "1.5e"};
  for (long i = 0; i < (asked == nullptr ? 300 : std::atol(asked)); ++i) {
    std::string text;
    const bool isTable = below(2) == 0;
    while (below(60) != 0) {
      text += below(6) == 0 ? "-" : "";
      text +=
          isTable || below(9) != 0 ? std::to_string(below(3)) + digits(3) + '.' + digits(12) + '1' : kOthers[below(10)];
      text += kSpaces[below(isTable ? 5 : 9)];
    }
    TextReader one = TextReader::fromText(text);
    TextReader many = TextReader::fromText(text);
    std::vector<double> expected(below(80)), values(expected.size());
    std::size_t good = 0;
    for (double& value : expected) good += (one >> value).ok() ? 1 : 0;
    many.expect("nothing of these").readNumbers(values.data(), values.size());
    ASSERT_EQ(many.ok(), one.ok()) << text;
    ASSERT_TRUE(good == 0 || std::memcmp(values.data(), expected.data(), good * sizeof(double)) == 0) << text;
    ASSERT_EQ(many.remaining(), one.remaining()) << text;
    if (values.empty()) continue;
    ASSERT_EQ(many.problem(), one.problem()) << text;
  }
}

TEST(TextReader, LinesAndTheirLimits) {
  const LineCase cases[] = {
      {"exactly the limit", "abc\nd", 3, true, "abc", "d", "d"},
      {"one more than the limit", "abcd\ne", 3, false, "abc", "e", "d\ne"},
      {"CR LF", "abc\r\nd", 3, true, "abc", "d", "d"},
      {"two CR beyond the limit", "abc\r\r\nd", 3, false, "abc", "d", "\r\r\nd"},
      {"last line without LF", "abc", 3, true, "abc", "", ""},
      {"last line too long", "abcd", 3, false, "abc", "", "d"},
      {"empty", "\nx", 3, true, "", "x", "x"},
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
    EXPECT_TRUE(!c.readLine || rest(whole) == firstOfRest);

    TextReader cut = TextReader::fromText(c.text);
    EXPECT_EQ(cut.peekLine(c.limit), c.line);
    EXPECT_TRUE(cut.readLineCut(line, c.limit));
    EXPECT_EQ(line, c.line);
    EXPECT_EQ(rest(cut), firstOfRest);

    TextReader part = TextReader::fromText(c.text);
    part.readLinePart(&line, c.limit);
    EXPECT_EQ(line, c.line);
    EXPECT_EQ(part.remaining(), std::string(c.partRest).size());
  }
}

TEST(TextReader, CountsAreHeldAgainstWhatIsLeft) {
  for (const auto& [count, bytes, good] : {std::tuple<std::int64_t, std::uint64_t, bool>{5, 2, true},
                                           {6, 2, false},
                                           {-1, 0, false},
                                           {INT64_MAX, 8, false},
                                           {3, UINT64_MAX, false},
                                           {INT64_MAX, 0, true}}) {
    TextReader in = TextReader::fromText("0123456789");
    EXPECT_EQ(in.checkCount(count, bytes), good) << count;
    EXPECT_EQ(in.ok(), good);
  }
}

// A file of several buffers, with a number, a line end and a CR LF at every place of a buffer's end in turn.
class LargeFile : public test::InDirectory {
 protected:
  std::string path_ = file("large");
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
  test::writeFile(path_, zeros + "42 1." + zeros + "e-3 " + std::string(2000000, '1') + "\nlast");
  TextReader in = TextReader::fromFile(path_);
  std::int32_t integer = 0;
  double real = 0;
  in >> integer >> real;
  EXPECT_EQ(integer, 42);
  EXPECT_EQ(real, 1e-3);
  in >> real;  // two million digits
  EXPECT_TRUE(in.fail());
  TextReader lines = TextReader::fromFile(path_);
  std::string line;
  lines.readLinePart(&line, 299999);
  lines.skipLine();
  EXPECT_TRUE(lines.readLine(line, 4) && lines.atEnd());
  EXPECT_EQ(line, "last");
}

TEST_F(LargeFile, FailureOfReadFailsTheReader) {
  test::writeFile(path_, std::string(1000000, 'a') + "\n");
  for (const int step : {0, 1, 2}) {
    test::FailingCalls calls;
    TextReader in = TextReader::fromFile(path_);
    calls.fail(test::FailingCalls::kRead, 2, EIO);
    std::string line;
    if (step == 0) in.skipLine();
    if (step == 1) in.skipPast('b', 2000000);
    if (step == 2) in.readLine(line, 2000000);
    EXPECT_TRUE(in.fail()) << step;
  }
}

TEST_F(LargeFile, WhatCantBeRead) {
  for (const std::string& path : {path_, directory_.path(), std::string()})
    EXPECT_TRUE(TextReader::fromFile(path).fail());
  test::writeFile(path_, "1");
  EXPECT_TRUE(TextReader::fromFile(directory_.path() + "\\large").ok());
}

TEST_F(LargeFile, APipeIsReadWhole) {
  ASSERT_EQ(::mkfifo(path_.c_str(), 0600), 0);
  EXPECT_EQ(TextReader::fromFile(path_).problem(), path_ + ": nobody writes to it");
  std::thread source([this] { test::writeFile(path_, std::string(300000, ' ') + "7\n"); });
  TextReader in = TextReader::fromFile(path_);
  source.join();
  EXPECT_EQ(in.remaining(), 300002u);
}

}  // namespace
}  // namespace tarvex
