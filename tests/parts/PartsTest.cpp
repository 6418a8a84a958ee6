#include <cerrno>

#include "factors/FactorList.h"
#include "model/ModelResults.h"
#include "parts/JobScript.h"
#include "parts/Ledger.h"
#include "parts/PartAttempt.h"
#include "parts/PartOutput.h"
#include "parts/PartSample.h"
#include "parts/PartStates.h"
#include "parts/PartTrial.h"
#include "parts/RunDirectory.h"
#include "parts/RunLock.h"
#include "parts/RunRecord.h"
#include "parts/SiteSettings.h"
#include "parts/SlurmEngine.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SampleFiles.h"
#include "support/FailingCalls.h"
#include "support/Test.h"

namespace tarvex {
namespace {

class PartsTest : public test::InDirectory {};

TEST_F(PartsTest, RowsAreCutIntoPartsOfOneSizeOrOneMore) {
  for (const auto& [rows, parts, wanted] : {std::tuple{10, 3, 3}, {3, 10, 3}, {1, 1, 1}, {1000, 7, 7}}) {
    const std::vector<Part> table = splitRows(rows, parts);
    EXPECT_EQ(table.size(), static_cast<std::size_t>(wanted));
    std::int32_t next = 0;
    for (const Part& part : table) {
      EXPECT_EQ(part.first, next);
      EXPECT_LE(std::abs(part.rows - rows / wanted), 1);
      next += part.rows;
    }
    EXPECT_EQ(next, rows);
  }
}

// The same table listed both ways, in numbers that no writer of the system would write.
TEST_F(PartsTest, TextOfTheRowsStaysWhatItIs) {
  for (const auto& [text, wanted] :
       {std::pair{"0\n3\n2\n0\n0.50\t1e0\t\n2.000000000000001\t -0\t\n3 4\n0\n",
                  "0\n1\n2\n0\n2.000000000000001\t -0\t\n0\n"},
        {"1\n3\n2\n1\n0.50\t2.0 3\t\n1e0\t-0\t\n4.\n0\n", "1\n1\n2\n1\n2.0\t\n-0\t\n0\n"}}) {
    test::writeFile(file("s.sam"), text);
    PartSample sample;
    std::string message;
    ASSERT_TRUE(sample.open(file("s.sam"), splitRows(3, 3), FactorList(), message)) << message;
    test::writeFile(file("new"), "another sample");
    std::filesystem::rename(file("new"), file("s.sam"));  // what was opened stays
    ASSERT_TRUE(sample.write(1, file("part.sam"), message)) << message;
    EXPECT_TRUE(test::readFile(file("part.sam")).starts_with(wanted)) << test::readFile(file("part.sam"));
  }
  test::writeFile(file("s.sam"), "0\n3\n2\n0\n1\t2\t\n3\t4\t\n0\n");
  PartSample sample;
  std::string message;
  EXPECT_FALSE(sample.open(file("s.sam"), splitRows(4, 2), FactorList(), message));
  EXPECT_NE(message.find("the parts have 4 runs, the sample has 3"), std::string::npos) << message;
}

TEST_F(PartsTest, PartsAreSampleFilesOfTheirRows) {
  for (const char* name : {"ishigami.sam", "random-by-factor.sam"}) {
    PrepConfiguration whole;
    std::string message;
    ASSERT_TRUE(loadSampleFile(test::goldenPath(name), whole, message)) << message;
    const std::vector<Part> parts = splitRows(whole.samples.rows(), 3);
    PartSample sample;
    ASSERT_TRUE(sample.open(test::goldenPath(name), parts, whole.factors, message)) << message;
    for (std::size_t i = 0; i < parts.size(); ++i) {
      ASSERT_TRUE(sample.write(i, file("part.sam"), message)) << message;
      PrepConfiguration part;
      ASSERT_TRUE(loadSampleFile(file("part.sam"), part, message)) << message;
      ASSERT_EQ(part.samples.rows(), parts[i].rows);
      EXPECT_EQ(part.factors.factorCount(), whole.factors.factorCount());
      EXPECT_FALSE(part.sampler || part.sampleStatistics);
      std::vector<double> row(static_cast<std::size_t>(whole.samples.columns()));
      std::vector<double> wanted = row;
      for (std::int32_t r = 0; r < parts[i].rows; ++r) {
        ASSERT_TRUE(part.samples.getRow(r, row.data()) && whole.samples.getRow(parts[i].first + r, wanted.data()));
        EXPECT_EQ(row, wanted) << name;
      }
    }
  }
}

TEST_F(PartsTest, OutputsAreJoinedWhereTheyAgree) {
  const std::string plain = "1\ny\ntime = no\n2\n";
  const std::string timed = "1\ny\ntime = yes\n2\nRUN 0\n1\n0.5 1\nRUN 1\n1\n";
  struct Case {
    const char* name;
    std::vector<std::string> files;  // of two runs each; empty: missing
    const char* problem;             // empty: they are joined
    std::size_t failed;
    std::int32_t mode;
    std::size_t nans;
  };
  const std::vector<Case> cases = {
      {"plain", {plain + "1\n2\n", plain + "3\n4\n"}, "", 2, kNoTimeAxis, 0},
      {"first missing", {"", plain + "3\n4\n"}, "", 2, kNoTimeAxis, 2},
      {"last missing", {plain + "3\n4\n", "", ""}, "", 3, kNoTimeAxis, 4},
      {"all missing", {"", ""}, "Not one part", 2, 0, 0},
      {"one grid", {timed + "0.5 2\n", timed + "0.5 3\n"}, "", 2, kSharedGrid, 0},
      {"other grid in the last run", {timed + "0.5 2\n", timed + "0.6 3\n"}, "", 2, kDifferentGrids, 0},
      {"other names", {plain + "1\n2\n", "1\nz\ntime = no\n2\n3\n4\n"}, "these are not the outputs", 1, 0, 0},
      {"times and none", {plain + "1\n2\n", timed + "0.5 2\n"}, "a time axis belongs", 1, 0, 0},
      {"a run short", {plain + "1\n2\n", "1\ny\ntime = no\n1\n3\n"}, "it has 1 runs", 1, 0, 0},
      {"a run too many", {"1\ny\ntime = no\n3\n1\n2\n3\n", plain + "3\n4\n"}, "it has 3 runs", 0, 0, 0}};
  for (const Case& test : cases) {
    std::vector<std::string> paths;
    for (const std::string& text : test.files) {
      paths.push_back(text.empty() ? "" : file(std::to_string(paths.size())));
      if (!text.empty()) test::writeFile(paths.back(), text);
    }
    const std::vector<Part> parts =
        splitRows(static_cast<std::int32_t>(2 * paths.size()), static_cast<int>(paths.size()));
    ModelResults results;
    std::size_t failed = 0;
    std::string message;
    const bool joined = joinParts(
        parts, paths, [](const auto&, const auto&) {}, results, failed, message);
    EXPECT_EQ(joined, *test.problem == '\0') << test.name << message;
    EXPECT_NE(message.find(test.problem), std::string::npos) << test.name << message;
    EXPECT_EQ(failed, test.failed) << test.name;
    EXPECT_EQ(results.runCount(), joined ? parts.back().first + 2 : 0) << test.name;
    EXPECT_EQ(results.timeMode(), joined ? test.mode : kNoTimeAxis) << test.name;
    std::size_t nans = 0;
    std::vector<double> values;
    for (std::int32_t run = 0; run < results.runCount(); ++run)
      nans += results.readRun(run, values) && std::isnan(values[0]) ? 1 : 0;
    EXPECT_EQ(nans, test.nans) << test.name;
  }
}

TEST_F(PartsTest, LedgerKeepsWhatItConfirmedAndNothingElse) {
  const std::string path = file("ledger");
  const auto add = [&path](const char* event, std::string& message) {
    Ledger ledger;
    std::vector<LedgerEntry> entries;
    return ledger.open(path, entries, message) &&
           ledger.append({{event, {1, 2}, 3, "job", "host", 4, 5.5, "te\"\xff"}}, message);
  };
  std::string message;
  ASSERT_TRUE(add("one", message)) << message;
  const std::string whole = test::readFile(path);
  for (const auto call : {test::FailingCalls::kWrite, test::FailingCalls::kFsync}) {
    test::FailingCalls calls;
    calls.fail(call, 1);
    EXPECT_FALSE(add("two", message));
    EXPECT_EQ(message, path + ": No space left on device");
    EXPECT_EQ(test::readFile(path), whole);
  }
  test::writeFile(path, whole + "damaged\n" + whole.substr(0, whole.size() / 2));
  ASSERT_TRUE(add("three", message)) << message;
  std::uint64_t from = 0;
  const std::vector<LedgerEntry> entries = readLedger(path, from);
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0].event + entries[1].event, "onethree");
  EXPECT_EQ(entries[0].parts, (std::vector<std::int32_t>{1, 2}));
  EXPECT_EQ(entries[0].job + entries[0].host + std::to_string(entries[0].code), "jobhost4");
}

