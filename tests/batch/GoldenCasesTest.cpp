#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "base/RememberedDirectories.h"
#include "base/uniformRandom.h"
#include "batch/Commands.h"
#include "support/Golden.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"

namespace tarvex {
namespace {

using nlohmann::json;

json allCases() {
  std::ifstream in(test::goldenPath("cases.json"));
  return json::parse(in);
}

// A file's cases share a name: the subcommand tells them apart.
std::string nameOf(const json& goldenCase) {
  std::string name = goldenCase["command"][0].get<std::string>() + "_" + goldenCase["name"].get<std::string>();
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

// Each case is a command line: run in-process it must give the expected files, or fail and leave none.
class GoldenCase : public testing::TestWithParam<json> {
 protected:
  void SetUp() override {
    restoreInitialRandomState();
    RememberedDirectories::forget();
  }

  // A word of the command with its place filled in: in/ is the folder of the inputs, out/ an empty one.
  std::string placed(const std::string& word) const {
    if (word.starts_with("in/")) return test::goldenPath(word.substr(3));
    return word.starts_with("out/") ? out_.file(word.substr(4)) : word;
  }

  test::TempDirectory out_;
};

TEST_P(GoldenCase, GivesTheExpectedFiles) {
  const test::ScopedCurrentDirectory stay;
  const json& goldenCase = GetParam();
  std::vector<std::string> words;
  for (const json& word : goldenCase["command"]) words.push_back(placed(word));
  std::ostringstream out;
  std::ostringstream errors;
  const int status = runBatch(words, out, errors, false);
  if (goldenCase.value("status", "") == "failed") {
    EXPECT_EQ(status, kFailed);
    EXPECT_NE(errors.str().find(goldenCase.value("stderr", "")), std::string::npos) << errors.str();
    EXPECT_TRUE(out_.entries().empty());
    return;
  }
  ASSERT_EQ(status, kSucceeded) << errors.str();
  for (const auto& [produced, expected] : goldenCase["expect"].items())
    EXPECT_TRUE(test::compareGolden(expected.get<std::string>(), test::readFile(placed(produced))));
}

INSTANTIATE_TEST_SUITE_P(Cases, GoldenCase, testing::ValuesIn(allCases().get<std::vector<json>>()),
                         [](const auto& goldenCase) { return nameOf(goldenCase.param); });

}  // namespace
}  // namespace tarvex
