#include <sys/wait.h>

#include <chrono>
#include <csignal>
#include <thread>

#include "batch/CommandFixture.h"
#include "model/ExternalProcess.h"
#include "support/FailingCalls.h"
#include "support/FlatWorkbook.h"
#include "support/Processes.h"

namespace tarvex {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// A sample of sixty runs, a model that sums up rows and looks into `behaviour` first, and the result of one process.
class PartsCommand : public test::CommandFixture {
 protected:
  void SetUp() override {
    std::filesystem::current_path(directory_.path());
    test::writeScript("model", ". '" + file("behaviour") + "'\n" + kSum);
    behave(":");
    ASSERT_EQ(run(test::wordsOf("sample in/ishigami.fac -o s.sam --method random --runs 60")), kSucceeded) << errors_;
    ASSERT_EQ(run(test::wordsOf("run s.sam -o single.spc --executable ./model --output model.out")), kSucceeded);
    single_ = test::readFile("single.spc");
  }
  void TearDown() override {
    EXPECT_FALSE(test::hasChildren());
    EXPECT_EQ(test::processesOf("/bin/sh", file("")).size(), 0U);
    CommandFixture::TearDown();
  }

  void behave(const std::string& commands) { test::writeFile(file("behaviour"), commands + "\n"); }
  int start(const std::string& words) {
    return run(test::wordsOf("run s.sam -o r.spc --executable ./model --output model.out --directory RUN " + words));
  }
  int resume(const std::string& words = "") { return run(test::wordsOf("resume RUN " + words)); }
  void expectResult() {
    ASSERT_TRUE(std::filesystem::exists("r.spc")) << errors_;
    EXPECT_TRUE(test::readFile("r.spc") == single_);
  }
  std::size_t ledgerLines(const std::string& what) const {
    std::size_t count = 0;
    for (const std::string& line : test::readLines(file("RUN/ledger"))) count += line.find(what) != std::string::npos;
    return count;
  }
  // The program itself, which can be killed.
  void startProgram(ExternalProcess& process, const std::vector<std::string>& words) const {
    ASSERT_TRUE(process.start({TARVEX_BATCH_PROGRAM, words, directory_.path(), file("said"), -1}));
  }
  static int endOf(ExternalProcess& process, milliseconds most) {
    const auto end = steady_clock::now() + most;
    while (process.poll() == ExternalProcess::State::Running && steady_clock::now() < end)
      process.wait(milliseconds(20));
    return process.poll() == ExternalProcess::State::Ended ? process.exitCode() : -1;
  }

