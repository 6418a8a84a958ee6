#include <fstream>
#include <nlohmann/json.hpp>

#include "base/uniformRandom.h"
#include "batch/CommandFixture.h"
#include "support/Test.h"

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
class GoldenCase : public test::CommandFixture, public testing::WithParamInterface<json> {};

TEST_P(GoldenCase, GivesTheExpectedFiles) {
  restoreInitialRandomState();
  const json& goldenCase = GetParam();
  const int status = run(goldenCase["command"].get<test::Words>());
  if (goldenCase.value("status", "") == "failed") {
    EXPECT_EQ(status, kFailed);
    EXPECT_NE(errors_.find(goldenCase.value("stderr", "")), std::string::npos) << errors_;
    EXPECT_TRUE(directory_.entries().empty());
    return;
  }
  ASSERT_EQ(status, kSucceeded) << errors_;
  for (const auto& [produced, expected] : goldenCase["expect"].items())
    EXPECT_TRUE(test::compareGolden(expected.get<std::string>(), test::readFile(placed(produced))));
}

INSTANTIATE_TEST_SUITE_P(Cases, GoldenCase, testing::ValuesIn(allCases().get<std::vector<json>>()),
                         [](const auto& goldenCase) { return nameOf(goldenCase.param); });

}  // namespace
}  // namespace tarvex