TEST_F(PartsTest, StatesFollowTheLedger) {
  struct Case {
    std::vector<LedgerEntry> entries;
    PartState::Stage stage;
    std::int32_t attempt;
  };
  const LedgerEntry sent{"sent", {1}, 1};
  const LedgerEntry done{"done", {1}, 1};
  const LedgerEntry failed{"failed", {1}, 1};
  const std::vector<Case> cases = {{{}, PartState::Open, 0},
                                   {{sent}, PartState::Sent, 1},
                                   {{sent, {"begun", {1}, 1}}, PartState::Begun, 1},
                                   {{sent, failed}, PartState::Failed, 1},
                                   {{sent, failed, {"again", {1}, 1}, {"sent", {1}, 2}}, PartState::Sent, 2},
                                   {{sent, failed, {"missing", {1}, 1}}, PartState::Missing, 1},
                                   {{sent, failed, {"missing", {1}, 1}, {"resumed"}}, PartState::Open, 1},
                                   {{sent, {"lost", {1}, 1}}, PartState::Open, 1},
                                   {{sent, {"stopped", {0, 1, 2, 77, -1}}}, PartState::Open, 1},
                                   {{sent, done, failed, {"lost", {1}, 2}, {"resumed"}}, PartState::Done, 1},
                                   {{sent, done, {"spoilt", {1}}}, PartState::Open, 1}};
  for (const Case& test : cases) {
    PartStates states(splitRows(9, 3));
    states.apply(test.entries);
    EXPECT_EQ(states[1].stage, test.stage) << test.entries.size();
    EXPECT_EQ(states[1].attempt, test.attempt) << test.entries.size();
    EXPECT_EQ(states.rowsIn(test.stage), test.stage == PartState::Open ? 9 : 3);
  }
}