  static constexpr const char* kSum =
      "awk 'NR == 2 { n = $1 } NR > 4 && NR <= 4 + n { v[NR - 5] = $1 + $2 + $3 }\n"
      "END { printf \"1\\ny\\ntime = no\\n%d\\n\", n; for (i = 0; i < n; i++) printf \"%.9g\\n\", v[i] }' \"$1\" > "
      "model.out\n";
  const std::vector<std::string> runWords_ =
      test::wordsOf("run s.sam -o r.spc --executable ./model --output model.out --directory RUN --parts 12 --jobs 3");
  std::string single_;
};

TEST_F(PartsCommand, givesTheBytesOfASingleProcess) {
  for (const char* words :
       {"--parts 1", "--parts 7 --jobs 3", "--parts 100", "--jobs 2", "--parts 3 --time-limit 9 --memory 9999"}) {
    EXPECT_EQ(start(words), kSucceeded) << words << errors_;
    EXPECT_EQ(out_, "60 runs, 1 output: r.spc\n");
    expectResult();
    std::filesystem::remove_all("RUN");
    std::filesystem::remove("r.spc");
  }
  // Without a directory of its own nothing stays but the result.
  EXPECT_EQ(run(test::wordsOf("run s.sam -o r.spc --executable ./model --output model.out --parts 3")), kSucceeded);
  expectResult();
  EXPECT_FALSE(std::filesystem::exists("r.spc.run"));
}

TEST_F(PartsCommand, policiesForPartsThatFail) {
  behave("case $TARVEX_PART in *:3:1 | *:5:1) echo it is broken; exit 3;; *:8:1) rm -f \"$1\";; esac");
  EXPECT_EQ(start("--parts 12 --jobs 1"), kFailed);
  EXPECT_NE(errors_.find("part 3 (runs 15 to 19) failed on "), std::string::npos) << errors_;
  EXPECT_NE(errors_.find(": code 3: it is broken\nThe run stops because a part failed"), std::string::npos) << errors_;
  EXPECT_FALSE(std::filesystem::exists("r.spc"));
  EXPECT_EQ(run(test::wordsOf("status RUN")), kSucceeded);
  EXPECT_TRUE(out_.starts_with("3 of 12 parts, 1 failed; 15 of 60 runs\nfailed: ")) << out_;
  EXPECT_EQ(resume("--on-failure retry:1 --jobs 2"), kSucceeded) << errors_;
  expectResult();
  EXPECT_EQ(ledgerLines("\"failed\",\"host\""), 3U);  // 3, 5 and 8, which had no result
  EXPECT_EQ(ledgerLines("\"done\",\"host\""), 12U);

  behave("case $TARVEX_PART in *:3:?) exit 3;; esac");
  std::filesystem::remove_all("RUN");
  EXPECT_EQ(start("--parts 12 --on-failure retry:1"), kFailed);
  EXPECT_NE(errors_.find("1 of 12 parts failed.\n11 of 12 parts, 1 failed"), std::string::npos) << errors_;
  EXPECT_EQ(resume("--on-failure nan:1"), kSucceeded);
  EXPECT_NE(errors_.find("1 part gave no results: 5 runs are nan"), std::string::npos) << errors_;
  behave(":");
  EXPECT_EQ(resume(), kSucceeded);  // what was missing is repeated
  expectResult();

  behave("exit 3");
  std::filesystem::remove_all("RUN");
  EXPECT_EQ(start("--parts 12 --on-failure nan:9"), kFailed);
  EXPECT_NE(errors_.find("the first 5 parts all failed alike"), std::string::npos) << errors_;
}

TEST_F(PartsCommand, aDeafModelEndsWithItsTime) {
  behave("case $TARVEX_PART in *:3:1) trap '' TERM; echo $$ > " + file("pids") +
         "; setsid sleep 60.7 & sleep 60.7;; esac");
  EXPECT_EQ(start("--parts 6 --on-failure retry:1 --time-limit 1"), kSucceeded) << errors_;
  EXPECT_NE(errors_.find("it took more than 1 s"), std::string::npos) << errors_;
  expectResult();
  EXPECT_TRUE(test::livingProcesses(file("pids")).empty());
  EXPECT_TRUE(test::processesOf("sleep", "60.7").empty());
}

TEST_F(PartsCommand, stopsWithinTwoSecondsAndGoesOn) {
  for (const int signal : {SIGINT, SIGTERM}) {
    behave("trap '' TERM; case $TARVEX_PART in *:[4-9]:*) echo $$ >> " + file("pids") + "; sleep 60; sleep 60;; esac");
    ExternalProcess process;
    startProgram(process, runWords_);
    ASSERT_TRUE(test::waitForLines("pids", 3));
    const auto start = steady_clock::now();
    ::kill(process.number(), signal);
    EXPECT_EQ(endOf(process, milliseconds(5000)), kStopped);
    EXPECT_LT(steady_clock::now() - start, milliseconds(2000));
    EXPECT_TRUE(test::livingProcesses("pids").empty());
    behave(":");
    EXPECT_EQ(resume(), kSucceeded) << errors_;
    expectResult();
    EXPECT_EQ(ledgerLines("\"done\",\"host\""), 12U);
    for (const char* name : {"RUN", "r.spc", "pids"}) std::filesystem::remove_all(name);
  }
}

TEST_F(PartsCommand, whatIsKilledFromOutsideIsDoneAgain) {
  behave("case $TARVEX_PART in *:3:1) kill -KILL $PPID; sleep 60.8;; *:5:1) kill -TERM $PPID; sleep 60.8;; esac");
  EXPECT_EQ(start("--parts 12 --jobs 2"), kSucceeded) << errors_;
  EXPECT_NE(errors_.find("part 3 (runs 15 to 19) was lost: its job is gone without a word"), std::string::npos)
      << errors_;
  EXPECT_NE(errors_.find("part 5 (runs 25 to 29) was lost: it was stopped by something else"), std::string::npos)
      << errors_;
  EXPECT_EQ(ledgerLines("\"failed\""), 0U);
  EXPECT_TRUE(test::processesOf("sleep", "60.8").empty());
  expectResult();
}

TEST_F(PartsCommand, aFullDiskAndADirectoryThatIsGone) {
  for (const int call : {2, 6, 12}) {
    {
      test::FailingCalls calls;
      calls.fail(test::FailingCalls::kFsync, call);
      EXPECT_EQ(start("--parts 12 --jobs 2"), kFailed) << call;
    }
    EXPECT_NE(errors_.find(": No space left on device"), std::string::npos) << call << errors_;
    EXPECT_FALSE(std::filesystem::exists("r.spc"));
    if (std::filesystem::exists("RUN/run.json"))
      EXPECT_EQ(resume(), kSucceeded) << errors_;
    else
      EXPECT_EQ(start("--parts 12"), kSucceeded) << errors_;
    expectResult();
    for (const char* name : {"RUN", "r.spc"}) std::filesystem::remove_all(name);
  }
  behave("case $TARVEX_PART in *:3:1) rm -rf '" + file("RUN") + "';; esac");
  EXPECT_EQ(start("--parts 12 --jobs 1"), kFailed);
  EXPECT_NE(errors_.find(file("RUN")), std::string::npos) << errors_;
  EXPECT_FALSE(std::filesystem::exists("RUN"));
}

// What a coordinator leaves that is killed at any moment: processes that go on, and a ledger that tells what is done.
TEST_F(PartsCommand, losesNothingWhenItIsKilled) {
  behave("sleep 0.02");
  std::size_t done = 0;
  for (int i = 0; i < 12; ++i) {
    ExternalProcess process;
    startProgram(process, i == 0 ? runWords_ : test::wordsOf("resume RUN"));
    endOf(process, milliseconds(15 + 17 * i));
    if (process.poll() == ExternalProcess::State::Running) ::kill(process.number(), SIGKILL);
    ASSERT_NE(endOf(process, milliseconds(5000)), -1);
    if (!std::filesystem::exists("RUN/ledger")) continue;
    EXPECT_GE(ledgerLines("\"done\",\"host\""), done);
    done = ledgerLines("\"done\",\"host\"");
  }
  if (!std::filesystem::exists("RUN/run.json")) std::filesystem::remove_all("RUN");
  EXPECT_EQ(std::filesystem::exists("RUN") ? resume() : start("--parts 12"), kSucceeded) << errors_;
  expectResult();
  EXPECT_EQ(ledgerLines("\"done\",\"host\""), 12U);
  // The marks tell the same as the ledger.
  std::filesystem::remove("RUN/ledger");
  EXPECT_EQ(resume(), kSucceeded) << errors_;
  expectResult();
  EXPECT_EQ(ledgerLines("\"sent\""), 0U);
}

TEST_F(PartsCommand, aSecondCoordinatorIsRefusedAndCancelEndsTheFirst) {
  behave("echo $$ >> " + file("pids") + "; sleep 60");
  ExternalProcess process;
  startProgram(process, runWords_);
  ASSERT_TRUE(test::waitForLines("pids", 3));
  EXPECT_EQ(resume(), kFailed);
  EXPECT_NE(errors_.find("The run is driven already: host "), std::string::npos) << errors_;
  EXPECT_NE(errors_.find(", process " + std::to_string(process.number()) + "\n"), std::string::npos) << errors_;
  EXPECT_EQ(start("--parts 3"), kFailed);
  EXPECT_NE(errors_.find("There is a run in parts already"), std::string::npos) << errors_;
  EXPECT_EQ(run(test::wordsOf("status RUN")), kSucceeded);
  EXPECT_NE(out_.find("3 running"), std::string::npos) << out_;
  EXPECT_EQ(run(test::wordsOf("cancel RUN")), kSucceeded) << errors_;
  EXPECT_EQ(endOf(process, milliseconds(3000)), kFailed);
  EXPECT_TRUE(test::livingProcesses("pids").empty());

  // One that was killed left its parts behind.
  std::filesystem::remove("pids");
  ExternalProcess second;
  startProgram(second, test::wordsOf("resume RUN"));
  ASSERT_TRUE(test::waitForLines("pids", 3));
  ::kill(second.number(), SIGKILL);
  EXPECT_EQ(endOf(second, milliseconds(3000)), 128 + SIGKILL);
  EXPECT_EQ(test::livingProcesses("pids").size(), 3U);
  EXPECT_EQ(run(test::wordsOf("cancel RUN")), kSucceeded) << errors_;
  EXPECT_TRUE(test::livingProcesses("pids").empty());
  behave(":");
  EXPECT_EQ(resume(), kSucceeded) << errors_;
  expectResult();
}

TEST_F(PartsCommand, repeatsThePartsThatAreAskedFor) {
  behave("case $TARVEX_PART in *:[37]:1) exit 1;; *:7:2) while [ ! -e " + file("go") +
         " ]; do sleep 0.05; done;; esac");
  ASSERT_EQ(start("--parts 12 --on-failure retry:0"), kFailed);
  EXPECT_EQ(resume("--only 4"), kFailed);
  EXPECT_NE(errors_.find("Part 4 hasn't failed"), std::string::npos) << errors_;
  EXPECT_EQ(resume("--only 12"), kFailed);
  EXPECT_NE(errors_.find("The run has no part 12."), std::string::npos) << errors_;
  // One of them while the other is at work.
  ExternalProcess process;
  startProgram(process, test::wordsOf("resume RUN --only 7"));
  const auto end = steady_clock::now() + milliseconds(10'000);
  while (ledgerLines("\"resumed\"") == 0 && steady_clock::now() < end) std::this_thread::sleep_for(milliseconds(20));
  EXPECT_EQ(resume("--only 3"), kSucceeded) << errors_;
  EXPECT_NE(out_.find("was asked to repeat 1 part: host "), std::string::npos) << out_;
  while (ledgerLines("\"done\"") < 11 && steady_clock::now() < end) std::this_thread::sleep_for(milliseconds(20));
  EXPECT_EQ(ledgerLines("\"done\""), 11U);
  test::writeFile("go", "");
  EXPECT_EQ(endOf(process, milliseconds(10'000)), kSucceeded) << test::readFile("said");
  expectResult();
}

TEST_F(PartsCommand, whatChangedBetweenTwoStarts) {
  behave("case $TARVEX_PART in *:3:1) exit 1;; esac");
  ASSERT_EQ(start("--parts 12 --jobs 1"), kFailed);
  const std::string ledger = test::readFile("RUN/ledger");
  const std::string sample = test::readFile("s.sam");
  test::writeFile("s.sam", sample + "\n");
  EXPECT_EQ(resume(), kFailed);
  EXPECT_EQ(errors_,
            "The sample isn't the one that the run was begun with: nothing was done.\n" + file("s.sam") + "\n");
  std::filesystem::remove("s.sam");
  EXPECT_EQ(resume(), kFailed);
  EXPECT_EQ(test::readFile("RUN/ledger"), ledger);
  test::writeFile("s.sam", sample);
  test::writeScript("model", std::string("# another\n") + kSum);
  EXPECT_EQ(resume(), kSucceeded) << errors_;
  EXPECT_TRUE(errors_.starts_with("warning: The model isn't the one that the run was begun with")) << errors_;
  expectResult();
  // A result that was done and can't be read any more is repeated.
  test::writeFile("RUN/parts/0002/1/model.out", "");
  EXPECT_EQ(resume(), kFailed);
  EXPECT_EQ(resume(), kSucceeded) << errors_;
  expectResult();
}

TEST_F(PartsCommand, manyPartsLeaveNothingBehind) {
  const int descriptors = test::openDescriptors();
  EXPECT_EQ(start("--parts 60 --jobs 8"), kSucceeded) << errors_;
  expectResult();
  EXPECT_EQ(test::openDescriptors(), descriptors);
  for (const auto& entry : std::filesystem::recursive_directory_iterator("RUN"))
    EXPECT_NE(entry.path().extension(), ".new") << entry.path();
  EXPECT_EQ(std::filesystem::remove_all("RUN"), 7 + 60 * 8U);  // two marks, two directories, four files a part
}

// A workbook over the same sample, by the program itself, which finds the helper of the application. All that an
// application leaves lies in one directory.
class PartsOfWorkbook : public PartsCommand {
 protected:
  void SetUp() override {
#ifndef TARVEX_SHEET
    GTEST_SKIP() << "tarvex-sheet is not built: it needs libreoffice-calc and libreoffice-dev";
#endif
    PartsCommand::SetUp();
    std::filesystem::copy_file(TARVEX_EXAMPLES "/workbook/ishigami.ods", "rows.ods");
    writeCells("Model", "=SIN([.A1])+7*SIN([.A2])^2+[.B1]");
  }
  static void writeCells(const char* sheet, const char* formula) {
    test::writeFile("cells.fods", test::flatWorkbook({{sheet, {{"0", "0"}, {"0", formula}}}}));
  }
  int program(const std::string& words) {
    ExternalProcess process;
    startProgram(process, test::wordsOf(words));
    const int status = endOf(process, milliseconds(180'000));
    said_ = test::readFile("said");
    said_.erase(0, said_.find('\n') + 1);  // the line of the log itself
    return status;
  }
  void expectNothingLeft() const {
    for (const char* name : {"soffice.bin", "oosplash", "tarvex-sheet"})
      EXPECT_TRUE(test::processesOf(name, temporary_.path()).empty()) << name;
    EXPECT_EQ(temporary_.entries(), std::vector<std::string>());
  }

  const std::string byRows_ = "--workbook rows.ods ";
  const std::string byCells_ =
      "--workbook cells.fods --input-cell x1=Model!A1 --input-cell x2=Model!A2 --input-cell x3=Model!B1 --output-cell "
      "y=Model!B2 ";
  test::TempDirectory temporary_;
  test::ScopedEnvironment temp_{"TEMP", temporary_.path()};
  std::string said_;
};

TEST_F(PartsOfWorkbook, givesTheBytesOfASingleProcessAndIsNotWritten) {
  for (const auto& [book, words] : {std::pair{"rows.ods", byRows_}, {"cells.fods", byCells_}}) {
    const std::string before = test::readFile(book);
    ASSERT_EQ(program("run s.sam -o single.spc " + words), kSucceeded) << said_;
    test::writeFile(book, before);
    ASSERT_EQ(program("run s.sam -o r.spc " + words + "--parts 3 --jobs 2"), kSucceeded) << said_;
    EXPECT_EQ(said_, "60 runs, 1 output: r.spc\n");
    EXPECT_TRUE(test::readFile("r.spc") == test::readFile("single.spc")) << book;
    EXPECT_TRUE(test::readFile(book) == before) << book;
    EXPECT_FALSE(std::filesystem::exists("r.spc.run"));
    expectNothingLeft();
  }
}

TEST_F(PartsOfWorkbook, stopsAndGoesOnWithWhatTheFileThenHolds) {
  ASSERT_EQ(program("run s.sam -o single.spc " + byCells_), kSucceeded) << said_;
  ExternalProcess process;
  startProgram(process, test::wordsOf("run s.sam -o r.spc " + byCells_ + "--parts 3 --jobs 2 --directory RUN"));
  const auto end = steady_clock::now() + milliseconds(60'000);
  while (test::processesOf("soffice.bin", temporary_.path()).empty() && steady_clock::now() < end)
    std::this_thread::sleep_for(milliseconds(20));
  ::kill(process.number(), SIGTERM);
  EXPECT_EQ(endOf(process, milliseconds(10'000)), kStopped);
  expectNothingLeft();

  const std::string book = test::readFile("cells.fods");
  const struct {
    const char* sheet;
    const char* formula;
    const char* problem;
  } cases[] = {{"Other", "=[.A1]", "there is no sheet 'Model', but 'Other'"},
               {"Model", "=1/[.C9]", "Model!B2: expected a number, found '#DIV/0!' - row 1 of the part"}};
  for (const auto& test : cases) {
    writeCells(test.sheet, test.formula);
    EXPECT_EQ(program("resume RUN --jobs 1"), kFailed);
    EXPECT_NE(said_.find("The model isn't the one that the run was begun with"), std::string::npos) << said_;
    EXPECT_NE(said_.find(test.problem), std::string::npos) << said_;
  }
  const std::string ledger = test::readFile("RUN/ledger");
  std::filesystem::remove("cells.fods");
  EXPECT_EQ(program("resume RUN"), kFailed);
  EXPECT_NE(said_.find("The workbook cannot be copied: No such file or directory\ncells.fods"), std::string::npos)
      << said_;
  EXPECT_EQ(test::readFile("RUN/ledger"), ledger);
  test::writeFile("cells.fods", book);
  test::writeFile(".~lock.cells.fods#", "");
  EXPECT_EQ(program("resume RUN --jobs 2"), kSucceeded) << said_;
  EXPECT_NE(said_.find("The workbook is open in another application."), std::string::npos) << said_;
  EXPECT_TRUE(test::readFile("r.spc") == test::readFile("single.spc"));
  expectNothingLeft();
}

TEST_F(PartsCommand, wordsThatDoNotFit) {
  for (const char* words :
       {"run s.sam -o r --model m.imd --parts 3", "run s.sam --try 1 --executable e --output o --parts 3",
        "run s.sam -o r --executable e --output o --parts 0", "run s.sam -o r --workbook w --read-only --parts 3",
        "resume", "resume RUN --parts 3", "run s.sam -o r --executable e --output o --on-failure retry",
        "run s.sam -o r --executable e --output o --engine cloud"})
    EXPECT_EQ(run(test::wordsOf(words)), kWrongUsage) << words;
  EXPECT_EQ(run(test::wordsOf("status nothing")), kFailed);
  EXPECT_EQ(errors_, file("nothing/run.json") + ": there is no run in parts here\n");
  std::filesystem::create_directory("RUN");
  test::writeFile("RUN/mine", "");
  EXPECT_EQ(start("--parts 3"), kFailed);
  EXPECT_EQ(errors_, "The directory of a run in parts must be empty.\nRUN\n");
}

}  // namespace
}  // namespace tarvex
