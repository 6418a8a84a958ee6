#include "model/ModelConfiguration.h"

#include <cerrno>

#include "base/RememberedDirectories.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "base/sampValues.h"
#include "model/InternalRun.h"
#include "model/ModelOutputReader.h"
#include "model/linkWarning.h"
#include "support/FailingCalls.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using test::textOf;

// The Model record and what follows it, from the empty line before it on.
std::string modelPart(const std::string& spcFile, const std::string& sampleName) {
  const std::string text = test::readFile(test::goldenPath(spcFile));
  const std::string before = '\n' + sampleName + '\n';
  return text.substr(text.find(before) + before.size());
}

ModelConfiguration readRecord(const std::string& text) {
  TextReader in = TextReader::fromText(text);
  ModelConfiguration model;
  EXPECT_TRUE(model.read(in));
  return model;
}

std::unique_ptr<InternalModel> modelOf(const std::vector<std::string>& variables, const std::string& equation) {
  auto model = std::make_unique<InternalModel>();
  for (const std::string& name : variables) EXPECT_TRUE(model->addVariable(name));
  EXPECT_TRUE(model->addExpression(0, "y", equation, 1));
  return model;
}

// One factor with the values 0, 1, 2 ...
sampValues samplesOf(std::int32_t runs) {
  sampValues samples;
  EXPECT_TRUE(samples.allocate(1));
  for (std::int32_t i = 0; i < runs; ++i) {
    const double x = i;
    EXPECT_GT(samples.addRow(&x), 0);
  }
  return samples;
}

class ModelConfigurationTest : public testing::Test {
 protected:
  ~ModelConfigurationTest() override { RememberedDirectories::forget(); }
  test::ScopedCurrentDirectory current_;
};

TEST_F(ModelConfigurationTest, StepsOfAnInternalRun) {
  const sampValues samples = samplesOf(50);
  ModelConfiguration model;
  model.choice.setInternalModel(modelOf({"x"}, "1 / (x - 7) / (x - 20)"));
  InternalRun run(*model.choice.internalModel(), samples, model.results);
  ASSERT_TRUE(run.prepare());
  EXPECT_EQ(run.advance(1.0f), 2);
  EXPECT_EQ(run.advance(2.0f), 2);
  EXPECT_EQ(run.advance(60.0f), 60);
  EXPECT_EQ(model.results.runCount(), 30) << "what a stop would leave";
  EXPECT_EQ(run.failedRuns(), 2);
  EXPECT_NE(run.failures().find("first in run 7"), std::string::npos);
  std::vector<double> values;
  for (const std::int32_t failed : {7, 20}) {
    ASSERT_TRUE(model.results.readRun(failed, values));
    EXPECT_TRUE(values.size() == 1 && std::isnan(values[0])) << failed;
  }
  EXPECT_EQ(run.advance(101.0f), 100);
  ASSERT_TRUE(model.results.readRun(49, values));
  EXPECT_EQ(values, std::vector<double>{1.0 / 42 / 29});
  EXPECT_EQ(textOf(readRecord('\n' + textOf(model))), textOf(model)) << "nan comes back";

  sampValues wider;
  ASSERT_TRUE(wider.allocate(2));
  const sampValues none = samplesOf(0);
  for (const sampValues* bad : {&none, &std::as_const(wider)}) {
    InternalRun refused(*model.choice.internalModel(), *bad, model.results);
    EXPECT_FALSE(refused.prepare());
    EXPECT_EQ(model.results.runCount(), 50);
  }
}

TEST_F(ModelConfigurationTest, ResultsBeyondTheBuffer) {
  constexpr std::int32_t kRuns = 70000;
  const sampValues samples = samplesOf(kRuns);
  const std::unique_ptr<InternalModel> model = modelOf({"x"}, "2 * x");
  ModelConfiguration copy;
  ModelResults results;
  InternalRun run(*model, samples, results);
  ASSERT_TRUE(run.prepare());
  ASSERT_EQ(run.advance(100.0f), 100);
  std::string message;
  ASSERT_TRUE(copy.results.copyFrom(results, message));
  results.cut(40000);
  std::vector<double> values;
  for (const std::int32_t kept : {32768, 39999, 5}) {
    ASSERT_TRUE(results.readRun(kept, values));
    EXPECT_EQ(values, std::vector<double>{2.0 * kept});
  }
  ASSERT_TRUE(results.appendRun({0.0}, {0.5}) && results.readRun(40000, values));
  EXPECT_EQ(values, std::vector<double>{0.5});
  for (const std::int32_t kept : {0, 32767, 32768, 69999, 5, 65536, 65535}) {
    ASSERT_TRUE(copy.results.readRun(kept, values));
    EXPECT_EQ(values, std::vector<double>{2.0 * kept});
  }

  test::FailingCalls calls;
  calls.fail(test::FailingCalls::kPwrite, 1, ENOSPC);
  EXPECT_FALSE(results.copyFrom(copy.results, message));
  EXPECT_EQ(message, "Cannot write the working file in " + WorkingFile::directory() + ": No space left on device");
  EXPECT_EQ(results.runCount(), 40001) << "as they were";
  calls.clearFailures();
  ASSERT_TRUE(run.prepare());
  calls.fail(test::FailingCalls::kPwrite, 1, ENOSPC);
  EXPECT_EQ(run.advance(100.0f), -1);
  EXPECT_FALSE(results.readRun(0, values)) << "values were lost";
  calls.clearFailures();
  calls.fail(test::FailingCalls::kPread, 1, EIO);
  TextWriter out;
  copy.write(out);
  EXPECT_FALSE(out.ok()) << "no record with invented results";
}

