#include "postproc/VelsConfiguration.h"

#include <gtest/gtest.h>

#include <limits>

#include "base/RememberedDirectories.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "postproc/FastStats.h"
#include "postproc/RegressionStats.h"
#include "postproc/SobolStats.h"
#include "postproc/ValueTables.h"
#include "sampling/Sampler.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"

namespace tarvex {
namespace {

std::string textOf(const VelsConfiguration& vels) {
  TextWriter out;
  vels.save(out);
  return out.text();
}

bool load(const std::string& text, VelsConfiguration& vels) {
  TextReader in = TextReader::fromText(text);
  return vels.load(in);
}

IndexRecord recordOf(const std::string& name, std::vector<double> values, std::vector<std::string> group = {}) {
  return {name, FactorKind::Uncertain, std::move(values), std::move(group)};
}

// A record of each class, for two variables, computed where that is quick.
std::unique_ptr<SensitivityStats> statsOfType(std::int32_t typeId) {
  std::unique_ptr<SensitivityStats> stats = makeSensitivityOfType(typeId);
  stats->variableCount = 2;
  stats->factorCount = 2;
  stats->records = {recordOf("a", {0.25, -0.5, 1e-9, 4}), recordOf("b", {1, 2, 3, 4})};
  if (typeId == SensitivityStats::kImportance)
    for (IndexRecord& record : stats->records) record.values.resize(2);
  if (auto* fast = dynamic_cast<FastStats*>(stats.get())) fast->recordCount = 2;
  if (auto* sobol = dynamic_cast<SobolStats*>(stats.get())) {
    sobol->slotMode = SobolStats::kByTerm;
    sobol->maxOrder = 2;
    sobol->extra = 2;
    sobol->termCount = 2;
    sobol->records = {recordOf("a", {1, 2, 3, 4, 5, 6}, {"a"}), recordOf("a,b", {1, 2, 3, 4}, {"a", "b"})};
  }
  stats->computed = true;
  if (typeId == SensitivityStats::kRegression) {
    const PrepConfiguration prep =
        sampleOf({{1, 2, 3, 5}, {4, 1, 9, 2}, {1, 1, 1, 1}}, {"Uniform", "Beta", "Constant"});
    EXPECT_TRUE(stats->compute(prep, tableOf({{1, 2, 4, 3}, {0, 1, 0, 0}})));
  }
  return stats;
}

VelsConfiguration velsOfType(std::int32_t typeId, bool analysed = true) {
  VelsConfiguration vels;
  vels.setOutputs({"y", "pressure drop"});
  vels.addVariable("y");
  vels.addVariable("pressure drop[max]");
  vels.setWeight(1, 0.25f);
  if (typeId >= 0) vels.sensitivity = statsOfType(typeId);
  if (analysed) vels.uncertainty.compute(vels.selectedVariables(), tableOf({{1, 2, 4, 3}, {0, 1, 0, 0}}));
  return vels;
}

TEST(VelsConfiguration, SelectionAndWeights) {
  VelsConfiguration vels;
  vels.addVariable("z");
  EXPECT_TRUE(vels.dirty);
  vels.prepareSensitivity(MethodId::kRandom);
  vels.setOutputs({"y", std::string(5000, 'n')});
  EXPECT_TRUE(vels.selectedVariables().empty());
  EXPECT_EQ(vels.sensitivity, nullptr);
  EXPECT_EQ(vels.outputs()[1].name.size(), 4095u);
  vels.addVariable("y");
  vels.addVariable("y[max]");
  EXPECT_FALSE(vels.removeVariable(2));
  EXPECT_FALSE(vels.removeVariable(-1));
  EXPECT_TRUE(vels.removeVariable(0));
  EXPECT_EQ(vels.selectedVariables(), std::vector<std::string>{"y[max]"});
  EXPECT_FALSE(vels.setWeight(0, -0.5f));
  EXPECT_FALSE(vels.setWeight(0, std::numeric_limits<float>::quiet_NaN()));
  EXPECT_FALSE(vels.setWeight(2, 0.5f));
  EXPECT_EQ(vels.outputs()[0].weight, 1.0f);
  EXPECT_TRUE(vels.setWeight(0, 0.0f));
  EXPECT_EQ(vels.outputs()[0].weight, 0.0f);
  vels.clearVariables();
  EXPECT_TRUE(vels.selectedVariables().empty());
}

TEST(VelsConfiguration, ClassOfEachMethod) {
  const std::pair<std::int32_t, std::int32_t> rows[] = {
      {MethodId::kFast, SensitivityStats::kFast},           {MethodId::kFixed, SensitivityStats::kRegression},
      {MethodId::kLatin, SensitivityStats::kRegression},    {MethodId::kLpTau, SensitivityStats::kRegression},
      {MethodId::kMorris, SensitivityStats::kMorris},       {MethodId::kRandom, SensitivityStats::kRegression},
      {MethodId::kRepLatin, SensitivityStats::kImportance}, {MethodId::kSobol, SensitivityStats::kSobol}};
  for (const auto& [method, type] : rows) {
    VelsConfiguration vels;
    vels.prepareSensitivity(method);
    ASSERT_NE(vels.sensitivity, nullptr) << method;
    EXPECT_EQ(vels.sensitivity->typeId(), type) << method;
  }
  for (const std::int32_t unknown : {-1, 8}) EXPECT_EQ(makeSensitivityForMethod(unknown), nullptr);
  for (const std::int32_t unknown : {-1, 5}) EXPECT_EQ(makeSensitivityOfType(unknown), nullptr);
}

TEST(VelsConfiguration, CopiesAreDeep) {
  const VelsConfiguration original = velsOfType(SensitivityStats::kRegression);
  VelsConfiguration copy = original;
  copy.sensitivity->records[0].values[0] = 99;
  copy.addVariable("more");
  EXPECT_NE(original.sensitivity->records[0].values[0], 99);
  VelsConfiguration adopted;
  adopted.setOutputs({"y"});
  adopted.adoptSensitivity(*original.sensitivity);
  EXPECT_EQ(adopted.sensitivity->typeId(), SensitivityStats::kRegression);
  EXPECT_NE(textOf(copy), textOf(original));
  copy = original;
  EXPECT_EQ(textOf(copy), textOf(original));
}

TEST(VelsConfiguration, TextOfARecord) {
  VelsConfiguration vels;
  vels.setOutputs({"y", "z"});
  vels.addVariable("y[0.5]");
  EXPECT_EQ(textOf(vels), "1\ny[0.5]\n2\ny\n1\nz\n1\n\n-1\n0\n0\n0.9\t0.75\n");
  vels.prepareSensitivity(MethodId::kSobol);
  EXPECT_EQ(textOf(vels), "1\ny[0.5]\n2\ny\n1\nz\n1\n\n4\n0\n0\n0\n0\n0\n0\nindexes = no\n0\n0\n0.9\t0.75\n");
  vels.prepareSensitivity(MethodId::kRandom);
  EXPECT_EQ(textOf(vels), "1\ny[0.5]\n2\ny\n1\nz\n1\n\n0\n0\n0\n0.95\nindexes = no\n0\n0\n0.9\t0.75\n");
}

TEST(VelsConfiguration, WriteReadWrite) {
  for (const std::int32_t type : {-1, 0, 1, 2, 3, 4})
    for (const bool analysed : {false, true}) {
      SCOPED_TRACE(type);
      const std::string text = textOf(velsOfType(type, analysed));
      VelsConfiguration back;
      ASSERT_TRUE(load(text, back));
      EXPECT_EQ(textOf(back), text);
      ASSERT_EQ(back.sensitivity != nullptr, type >= 0);
      if (type >= 0) {
        EXPECT_TRUE(back.sensitivity->computed);
      }
      EXPECT_EQ(back.outputs()[1].weight, 0.25f);
    }
}

// The numbers survive at six digits; the flags can be decided anew from them.
TEST(VelsConfiguration, RegressionGoesOnAfterLoading) {
  const VelsConfiguration vels = velsOfType(SensitivityStats::kRegression);
  VelsConfiguration back;
  ASSERT_TRUE(load(textOf(vels), back));
  auto& stats = dynamic_cast<RegressionStats&>(*back.sensitivity);
  EXPECT_EQ(stats.activeCount, 2);
  double raw = 0.0;
  double ranks = 0.0;
  EXPECT_TRUE(stats.determination(1, raw, ranks));
  const PrepConfiguration prep = sampleOf({{1, 2, 3, 5}, {4, 1, 9, 2}, {1, 1, 1, 1}}, {"Uniform", "Beta", "Constant"});
  EXPECT_TRUE(stats.applyAlpha(0.9f, prep, tableOf({{1, 2, 4, 3}, {0, 1, 0, 0}})));
}

TEST(VelsConfiguration, ReaderRules) {
  const std::string tail = "0\n0\n0.9\t0.75\n";
  struct Row {
    const char* name;
    std::string text;
    bool loads;
  };
  const Row rows[] = {
      {"complete", "0\n1\ny\n1\n\n-1\n" + tail, true},
      {"carriage returns, no last line end", "0\r\n1\r\ny\r\n1\r\n\r\n-1\r\n0\r\n0\r\n0.9\t0.75", true},
      {"no outputs", "0\n0\n\n-1\n" + tail, false},
      {"outputs below 0", "0\n-1\n\n-1\n" + tail, false},
      {"selections below 0", "-1\n1\ny\n1\n\n-1\n" + tail, false},
      {"unknown statistics", "0\n1\ny\n1\n\n17\n" + tail, true},
      {"another word than indexes", "0\n1\ny\n1\n\n1\n2\n1\nindexes = YES\n" + tail, true},
      {"indexes of no factors", "0\n1\ny\n1\n\n1\n0\n1\nindexes = yes\n" + tail, true},
      {"record without a name", "0\n1\ny\n1\n\n1\n1\n1\nindexes = yes\n\n3\t \t1\t \t2\t \t\n" + tail, false},
      {"record of no variables", "0\n1\ny\n1\n\n1\n1\n0\nindexes = yes\na\n3\t \t\n" + tail, false},
      {"kind that there is not", "0\n1\ny\n1\n\n1\n1\n1\nindexes = yes\na\n4\t \t1\t \t2\t \t\n" + tail, false},
      {"text behind a number", "0\n1\ny\n1\n\n1\n2\n1e999\nindexes = no\n" + tail, false},
      {"results without bounds", "0\n1\ny\n1\n\n1\n1\n1\nindexes = yes\na\n3\t \tnan\t \t-inf\t \t\n" + tail, true},
      {"variables below 0", "0\n1\ny\n1\n\n-1\n-1\n0\n0.9\t0.75\n", false},
      {"weight below 0", "0\n1\ny\n-2\n\n-1\n" + tail, true},
      {"name of 4095", "0\n1\n" + std::string(4095, 'y') + "\n1\n\n-1\n" + tail, true},
      {"name of 4096", "0\n1\n" + std::string(4096, 'y') + "\n1\n\n-1\n" + tail, false},
  };
  for (const Row& row : rows) {
    VelsConfiguration vels;
    ASSERT_EQ(load(row.text, vels), row.loads) << row.name;
    if (!row.loads) continue;
    EXPECT_TRUE(vels.outputs()[0].weight >= 0.0f) << row.name;
    VelsConfiguration back;
    EXPECT_TRUE(load(textOf(vels), back)) << row.name;
    EXPECT_EQ(textOf(back), textOf(vels)) << row.name;
  }
}

TEST(VelsConfiguration, DirectoryIsEnteredWhenAllIsRead) {
  const test::ScopedCurrentDirectory current;
  const test::TempDirectory directory;
  const std::string head = "0\n1\ny\n1\n" + directory.path() + "\n-1\n";
  RememberedDirectories::forget();
  VelsConfiguration vels;
  EXPECT_FALSE(load(head + "0\n0\n", vels));
  EXPECT_EQ(RememberedDirectories::get(RememberedDirectories::Vels), "");
  EXPECT_TRUE(load(head + "0\n0\n0.9\t0.75\n", vels));
  EXPECT_EQ(RememberedDirectories::get(RememberedDirectories::Vels), directory.path());
  EXPECT_NE(textOf(vels).find("\n" + directory.path() + "\n"), std::string::npos);
  RememberedDirectories::forget();
}

// Records in which each field has been damaged in turn.
class DamagedRecord : public testing::TestWithParam<std::int32_t> {
 protected:
  static std::string join(const std::vector<std::string>& lines, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += lines[i] + '\n';
    return text;
  }
};

TEST_P(DamagedRecord, CutBehindEachLine) {
  std::vector<std::string> lines = test::splitLines(textOf(velsOfType(GetParam())));
  lines.pop_back();
  for (std::size_t count = 0; count < lines.size(); ++count) {
    VelsConfiguration vels;
    EXPECT_FALSE(load(join(lines, count), vels)) << "behind line " << count;
  }
}

TEST_P(DamagedRecord, LongAndBinaryLines) {
  const std::vector<std::string> lines = test::splitLines(textOf(velsOfType(GetParam())));
  for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
    std::vector<std::string> damaged = lines;
    VelsConfiguration vels;
    damaged[i] = std::string(5000, 'x');
    EXPECT_FALSE(load(join(damaged, damaged.size()), vels)) << "line " << i + 1;
    damaged[i] = std::string("\xff\x00\x01\x80", 4);
    if (load(join(damaged, damaged.size()), vels)) load(textOf(vels), vels);
  }
}

TEST_P(DamagedRecord, EachNumberReplaced) {
  const std::string text = textOf(velsOfType(GetParam()));
  const std::string wordEnds = "\n\t ";
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = text.find_first_of(wordEnds, at);
    double number = 0.0;
    TextReader word = TextReader::fromText(text.substr(at, end - at));
    if ((word >> number).ok() && word.atEnd()) {
      for (const char* other : {"x", "1e999", "2147483647", "-1", "99999999999999999999", ""}) {
        VelsConfiguration vels;
        const bool loaded = load(text.substr(0, at) + other + text.substr(end), vels);
        if (other[0] == 'x' || other[0] == '1') {
          EXPECT_FALSE(loaded) << other << " at " << at;
        } else if (loaded) {
          VelsConfiguration back;
          EXPECT_TRUE(load(textOf(vels), back)) << other << " at " << at;
        }
      }
    }
    at = end + 1;
  }
}

std::string nameOfType(const testing::TestParamInfo<std::int32_t>& row) {
  return row.param < 0 ? "None" : "Type" + std::to_string(row.param);
}

INSTANTIATE_TEST_SUITE_P(AllTypes, DamagedRecord, testing::Values(-1, 0, 1, 2, 3, 4), nameOfType);

}  // namespace
}  // namespace tarvex
