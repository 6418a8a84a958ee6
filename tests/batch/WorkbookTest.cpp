#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "base/RememberedDirectories.h"
#include "batch/Commands.h"
#include "support/Golden.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"

namespace tarvex {
namespace {

// A sample of twenty runs and a workbook for them, called from where they lie.
class Workbook : public testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::current_path(directory_.path());
    std::filesystem::copy_file(TARVEX_EXAMPLES "/workbook/ishigami.xlsx", "my book.xlsx");
    std::ostringstream ignored;
    ASSERT_EQ(
        runBatch({"sample", test::goldenPath("ishigami.fac"), "-o", "in.sam", "--method", "random", "--runs", "20"},
                 ignored, ignored, false),
        kSucceeded);
    RememberedDirectories::forget();
    std::filesystem::current_path(directory_.path());
  }
  void TearDown() override { RememberedDirectories::forget(); }

  // The program itself, as only that one finds its helper.
  static int program(const std::string& words) {
    return std::system((std::string(TARVEX_BATCH_PROGRAM " run in.sam ") + words + " > out 2> errors").c_str());
  }

  test::ScopedCurrentDirectory stay_;
  test::TempDirectory directory_;
};

TEST_F(Workbook, isComputedAndReadAgain) {
#ifndef TARVEX_SHEET
  GTEST_SKIP() << "tarvex-sheet is not built: it needs libreoffice-calc and libreoffice-dev";
#endif
  ASSERT_EQ(program("-o run.spc --workbook 'my book.xlsx'"), 0) << test::readFile("errors");
  EXPECT_EQ(test::readFile("out"), "20 runs, 1 output: run.spc\n");
  const std::string record = test::readFile("run.spc");
  EXPECT_NE(record.find("\nExcel Application\nmy book.xlsx\n1\n1\n20\n1\ny\n0\nRun 0\n"), std::string::npos);

  const std::string computed = test::readFile("my book.xlsx");
  ASSERT_EQ(program("-o again.spc --workbook 'my book.xlsx' --read-only"), 0) << test::readFile("errors");
  const auto results = [](const std::string& text) { return text.substr(text.find("\nRun 0\n")); };
  EXPECT_EQ(results(test::readFile("again.spc")), results(record));
  EXPECT_EQ(test::readFile("my book.xlsx"), computed);
  EXPECT_EQ(directory_.entries(),
            (std::vector<std::string>{"again.spc", "errors", "in.sam", "my book.xlsx", "out", "run.spc"}));
}

TEST_F(Workbook, withoutLibreOfficeTheUserIsToldWhatToInstall) {
  std::ostringstream out;
  std::ostringstream errors;
  EXPECT_EQ(runBatch({"run", "in.sam", "-o", "run.spc", "--workbook", "my book.xlsx"}, out, errors, false), kFailed);
  EXPECT_EQ(errors.str(),
            "Excel not registered properly\nWorkbooks need LibreOffice Calc: install the packages libreoffice-calc and "
            "libreoffice-dev, and build again.\nError in the Excel model execution\n");
  EXPECT_EQ(runBatch({"run", "in.sam", "-o", "run.spc", "--workbook", "b", "--output", "o"}, out, errors, false),
            kWrongUsage);
  EXPECT_FALSE(std::filesystem::exists(directory_.file("run.spc")));
}

}  // namespace
}  // namespace tarvex