TEST_F(ModelConfigurationTest, RecordOfOneRun) {
  ModelConfiguration model;
  model.choice.setExternal("Excel Application", "book.ods", 1);
  EXPECT_EQ(textOf(model), "Excel Application\nbook.ods\n2\n1\n0\n0\n0\n\n\n");
  model.results.reset({"y"});
  ASSERT_TRUE(model.results.appendRun({0.0}, {3.0}));
  model.choice.clearInternalModel();
  EXPECT_EQ(textOf(model), "Excel Application\nbook.ods\n1\n1\n1\n1\ny\n0\nRun 0\n1\nt=0\t3\t\n\n\n");
}

TEST_F(ModelConfigurationTest, NamesAndGridsOfARecord) {
  const std::string head = "\nexe\nout\n2\n0\n";
  const ModelConfiguration model = readRecord(head + "3\n2\n" + std::string(40, 'n') +
                                              "\n\n2\nRun 0\n2\nt=0\t1\t2\t\nt=1\t3\t4\t\nRun 1\n0\n"
                                              "Run 2\n1\nt=5\tinf\tnan\t\n\n\n");
  EXPECT_EQ(model.results.outputNames()[0], std::string(28, 'n'));
  EXPECT_EQ(model.results.outputNames()[1], "");
  const std::string longName(40, 'n');
  const ModelConfiguration twins = readRecord(head + "0\n2\n" + longName + "\n" + longName + "z\n0\n\n\n");
  EXPECT_EQ(twins.results.outputNames()[1], std::string(28, 'n') + "_2");
  EXPECT_NE(twins.warningText, "");
  ModelConfiguration unfit;
  unfit.choice.setExternal(std::string(255, 'x'), "", 0);
  EXPECT_EQ(unfit.choice.problem(), "the path of the model has 255 characters, more than 254");
  TextWriter refused;
  unfit.write(refused);
  EXPECT_FALSE(refused.ok());
  EXPECT_EQ(model.results.timeCount(0), 2);
  EXPECT_EQ(model.results.timeCount(1), 0);
  EXPECT_EQ(model.results.time(2, 0), 5.0);
  std::vector<double> values;
  ASSERT_TRUE(model.results.readRun(0, values));
  EXPECT_EQ(values, (std::vector<double>{1, 2, 3, 4}));
  ASSERT_TRUE(model.results.readRun(2, values));
  EXPECT_TRUE(values[0] == INFINITY && std::isnan(values[1]));

  const struct {
    const char *what, *text;
  } bad[] = {
      {"unknown time mode", "0\n0\n4\n\n\n"},
      {"no time axis, two times", "1\n1\ny\n0\nRun 0\n2\nt=0\t1\t\nt=1\t1\t\n\n\n"},
      {"one grid, two grids", "2\n1\ny\n3\nRun 0\n1\nt=0\t1\t\nRun 1\n1\nt=1\t1\t\n\n\n"},
      {"one directory line", "0\n0\n0\n\n"},
  };
  for (const auto& c : bad) {
    TextReader in = TextReader::fromText(head + c.text);
    ModelConfiguration broken;
    EXPECT_FALSE(broken.read(in)) << c.what;
  }
}

TEST_F(ModelConfigurationTest, RecordSetsTheDirectoriesOnlyAsAWhole) {
  const test::TempDirectory directory;
  const std::string record = "\n\n\n2\n0\n0\n0\n0\n" + directory.path() + '\n';
  TextReader cut = TextReader::fromText(record);
  ModelConfiguration model;
  EXPECT_FALSE(model.read(cut));
  EXPECT_EQ(RememberedDirectories::get(RememberedDirectories::Model), "");
  EXPECT_EQ(textOf(readRecord(record + '\n')), record.substr(1) + '\n');
  EXPECT_EQ(RememberedDirectories::get(RememberedDirectories::Model), directory.path());
}

