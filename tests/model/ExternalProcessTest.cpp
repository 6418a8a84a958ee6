#include "model/ExternalProcess.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "support/Processes.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using State = ExternalProcess::State;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kLong{10000};

// Leaves the numbers of itself and of a child in the file "pids" and waits for the child.
constexpr const char* kWithChild = "sleep 60 &\necho $$ > pids\necho $! >> pids\nwait\n";

class Process : public test::InDirectory {
 protected:
  void TearDown() override {
    EXPECT_EQ(test::openDescriptors(), descriptors_);
    EXPECT_FALSE(test::hasChildren());
  }

  ExternalProcess::Start script(const std::string& commands, const std::string& name = "model") {
    test::writeScript(file(name), commands);
    return {file(name), {"in.sam"}, directory_.path(), file("log")};
  }

  // What was printed, behind the line that marks a log.
  static std::string logged(const std::string& path) {
    const std::string text = test::readFile(path);
    return text.substr(text.find('\n') + 1);
  }

  static milliseconds timeToStop(ExternalProcess& process) {
    const auto start = steady_clock::now();
    process.stop();
    return std::chrono::duration_cast<milliseconds>(steady_clock::now() - start);
  }

  int descriptors_ = test::openDescriptors();
};

TEST_F(Process, endsWithItsCodeOrThatOfASignal) {
  const struct {
    const char *name, *commands;
    int code;
  } cases[] = {{"success", "exit 0\n", 0},
               {"a code", "exit 3\n", 3},
               {"killed", "kill -KILL $$\n", 128 + SIGKILL},
               {"a fault", "kill -SEGV $$\n", 128 + SIGSEGV}};
  for (const auto& c : cases) {
    ExternalProcess process;
    ASSERT_TRUE(process.start(script(c.commands))) << c.name;
    process.wait(kLong);
    ASSERT_EQ(process.poll(), State::Ended) << c.name;
    EXPECT_EQ(process.poll(), State::Ended) << c.name;
    EXPECT_EQ(process.exitCode(), c.code) << c.name;
  }
}

TEST_F(Process, aStartThatFailsTellsWhy) {
  const ExternalProcess::Start good = script("exit 0\n");
  test::writeFile(file("text"), "exit 0\n");
  test::writeFile(file("bytes"), "no program");
  std::filesystem::permissions(file("bytes"), std::filesystem::perms::owner_all);
  const struct {
    const char* name;
    std::string executable, directory;
    int error;
  } cases[] = {{"missing", file("nothing"), "", ENOENT},
               {"no name", "", "", ENOENT},
               {"not executable", file("text"), "", EACCES},
               {"a directory", directory_.path(), "", EACCES},
               {"not a program", file("bytes"), "", ENOEXEC},
               {"no directory to run in", good.executable, file("nowhere"), ENOENT}};
  for (const auto& c : cases) {
    ExternalProcess process;
    EXPECT_FALSE(process.start({c.executable, {"in.sam"}, c.directory, file("log")})) << c.name;
    EXPECT_EQ(process.error(), c.error) << c.name;
    EXPECT_EQ(process.poll(), State::NotStarted) << c.name;
  }
}

TEST_F(Process, getsItsArgumentItsDirectoryAndNoInput) {
  const std::string odd = "a b \"c\" 'd' $e é 模型 \\";
  const test::ScopedCurrentDirectory stay;
  std::filesystem::create_directory(file(odd));
  std::filesystem::current_path(file(odd));
  test::writeScript(odd, "echo \"$#:$1:$2\"\npwd\ncat\necho failure >&2\n");
  ExternalProcess process;
  ASSERT_TRUE(process.start({odd, {odd, "second word"}, directory_.path(), odd + ".log"}));
  process.wait(kLong);
  ASSERT_EQ(process.poll(), State::Ended);
  EXPECT_EQ(logged(file(odd + '/' + odd + ".log")), "2:" + odd + ":second word\n" + directory_.path() + "\nfailure\n");
}

TEST_F(Process, inheritsNeitherDescriptorsNorSignals) {
  const int open = ::open("/dev/null", O_RDONLY);  // left open across a start
  sigset_t blocked;
  sigset_t before;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGUSR1);
  sigprocmask(SIG_BLOCK, &blocked, &before);
  std::signal(SIGTERM, SIG_IGN);
  std::signal(SIGCHLD, SIG_IGN);
  ExternalProcess process;
  const bool started = process.start(script("ls /proc/self/fd\ngrep SigBlk /proc/self/status\nkill -TERM $$\n"));
  std::signal(SIGTERM, SIG_DFL);
  sigprocmask(SIG_SETMASK, &before, nullptr);
  ::close(open);
  ASSERT_TRUE(started);
  process.wait(kLong);
  ASSERT_EQ(process.poll(), State::Ended) << "even where the end of children was ignored";
  EXPECT_EQ(process.exitCode(), 128 + SIGTERM);
  EXPECT_EQ(logged(file("log")),
            "0\n1\n2\n3\nSigBlk:\t0000000000000000\n");  // 3: the directory that is listed
}

