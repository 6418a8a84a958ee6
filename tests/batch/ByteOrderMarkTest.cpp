#include <gtest/gtest.h>

#include <functional>

#include "app/LaunchRequest.h"
#include "batch/CommandFixture.h"
#include "correlation/importStein.h"
#include "factors/FactorList.h"
#include "factors/TabulatedValues.h"
#include "factors/Uniform.h"
#include "support/Golden.h"
#include "support/TextFiles.h"

namespace tarvex {
namespace {

class ByteOrderMark : public test::CommandFixture {
 protected:
  // What a command makes of the file: its output, and the file that it writes.
  std::function<std::string(const std::string&)> command(const test::Words& before, const std::string& output = "") {
    return [this, before, output](const std::string& path) {
      test::Words words = before;
      words.push_back(path);
      if (!output.empty()) words.insert(words.end(), {"-o", file(output)});
      EXPECT_EQ(run(words), kSucceeded) << errors_;
      return out_ + errors_ + (output.empty() ? "" : test::readFile(file(output)));
    };
  }
};

std::string steinRead(const std::string& path) {
  FactorList list;
  std::string message;
  EXPECT_TRUE(importStein(path, kSteinReplace, list, message)) << message;
  return test::textOf(list);
}

std::string tableRead(const std::string& path) {
  Uniform table;
  std::string message;
  EXPECT_TRUE(loadTabulatedValues(path, table, message)) << message;
  return test::textOf(table);
}

// Editors of other systems put one at the start of what they save.
TEST_F(ByteOrderMark, changesNothingInAnyKindOfFile) {
  const auto golden = [](const char* name) { return test::readFile(test::goldenPath(name)); };
  ASSERT_EQ(run({"project", test::goldenPath("plain.spc"), "-o", file("study.psc")}), kSucceeded) << errors_;
  const std::string factors = test::goldenPath("mixed.fac");
  const struct {
    const char* name;
    std::string text;
    std::function<std::string(const std::string&)> read;
  } cases[] = {
      {"a.fac", golden("kinds.fac"), command({"sample", "-m", "random", "-n", "5"}, "b.sam")},
      {"a.imd", golden("plant.imd"), command({"show"})},
      {"a.sam", golden("latin-stein.sam"), command({"project"}, "b.psc")},
      {"a.spc", golden("times.spc"), command({"project"}, "b.psc")},
      {"a.dem", golden("pair.spc"), command({"project"}, "b.psc")},
      {"a.psc", test::readFile(file("study.psc")), command({"project"}, "b.psc")},
      {"external", "2\n2\na\nb\n5 1\n6 2\n", command({"import"}, "b.sam")},
      {"output", golden("plain.out"), command({"run", test::goldenPath("ishigami.sam"), "--output"}, "b.spc")},
      {"rows", golden("rows.csv"), command({"sample", factors, "-m", "fixed", "--rows"}, "b.sam")},
      {"stein", "3 2\na\nb\n5 1\n6 2\n7 4\n", steinRead},
      {"table", "2\n0\t1\t0.25\n1\t3\t0.75\n", tableRead},
      {"Tarvex.ini", "External sample file: a b.txt\n",
       [this](const std::string&) { return LaunchRequest::read(directory_.path()).files().at(0).path; }},
  };
  for (const auto& c : cases) {
    test::writeFile(file(c.name), c.text);
    const std::string plain = c.read(file(c.name));
    test::writeFile(file(c.name), "\xEF\xBB\xBF" + c.text);
    EXPECT_EQ(c.read(file(c.name)), plain) << c.name;
    EXPECT_FALSE(plain.empty()) << c.name;
  }
}

}  // namespace
}  // namespace tarvex
