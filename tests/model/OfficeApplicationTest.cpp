#include "model/OfficeApplication.h"

#include <unistd.h>

#include <csignal>

#include "factors/Uniform.h"
#include "model/CellsRun.h"
#include "model/ModelConfiguration.h"
#include "model/SpreadsheetRun.h"
#include "sampling/PrepConfiguration.h"
#include "support/FlatWorkbook.h"
#include "support/Processes.h"
#include "support/Test.h"

#ifndef TARVEX_SHEET_PROGRAM
#define TARVEX_SHEET_PROGRAM ""
#endif

namespace tarvex {
namespace {

using Attendance = SpreadsheetRun::Attendance;
using Texts = std::vector<std::string>;
using test::FlatSheet;

constexpr std::string_view kHelper = TARVEX_SHEET_PROGRAM;
constexpr const char* kNotBuilt = "tarvex-sheet is not built: it needs libreoffice-calc and libreoffice-dev";

double ishigami(const std::vector<double>& x) {
  return std::sin(x[0]) + 7.0 * std::pow(std::sin(x[1]), 2) + 0.1 * std::pow(x[2], 4) * std::sin(x[0]);
}

// The real application, whose files all lie in one place. At the end nothing is left of it.
class Office : public testing::Test {
 protected:
  void SetUp() override {
    if (kHelper.empty()) GTEST_SKIP() << kNotBuilt;
    addFactors();
    model_.choice.setExternal("Excel Application", "", 1);
    model_.choice.kind = kExternalExecutable;
  }
  void TearDown() override {
    application_.quit();
    EXPECT_FALSE(test::hasChildren());
    for (const char* program : {"soffice.bin", "oosplash", "tarvex-sheet"})
      EXPECT_EQ(test::processesOf(program, temporary_.path()), std::vector<int>()) << program;
    EXPECT_EQ(temporary_.entries(), Texts());
    EXPECT_EQ(test::openDescriptors(), descriptors_);
  }

  void addFactors() {
    for (const char* name : {"x1", "x2", "x3"}) {
      auto factor = std::make_unique<Uniform>();
      factor->name = name;
      prep_.factors.addFactor(std::move(factor));
    }
    ASSERT_TRUE(prep_.samples.allocate(3));
  }
  void addRuns(int runs) {
    for (int i = 0; i < runs; ++i) {
      const double row[] = {3.1 * std::sin(i), 3.1 * std::sin(2.5 * i), 3.1 * std::cos(7.1 * i)};
      EXPECT_GT(prep_.samples.addRow(row), 0);
    }
  }
  bool run(SpreadsheetApplication& application, const std::string& workbook) {
    model_.choice.outputFile = workbook;
    messages_.clear();
    SpreadsheetRun run(application, Attendance::Nobody,
                       [this](const auto& title, const auto& text) { messages_.push_back(title + ": " + text); });
    const bool done = run.run(model_.choice, prep_, model_.results);
    if (!run.errorText().empty()) messages_.push_back(run.errorText());
    return done;
  }
  bool run(const std::string& workbook) { return run(application_, workbook); }
  std::string file(const std::string& name) const { return books_.file(name); }