TEST_F(Process, runsWithoutALogThatCannotBeMade) {
  ExternalProcess process;
  ExternalProcess::Start start = script("echo lost && exit 4\n");
  start.logFile = file("no/such/log");
  ASSERT_TRUE(process.start(start));
  process.wait(kLong);
  EXPECT_EQ(process.poll(), State::Ended);
  EXPECT_EQ(process.exitCode(), 4);
}

TEST_F(Process, theLogIsNeverSomebodyElsesFile) {
  test::writeFile(file("log"), "notes\n");
  std::filesystem::create_symlink("elsewhere", file("log.2"));
  for (const char* const text : {"first", "second"}) {
    ExternalProcess process;
    ExternalProcess::Start start = script(std::string("echo ") + text + " $A\n");
    start.variables = {"A=of the caller"};
    ASSERT_TRUE(process.start(start));
    process.wait(kLong);
    ASSERT_EQ(process.poll(), State::Ended);
    EXPECT_EQ(process.logPath(), file("log.3"));
    EXPECT_EQ(logged(file("log.3")), std::string(text) + " of the caller\n");
  }
  EXPECT_EQ(test::readFile(file("log")), "notes\n");
  EXPECT_FALSE(std::filesystem::exists(file("elsewhere")));
}

TEST_F(Process, aLogOfGigabytesIsKeptShort) {
  ExternalProcess process;
  ASSERT_TRUE(process.start(script("echo first\nhead -c 200000000 /dev/zero\nsleep 0.3\necho last\n")));
  while (process.poll() == State::Running) process.wait(kLong);
  EXPECT_LT(std::filesystem::file_size(file("log")), 64u << 20);
  const std::string text = logged(file("log"));
  EXPECT_TRUE(text.starts_with("first\n") && text.ends_with("last\n"));
}

TEST_F(Process, waitsNoLongerThanTheProcessRuns) {
  ExternalProcess process;
  ASSERT_EQ(::mkfifo(file("gate").c_str(), 0600), 0);
  ASSERT_TRUE(process.start(script("read line < gate\n")));
  const auto start = steady_clock::now();
  process.wait(milliseconds(50));
  EXPECT_GE(steady_clock::now() - start, milliseconds(50));
  process.stop();
  process.wait(milliseconds(0));
  EXPECT_EQ(process.poll(), State::Ended);
  EXPECT_LT(steady_clock::now() - start, kLong);
}

TEST_F(Process, aStopEndsTheWholeGroup) {
  const struct {
    const char* name;
    std::string commands;
  } cases[] = {{"a child that it waits for", kWithChild},
               {"a child that it left behind", "sleep 60 &\necho $! > pids\necho $! >> pids\n"},
               {"suspended", "echo $$ > pids\necho $$ >> pids\nkill -STOP $$\n"}};
  for (const auto& c : cases) {
    ExternalProcess process;
    ASSERT_TRUE(process.start(script("rm -f pids\n" + c.commands))) << c.name;
    ASSERT_TRUE(test::waitForLines(file("pids"), 2)) << c.name;
    process.wait(milliseconds(100));
    EXPECT_LT(timeToStop(process), milliseconds(1000)) << c.name;
    EXPECT_EQ(test::livingProcesses(file("pids")), std::vector<int>()) << c.name;
    EXPECT_EQ(process.poll(), State::Ended) << c.name;
    std::filesystem::remove(file("pids"));
  }
}

TEST_F(Process, whatDoesNotEndWhenAskedIsKilled) {
  ExternalProcess process;
  ASSERT_TRUE(process.start(script("trap '' TERM\n" + std::string(kWithChild))));
  ASSERT_TRUE(test::waitForLines(file("pids"), 2));
  const milliseconds time = timeToStop(process);
  EXPECT_GE(time, milliseconds(1000));
  EXPECT_LT(time, milliseconds(3000));
  EXPECT_EQ(test::livingProcesses(file("pids")), std::vector<int>());
  EXPECT_EQ(process.exitCode(), 128 + SIGKILL);
}

TEST_F(Process, doesNotOutliveItsObject) {
  {
    ExternalProcess process;
    ASSERT_TRUE(process.start(script(kWithChild)));
    ASSERT_TRUE(test::waitForLines(file("pids"), 2));
  }
  EXPECT_EQ(test::livingProcesses(file("pids")), std::vector<int>());
}

}  // namespace
}  // namespace tarvex