struct Read {
  bool good = false;
  std::string problem;
  ModelConfiguration model;
  std::string warnings;
};

Read readOutput(const std::string& text) {
  const test::TempDirectory directory;
  Read result;
  result.model.choice.kind = kExternalExecutable;
  result.model.choice.outputFile = directory.file("model.out");
  test::writeFile(result.model.choice.outputFile, text);
  result.good = result.model.readModelOutput(
      [&](const std::string& title, const std::string& message) { result.warnings += title + ": " + message + '\n'; },
      result.problem);
  return result;
}

TEST_F(ModelConfigurationTest, OutputFileTimeModes) {
  const std::string head = "1\ny\ntime = yes\n";
  const struct {
    const char* what;
    std::string text;
    std::int32_t mode;
  } cases[] = {
      {"equal grids", head + "2\nRUN 0\n2\n0 1\n1 2\nRUN 1\n2\n0 3\n1 4\n", kSharedGrid},
      {"another last time", head + "2\nRUN 0\n2\n0 1\n1 2\nRUN 1\n2\n0 3\n1.5 4\n", kDifferentGrids},
      {"first and third alike", head + "3\nRUN 0\n1\n0 1\nRUN 1\n1\n5 1\nRUN 2\n1\n0 3\n", kDifferentGrids},
      {"values on any lines", head + "1\nany 0 more\n2 0\n1\n1\n2 dropped\n", kSharedGrid},
      {"no times", "1\ny\ntime = no\n+2\n+1\n2", kNoTimeAxis},
      {"more runs than counted", "1\ny\nx=no\n1\n1\n2\nrubbish\n", kNoTimeAxis},
      {"what follows the count of runs", "1\ny\nx=no\n1" + std::string(19, ' ') + "\n7\n", kNoTimeAxis},
  };
  for (const auto& c : cases) {
    const Read read = readOutput(c.text);
    EXPECT_TRUE(read.good) << c.what;
    EXPECT_EQ(read.model.results.timeMode(), c.mode) << c.what;
    EXPECT_EQ(read.model.choice.kind, kExternalExecutable) << c.what;
    EXPECT_EQ(read.warnings.empty(), c.what != std::string("more runs than counted")) << c.what << read.warnings;
  }
  std::vector<double> values;
  const Read rest = readOutput("1\ny\nx=no\n1" + std::string(19, ' ') + "8\n7\n");
  ASSERT_TRUE(rest.good && rest.model.results.readRun(0, values));
  EXPECT_EQ(values, std::vector<double>{8}) << "only 19 characters behind the count of runs are dropped";
}

TEST_F(ModelConfigurationTest, OutputFileNames) {
  const Read read =
      readOutput("6\na-b\na b\na c\na+b\n" + std::string(255, 'n') + "\n\xc2\xa3;x\ntime = no\n1\n1 2 3 4 5 6\n");
  ASSERT_TRUE(read.good);
  EXPECT_EQ(read.model.results.outputNames(),
            (std::vector<std::string>{"a_b", "a", "a_2", "a_b_2", std::string(255, 'n'), "___x"}));
  EXPECT_EQ(read.warnings,
            "Warning: The model variable a-b will be modified in a_b\n"
            "Warning: The model variable a c will be modified in a_2\n"
            "Warning: The model variable a+b will be modified in a_b_2\n"
            "Warning: The model variable \xc2\xa3;x will be modified in ___x\n");
  const Read refused = readOutput("1\n2a\ntime = no\n1\n1\n");
  EXPECT_FALSE(refused.good);
  EXPECT_EQ(refused.warnings, "Error: Incorrect model variable name: 2a\n");
}

TEST_F(ModelConfigurationTest, OutputFilesThatFail) {
  const struct {
    const char* what;
    std::string text;
  } cases[] = {
      {"no outputs", "0\ntime = no\n1\n1\n"},
      {"blank before the name", "1\n y\ntime = no\n1\n1\n"},
      {"name of 256 characters", "1\n" + std::string(256, 'n') + "\ntime = no\n1\n1\n"},
      {"RUN without times", "1\ny\ntime = no\n1\nRUN 0\n1\n"},
      {"run line of 20 characters", "1\ny\ntime = yes\n1\n" + std::string(18, 'r') + " 0\n1\n0 1\n"},
      {"t = before a time", "1\ny\ntime = yes\n1\nRUN 0\n1\nt = 0 1\n"},
      {"binary", std::string("1\n\0\xff\x7f=\n\0\0\0", 10)},
  };
  for (const auto& c : cases) {
    const Read read = readOutput(c.text);
    EXPECT_FALSE(read.good) << c.what;
    EXPECT_EQ(read.model.choice.kind, kExternalExecutable) << c.what;
    for (std::int32_t run = 0; run < read.model.results.runCount(); ++run) {
      std::vector<double> values;
      EXPECT_TRUE(read.model.results.readRun(run, values)) << c.what;
    }
  }
  ModelConfiguration missing = readRecord(modelPart("ishigami-run.spc", "ishigami.sam"));
  missing.choice.outputFile = "/no/such/file";
  std::string problem;
  EXPECT_FALSE(missing.readModelOutput([](const std::string&, const std::string&) {}, problem));
  EXPECT_EQ(problem, "/no/such/file: No such file or directory");
  EXPECT_TRUE(missing.results.runCount() == 0 && missing.choice.internalModel() == nullptr);
  EXPECT_EQ(missing.choice.kind, kInternalModel);
}