TEST_F(PartsTest, OnlyOneDrivesARun) {
  std::string message;
  {
    RunLock first;
    RunLock second;
    ASSERT_TRUE(first.take(file("lock"), message)) << message;
    EXPECT_FALSE(second.take(file("lock"), message));
    EXPECT_NE(message.find(", process " + std::to_string(::getpid())), std::string::npos) << message;
    EXPECT_NE(lockHolder(file("lock")), "");
  }
  EXPECT_EQ(lockHolder(file("lock")), "");
}

TEST_F(PartsTest, RecordsComeBackAndDamagedOnesAreRefused) {
  RunRecord record{"id", "/d", "s", "1", "e 'x'", "2", "o", "r", false, splitRows(10, 3), {}};
  record.settings = {EngineKind::Slurm, 3, FailurePolicy::Missing, 2, 4, 5, {"l"}, "p\n", {"-x"}};
  std::string message;
  ASSERT_TRUE(record.save(file("run.json"), message)) << message;
  RunRecord read;
  ASSERT_TRUE(read.load(file("run.json"), message)) << message;
  ASSERT_TRUE(read.save(file("again"), message));
  EXPECT_EQ(test::readFile(file("again")), test::readFile(file("run.json")));
  EXPECT_EQ(read.parts, record.parts);
  const std::string text = test::readFile(file("run.json"));
  for (std::size_t length = 0; length < text.size() - 2; length += 7) {
    test::writeFile(file("run.json"), text.substr(0, length));
    EXPECT_FALSE(read.load(file("run.json"), message)) << length;
  }
}