  test::TempDirectory books_;
  test::TempDirectory temporary_;
  test::ScopedEnvironment temp_{"TEMP", temporary_.path()};
  bool serving_ = true;
  int descriptors_ = test::openDescriptors();
  OfficeApplication application_{[this] { return serving_; }, std::string(kHelper)};
  PrepConfiguration prep_;
  ModelConfiguration model_;
  Texts messages_;
};

TEST_F(Office, cellsGoOverAsTheyAre) {
  const std::string book = file("a book é %41 #1.fods");
  test::writeFile(
      book, test::flatWorkbook({{"One", {{"7"}, {"=1/0"}, {"=&quot;&quot;"}, {"=TRUE()"}, {"a\nb"}}}, {"Two é"}}));
  ASSERT_TRUE(application_.start(false)) << application_.errorText;
  ASSERT_TRUE(application_.open(book, false)) << application_.errorText;
  CellBlock found{0, 0, 6, 1};
  ASSERT_TRUE(application_.readCells(0, found));
  const std::vector<SheetCell> expected{7.0, {}, {}, 1.0, "a\nb", {}};
  EXPECT_EQ(found.cells, expected);

  CellBlock block{1, 2, 3, 3};
  block.cells = {1.0 / 3, -0.0, 1e-300, 12345678901234567.0, "a\tb\\t", "two\nlines", "模型 é", {}, "'12"};
  ASSERT_TRUE(application_.writeCells(1, block));
  found = {1, 2, 3, 3};
  ASSERT_TRUE(application_.readCells(1, found));
  EXPECT_EQ(found.cells, block.cells);
  EXPECT_EQ(std::get<double>(found.cells[3]), 12345678901234567.0);
  found = {1048575, 1023, 2, 2};
  ASSERT_TRUE(application_.readCells(1, found));
  EXPECT_EQ(found.cells, std::vector<SheetCell>(4));
  ASSERT_TRUE(application_.clearCells(1));

  std::int32_t count = 0;
  std::string name;
  ASSERT_TRUE(application_.addSheet("Three") && application_.countSheets(count));
  EXPECT_EQ(count, 3);
  EXPECT_TRUE(application_.getSheetName(1, name) && name == "Two é") << name;
  EXPECT_TRUE(application_.getSheetName(2, name) && name == "Three") << name;
  EXPECT_FALSE(application_.addSheet("Three"));
  EXPECT_EQ(application_.errorText.substr(0, 28), "LibreOffice refuses to add: ");
  block = {1048575, 0, 2, 1, {1.0, 1.0}};
  EXPECT_FALSE(application_.writeCells(0, block));
  EXPECT_EQ(application_.errorText,
            "The sample is too large for a sheet of the workbook: 1048576 rows and 1024 columns.");
  EXPECT_TRUE(application_.close());
  EXPECT_EQ(books_.entries(), Texts{"a book é %41 #1.fods"});
}

TEST_F(Office, everyFormatComputesTheExactValues) {
  addRuns(1000);
  for (const char* format : {"ods", "xlsx", "xls"}) {
    const std::string book = file(std::string("ishigami.") + format);
    std::filesystem::copy_file(std::string(TARVEX_EXAMPLES "/workbook/ishigami.") + format, book);
    for (const ModelKind kind : {kExternalExecutable, kNoModelToStart}) {
      model_.choice.kind = kind;
      model_.results.clear();
      ASSERT_TRUE(run(book)) << format << kind << testing::PrintToString(messages_);
      EXPECT_EQ(model_.results.outputNames(), Texts{"y"});
      ASSERT_EQ(model_.results.runCount(), 1000) << format;
      std::vector<double> row(3);
      std::vector<double> value;
      for (std::int32_t i = 0; i < 1000; ++i) {
        ASSERT_TRUE(prep_.samples.getRow(i, row.data()) && model_.results.readRun(i, value));
        ASSERT_TRUE(test::agrees(value[0], ishigami(row), 1e-12, 1e-13)) << format << kind << i;
      }
    }
  }
  EXPECT_EQ(books_.entries(), (Texts{"ishigami.ods", "ishigami.xls", "ishigami.xlsx"}));

  // Fewer runs than formulas: what stands there from the last run doesn't count.
  prep_.samples.clear();
  ASSERT_TRUE(prep_.samples.allocate(3));
  addRuns(10);
  model_.choice.kind = kExternalExecutable;
  ASSERT_TRUE(run(file("ishigami.ods")));
  EXPECT_EQ(model_.results.runCount(), 10);
}

TEST_F(Office, whatCannotBeRunIsLeftAsItWas) {
  addRuns(3);
  const FlatSheet inputs{"Inputs"};
  const FlatSheet outputs{"Outputs", {{"y"}, {"=[Inputs.A2]"}, {"=[Inputs.A3]"}, {"=[Inputs.A4]"}}};
  const std::string good = test::flatWorkbook({inputs, outputs});
  const std::string ods = test::readFile(TARVEX_EXAMPLES "/workbook/ishigami.ods");
  const std::string damaged = "Error: The workbook cannot be opened: it is damaged";
  const std::string locked = "Error: The workbook cannot be written: it is read-only, or open in another application.";
  const struct {
    const char* name;
    std::string file, content;
    std::string message;  // within the first one
    bool isLocked = false;
  } cases[] = {
      {"protected inputs", "book.fods", test::flatWorkbook({{"Inputs", {}, true}, outputs}),
       "Error: Cells of the workbook cannot be written. Are they protected?"},
      {"cut", "book.ods", ods.substr(0, ods.size() / 2), damaged},
      {"no workbook", "book.ods", "name,value\na,1\n", damaged},
      {"empty", "book.xlsx", "", "Error: Model Output variables not found"},
      {"locked", "book.fods", good, locked, true},
      {"locked and packed", "book.ods", ods, locked, true},
  };
  for (const auto& c : cases) {
    const std::string book = file(c.file);
    const std::string lock = file(".~lock." + c.file + '#');
    test::writeFile(book, c.content);
    if (c.isLocked) test::writeFile(lock, ",somebody,elsewhere,21.11.2026 10:00,file:///home/somebody;");
    EXPECT_FALSE(run(book)) << c.name;
    const std::string first = messages_.empty() ? "" : messages_.front();
    EXPECT_NE(first.find(c.message), std::string::npos) << c.name << ": " << first;
    EXPECT_EQ(test::readFile(book), c.content) << c.name;
    EXPECT_EQ(std::filesystem::remove(lock), c.isLocked) << c.name;
    std::filesystem::remove(book);
    EXPECT_EQ(books_.entries(), Texts()) << c.name;
  }
  EXPECT_FALSE(run(file("missing.ods")));
  EXPECT_EQ(messages_,
            Texts{"Error: The workbook cannot be opened: No such file or directory\n" + file("missing.ods")});
}

// Adjacent cells and scattered ones, on two sheets, of a workbook that computes only when it is told to.
TEST_F(Office, rowsAreDrivenThroughCells) {
  addRuns(300);
  const std::string content = test::flatWorkbook(
      {{"My sheet", {{"=[Model.B3]*2", "=1+1", "=SUM([.B1];[Model.D1])"}}},
       {"Model", {{"0", "0", "0", "0"}, {"=[.B1]+10*[.C1]+100*[.D1]"}, {"x", "=[.A2]*[.A2]", "=1/[.B1]"}}}});
  test::writeFile(file("book.fods"), content);
  test::writeFile(file(".~lock.book.fods#"), ",somebody,elsewhere,21.11.2026 10:00,file:///home/somebody;");
  model_.choice.setExternal("Excel Application", file("book.fods"), 1);
  std::string problem;
  ASSERT_TRUE(
      parseWorkbookCells("input x2=Model!C1\tinput x1=Model!B1\tinput x3='My sheet'!B1\toutput u=Model!A2\t"
                         "output w='My sheet'!C1\toutput v='My sheet'!A1",
                         model_.choice.cells, problem))
      << problem;
  const auto drive = [this] {
    CellsRun run(application_,
                 [this](const auto& title, const auto& text) { messages_.push_back(title + ": " + text); });
    const bool done = run.run(model_.choice, prep_, model_.results);
    if (!run.errorText().empty()) messages_.push_back(run.errorText());
    return done;
  };
  ASSERT_TRUE(drive()) << testing::PrintToString(messages_);
  EXPECT_EQ(messages_,
            (Texts{"Warning: The workbook is open in another application. It is run as it was saved last.\n" +
                       file("book.fods"),
                   "Warning: Input cells hold formulas, in whose place the values of factors are put: "
                   "'My sheet'!B1 (x3). The file keeps them."}));
  std::vector<double> row(3);
  std::vector<double> values;
  for (std::int32_t i = 0; i < 300; ++i) {
    ASSERT_TRUE(prep_.samples.getRow(i, row.data()) && model_.results.readRun(i, values));
    const double u = row[0] + 10 * row[1];
    ASSERT_TRUE(test::agrees(values[0], u, 1e-12, 1e-12) && test::agrees(values[1], row[2], 1e-12, 1e-12) &&
                test::agrees(values[2], 2 * u * u, 1e-12, 1e-12))
        << i;
  }
  model_.choice.cells.outputs = {{"v", "Model", 2, 2}};
  model_.choice.cells.inputs = {{"x1", "My sheet", 0, 1}, {"x2", "Model", 0, 2}, {"x3", "Model", 0, 3}};
  messages_.clear();
  EXPECT_FALSE(drive());
  EXPECT_EQ(messages_.back(), file("book.fods") + ": Model!C3: expected a number, found '#DIV/0!'");
  EXPECT_EQ(model_.results.runCount(), 0);
  EXPECT_EQ(test::readFile(file("book.fods")), content);
  test::writeFile(file("book.fods"), test::flatWorkbook({{"My sheet"}, {"Model", {{"0", "0", "0"}}, true}}));
  EXPECT_FALSE(drive());
  EXPECT_EQ(messages_.back(), "Error: Cells of the workbook cannot be written. Are they protected?\nModel!C1:D1");
}

// The application of which a process is killed before the workbook is computed.
class Killed : public OfficeApplication {
 public:
  Killed(std::function<bool()> serve, std::string program, std::string place)
      : OfficeApplication(std::move(serve), std::string(kHelper)),
        program_(std::move(program)),
        place_(std::move(place)) {}
  [[nodiscard]] bool recalculate() override {
    const std::vector<int> processes = test::processesOf(program_, place_);
    EXPECT_EQ(processes.size(), 1u) << program_;
    for (const std::filesystem::path& pipe : pipesNow())
      if (std::ranges::find(before_, pipe) == before_.end()) pipes_.push_back(pipe);
    for (const int process : processes) ::kill(process, SIGKILL);
    return OfficeApplication::recalculate();
  }
  // Whether all pipes that came are gone; those of other instances may take their time.
  bool pipesAreGone() const {
    for (int i = 0; i < 200; ++i) {
      if (std::ranges::none_of(pipes_, [](const auto& pipe) { return std::filesystem::exists(pipe); })) return true;
      ::usleep(100000);
    }
    return false;
  }