TEST_F(ModelConfigurationTest, NumbersOfAnOutputFileEndAtWhiteSpace) {
  const auto read = [](const std::string& number) { return readOutput("2\ny\nz\ntime = no\n2\n1 2\n3 " + number); };
  const struct {
    const char* text;
    double value;  // nan: refused
  } cases[] = {{"1.5D+03", 1.5e3}, {"-0.1d-10\n", -0.1e-10},
               {"1.5E+03", 1.5e3}, {"-inf", -INFINITY},
               {"0.1-103", NAN},   {"1,37", NAN},
               {"1.#INF", NAN},    {"1.5DD3", NAN},
               {"D3", NAN},        {"infd", NAN},
               {"0x10", NAN},      {"1;", NAN}};
  for (const auto& c : cases) {
    const Read result = read(c.text);
    EXPECT_EQ(result.good, !std::isnan(c.value)) << c.text;
    std::vector<double> values;
    if (result.good)
      EXPECT_TRUE(result.model.results.readRun(1, values) && values[1] == c.value) << c.text;
    else
      EXPECT_TRUE(result.problem.ends_with("/model.out:7: expected a number, found '" + std::string(c.text) +
                                           "' (run 1, output z)"))
          << result.problem;
  }
}

TEST_F(ModelConfigurationTest, OutputFilesOfPartsAreJoined) {
  const test::TempDirectory directory;
  const std::string head = "1\na-b\ntime = yes\n";
  test::writeFile(directory.file("0"), head + "1\nRUN 0\n2\n0 1\n1 2\n");
  test::writeFile(directory.file("3"), head + "2\nRUN 0\n2\n0 3\n1 4\nRUN 1\n2\n0 5\n1 6\n");
  test::writeFile(directory.file("cut"), head + "2\nRUN 0\n2\n0 3\n1 4\nRUN 1\n2\n0 5\n");
  test::writeFile(directory.file("other"), "1\nz\ntime = yes\n1\nRUN 0\n1\n0 1\n");
  test::writeFile(directory.file("timeless"), "1\na-b\ntime = no\n1\n1\n");
  for (const std::int32_t first : {0, 2}) {
    int warnings = 0;
    ModelResults results;
    ModelOutputReader reader(results, [&](const auto&, const auto&) { ++warnings; });
    ASSERT_TRUE(reader.read(directory.file("0"), first)) << reader.errorText();
    for (const char* bad : {"cut", "other", "timeless", "missing"})
      EXPECT_FALSE(reader.read(directory.file(bad), first + 3)) << bad;
    ASSERT_TRUE(reader.read(directory.file("3"), first + 3)) << reader.errorText();
    EXPECT_EQ(results.runCount(), first + 5);
    EXPECT_EQ(results.timeMode(), kSharedGrid);
    EXPECT_EQ(warnings, 1);
    std::vector<double> values;
    for (std::int32_t run = 0; run < results.runCount(); ++run) {
      ASSERT_TRUE(results.readRun(run, values));
      const bool isThere = run == first || run >= first + 3;
      EXPECT_EQ(std::isnan(values[0]), !isThere) << run;
      EXPECT_TRUE(run != first + 4 || values == (std::vector<double>{5, 6}));
    }
  }
}

TEST_F(ModelConfigurationTest, namesAtOtherPlacesAreWarnedOf) {
  EXPECT_EQ(linkWarning({"x"}, *modelOf({"x"}, "x")), "");
  EXPECT_EQ(linkWarning({"a", "b"}, *modelOf({"x", "b"}, "x")), "");
  EXPECT_EQ(linkWarning({"a", "b", "c"}, *modelOf({"x", "c", "b"}, "x")),
            "The model takes the factors by position, not by name, and some names are not at the same place:\n"
            "b: factor 2 of the sample, input 3 of the model\nc: factor 3 of the sample, input 2 of the model");
}

}  // namespace
}  // namespace tarvex