TEST_F(PartsTest, WordsOfUsersAndSites) {
  for (const char* word : {"stop", "retry:3", "nan:0"}) {
    PartSettings settings;
    EXPECT_TRUE(parsePolicy(word, settings));
    EXPECT_EQ(policyWord(settings), word);
  }
  PartSettings settings;
  for (const char* word : {"", "retry", "retry:", "retry:-1", "retry:1x", "nan:99999", "Stop"})
    EXPECT_FALSE(parsePolicy(word, settings)) << word;
  EXPECT_EQ(SlurmEngine::arrayText({0, 1, 2, 5, 7, 8}), "0-2,5,7-8");
  EXPECT_EQ(shellQuoted("it's"), "'it'\\''s'");

  const test::ScopedEnvironment config("XDG_CONFIG_HOME", directory_.path());
  std::filesystem::create_directory(file("tarvex"));
  test::writeFile(file("tarvex/cluster"), "# mine\noption --partition=a b\n prologue module load x\ngrace 7\n");
  SiteSettings site;
  std::string message;
  ASSERT_TRUE(site.load(message)) << message;
  EXPECT_EQ(site.options, (std::vector<std::string>{"--partition=a b"}));
  EXPECT_EQ(site.prologue + std::to_string(site.grace), "module load x\n7");
  for (const char* line : {"option", "grace x", "poll 0", "partition a"}) {
    test::writeFile(file("tarvex/cluster"), std::string("grace 7\n") + line + "\n");
    EXPECT_FALSE(site.load(message)) << line;
    EXPECT_NE(message.find("cluster:2: expected option"), std::string::npos) << message;
  }
}

TEST_F(PartsTest, WhatCannotBeRunInParts) {
  std::filesystem::current_path(directory_.path());
  test::writeFile("data", "");
  RunRecord record;
  record.outputFile = "model.out";
  record.parts = splitRows(10, 2);
  record.settings.links = {"data"};
  EXPECT_EQ(whyNotInParts(record, kSobol), "");
  const auto refuses = [&record](std::int32_t method, auto change) {
    RunRecord other = record;
    change(other);
    return !whyNotInParts(other, method).empty();
  };
  EXPECT_TRUE(refuses(kRandom, [](RunRecord& other) { other.outputFile = "/tmp/model.out"; }));
  EXPECT_FALSE(refuses(kRandom, [](RunRecord& other) { other.outputFile = "/tmp/o", other.parts = splitRows(10, 1); }));
  EXPECT_TRUE(refuses(kRandom, [](RunRecord& other) { other.outputFile = "../model.out"; }));
  EXPECT_TRUE(refuses(kRandom, [](RunRecord& other) { other.settings.links = {"nothing"}; }));
  EXPECT_TRUE(refuses(kRandom, [](RunRecord& other) { other.settings.links = {"data", "./data"}; }));
  EXPECT_TRUE(refuses(kRandom, [](RunRecord& other) { other.outputFile = "data/model.out"; }));
  EXPECT_TRUE(refuses(kFast, [](RunRecord& other) { other.settings.policy = FailurePolicy::Missing; }));
  EXPECT_FALSE(refuses(kRandom, [](RunRecord& other) { other.settings.policy = FailurePolicy::Missing; }));
}

TEST_F(PartsTest, SensibleNumbersOfParts) {
  RunRecord record;
  record.settings.jobs = 2;
  EXPECT_EQ(sensibleParts(record, 1, 100.0), 1);
  EXPECT_EQ(sensibleParts(record, 100, 0.001), 2);
  EXPECT_EQ(sensibleParts(record, 200, 0.05), 10);
  EXPECT_EQ(sensibleParts(record, 100000, 60.0), 1000);
  record.settings.engine = EngineKind::Slurm;
  EXPECT_EQ(sensibleParts(record, 1000, 6.0), 100);
}

}  // namespace
}  // namespace tarvex