 private:
  static std::vector<std::filesystem::path> pipesNow() {
    std::vector<std::filesystem::path> pipes;
    for (const auto& entry : std::filesystem::directory_iterator("/tmp"))
      if (entry.path().filename().string().starts_with("OSL_PIPE_")) pipes.push_back(entry.path());
    return pipes;
  }

  std::string program_;
  std::string place_;
  std::vector<std::filesystem::path> before_ = pipesNow();
  std::vector<std::filesystem::path> pipes_;
};

TEST_F(Office, aKilledProcessCostsTheRunAndNothingElse) {
  addRuns(3);
  const std::string content = test::flatWorkbook({{"Outputs", {{"y"}, {"=[Inputs.A2]"}}}, {"Inputs"}});
  test::writeFile(file("book.fods"), content);
  for (const char* program : {"soffice.bin", "tarvex-sheet"}) {
    Killed application([] { return true; }, program, temporary_.path());
    EXPECT_FALSE(run(application, file("book.fods"))) << program;
    ASSERT_EQ(messages_.size(), 1u) << program;
    EXPECT_EQ(messages_[0].substr(0, 28), "Error: LibreOffice has ended") << messages_[0];
    EXPECT_EQ(test::readFile(file("book.fods")), content) << program;
    EXPECT_EQ(books_.entries(), Texts{"book.fods"}) << program;
    EXPECT_TRUE(application.pipesAreGone()) << program;
  }
  EXPECT_TRUE(run(file("book.fods"))) << "the next one is a run like any other";
}

TEST_F(Office, waitsForItsEndOrForAStop) {
  test::writeFile(file("book.fods"), test::flatWorkbook({{"Inputs"}}));
  ASSERT_TRUE(application_.start(false) && application_.open(file("book.fods"), false)) << application_.errorText;
  for (const int process : test::processesOf("soffice.bin", temporary_.path())) ::kill(process, SIGTERM);
  EXPECT_TRUE(application_.waitForUser()) << application_.errorText;
  ASSERT_TRUE(application_.start(false) && application_.open(file("book.fods"), false)) << application_.errorText;
  serving_ = false;
  EXPECT_FALSE(application_.waitForUser());
  EXPECT_EQ(application_.errorText, "");
  application_.quit();
  EXPECT_EQ(books_.entries(), Texts{"book.fods"});
}

TEST(OfficeHelper, oneThatIsMissingOrNoneIsTold) {
  const test::TempDirectory directory;
  const test::ScopedEnvironment temp("TEMP", directory.path());
  test::writeScript(directory.file("ends"), "exit 127\n");
  test::writeScript(directory.file("babbles"), "read line; echo nonsense; read line; echo; read line\n");
  const struct {
    const char *helper, *message;
  } cases[] = {{"missing",
                "Workbooks need LibreOffice Calc: install the packages libreoffice-calc and libreoffice-dev, and build "
                "again."},
               {"ends", "Workbooks need LibreOffice Calc: install the package libreoffice-calc."},
               {"babbles", "nonsense"}};
  for (const auto& c : cases) {
    OfficeApplication application([] { return true; }, directory.file(c.helper));
    EXPECT_FALSE(application.start(false)) << c.helper;
    EXPECT_EQ(application.errorText, c.message) << c.helper;
    std::int32_t count = 0;
    EXPECT_FALSE(application.countSheets(count)) << c.helper;
  }
  EXPECT_FALSE(test::hasChildren());
  EXPECT_EQ(directory.entries(), (Texts{"babbles", "ends"}));
}

}  // namespace
}  // namespace tarvex
