#include <cerrno>

#include "factors/Uniform.h"
#include "model/ModelConfiguration.h"
#include "model/SpreadsheetRun.h"
#include "sampling/PrepConfiguration.h"
#include "support/FailingCalls.h"
#include "support/ScriptedApplication.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using Attendance = SpreadsheetRun::Attendance;
using Calls = std::vector<std::string>;
using Cells = test::ScriptedApplication::Cells;

// Three runs of the factors a and b, and a workbook whose outputs are the sum and the product of the inputs.
class Workbook : public test::InDirectory {
 protected:
  void SetUp() override {
    for (const char* name : {"a", "b"}) {
      auto factor = std::make_unique<Uniform>();
      factor->name = name;
      prep_.factors.addFactor(std::move(factor));
    }
    ASSERT_TRUE(prep_.samples.allocate(2));
    for (const double a : {1.0, 2.0, 3.0}) {
      const double row[] = {a, a / 4};
      EXPECT_GT(prep_.samples.addRow(row), 0);
    }
    test::writeFile(workbook_, "as it was");
    model_.choice.setExternal("Excel Application", workbook_, 1);
    model_.choice.kind = kExternalExecutable;
    application_.sheets = {{"Inputs", {{{7, 7}, 1.0}}}, {"Notes"}, {"Outputs"}};
    application_.compute = [this] { compute(); };
    application_.user = [this] {
      compute();
      return true;
    };
  }

  void compute() {
    const Cells& inputs = application_.sheets.front().cells;
    Cells& outputs = application_.sheets.back().cells;
    outputs = {{{0, 0}, "sum"}, {{0, 1}, "product"}};
    for (std::int32_t row = 1; inputs.contains({row, 0}); ++row) {
      const double a = std::get<double>(inputs.at({row, 0}));
      const double b = std::get<double>(inputs.at({row, 1}));
      outputs[{row, 0}] = a + b;
      outputs[{row, 1}] = a * b;
    }
  }
  bool run(Attendance attendance = Attendance::Nobody) {
    application_.calls.clear();
    messages_.clear();
    SpreadsheetRun run(application_, attendance,
                       [this](const auto& title, const auto& text) { messages_.push_back(title + ": " + text); });
    const bool done = run.run(model_.choice, prep_, model_.results);
    if (!run.errorText().empty()) messages_.push_back(run.errorText());
    return done;
  }
  std::vector<double> valuesOf(std::int32_t run) {
    std::vector<double> values;
    EXPECT_TRUE(model_.results.readRun(run, values));
    return values;
  }

  std::string workbook_ = file("book.ods");
  PrepConfiguration prep_;
  ModelConfiguration model_;
  test::ScriptedApplication application_;
  Calls messages_;
};

TEST_F(Workbook, theOrderOfCalls) {
  const Calls filled{"clear Inputs", "write 1 rows from 0", "write 3 rows from 1"};
  const Calls read{"start hidden", "open " + workbook_ + " to read", "saved", "close", "quit"};
  const auto all = [](std::initializer_list<Calls> parts) {
    Calls calls;
    for (const Calls& part : parts) calls.insert(calls.end(), part.begin(), part.end());
    return calls;
  };

  EXPECT_TRUE(run(Attendance::User));
  EXPECT_EQ(application_.calls, all({{"start visible", "open " + workbook_}, filled, {"saved", "wait"}, read}));
  EXPECT_EQ(test::readFile(workbook_), "as it was") << "what the file holds is the user's matter";
  EXPECT_FALSE(application_.sheets.front().cells.contains({7, 7}));

  EXPECT_TRUE(run(Attendance::Nobody));
  EXPECT_EQ(application_.calls,
            all({{"start hidden", "open " + workbook_}, filled, {"recalculate", "save", "close", "quit"}}));
  EXPECT_EQ(test::readFile(workbook_), "computed");

  model_.choice.kind = kNoModelToStart;
  EXPECT_TRUE(run(Attendance::User));
  EXPECT_EQ(application_.calls, read);

  EXPECT_EQ(messages_, Calls());
  EXPECT_EQ(model_.results.outputNames(), (Calls{"sum", "product"}));
  EXPECT_EQ(model_.results.runCount(), 3);
  EXPECT_FALSE(model_.results.hasTimeAxis());
  EXPECT_EQ(valuesOf(1), (std::vector<double>{2.5, 1.0}));
}

TEST_F(Workbook, aSheetForTheInputsIsAdded) {
  application_.sheets = {{"Outputs"}};
  application_.user = [this] {
    EXPECT_EQ(application_.sheets.back().name, "Inputs");
    const Cells expected{{{0, 0}, "a"}, {{0, 1}, "b"}, {{1, 0}, 1.0}, {{1, 1}, 0.25},
                         {{2, 0}, 2.0}, {{2, 1}, 0.5}, {{3, 0}, 3.0}, {{3, 1}, 0.75}};
    EXPECT_EQ(application_.sheets.back().cells, expected);
    return false;  // the user stops
  };
  EXPECT_FALSE(run(Attendance::User));
  EXPECT_EQ(messages_, Calls());
}

TEST_F(Workbook, aFailedCallIsToldAndLeavesTheWorkbook) {
  const struct {
    const char* call;
    Calls messages;
    Attendance attendance = Attendance::Nobody;
  } cases[] = {{"start", {"Error: Excel not registered properly", "Information: start failed"}},
               {"open", {"Error: open failed"}},
               {"count", {"Error: count failed"}},
               {"name", {"Error: name failed"}},
               {"clear", {"Error: clear failed"}},
               {"write", {"Error: write failed"}},
               {"recalculate", {"Error: recalculate failed"}},
               {"save", {"Error: save failed"}},
               {"read", {"Error: read failed"}},
               {"close", {"Error: close failed"}},
               {"saved", {"Error: saved failed"}, Attendance::User},
               {"wait", {"Error: wait failed"}, Attendance::User}};
  for (const auto& c : cases) {
    application_.failing = c.call;
    EXPECT_FALSE(run(c.attendance)) << c.call;
    EXPECT_EQ(messages_, c.messages) << c.call;
    EXPECT_EQ(application_.calls.back(), "quit") << c.call;
    EXPECT_EQ(test::readFile(workbook_), "as it was") << c.call;
    EXPECT_EQ(directory_.entries(), Calls{"book.ods"}) << c.call;
  }
}

TEST_F(Workbook, whatTheSheetOfOutputsMayHold) {
  Cells tenRows{{{0, 0}, "u"}, {{0, 1}, "v"}};
  for (std::int32_t row = 1; row <= 10; ++row) tenRows[{row, 0}] = tenRows[{row, 1}] = 1.0 * row;
  const auto with = [&](std::pair<std::int32_t, std::int32_t> place, const SheetCell& cell) {
    Cells cells = tenRows;
    cells[place] = cell;
    return cells;
  };
  const std::string sheet = workbook_ + ": Outputs.";
  const std::string renamed = "Warning: The model variable a b%c will be modified in a_b%c";
  const struct {
    const char* name;
    Cells outputs;
    std::int32_t runs;  // 0: a failed run
    std::int32_t columns = 2;
    Calls messages = {};
  } cases[] = {
      {"two columns, ten rows", tenRows, 10},
      {"nothing", {}, 0, 2, {sheet + "A1: expected the name of an output, found nothing"}},
      {"a number for a name", with({0, 0}, 1.0), 0, 2, {sheet + "A1: expected the name of an output, found 1"}},
      {"names end at a number", with({0, 1}, 1.0), 10, 1},
      {"no runs", {{{0, 0}, "u"}}, 0, 2, {sheet + "A2: expected a number, found nothing"}},
      {"text in the first run", with({1, 0}, "x"), 0, 2, {sheet + "A2: expected a number, found 'x'"}},
      // The walk tests column 2 in the second, fourth ... run only.
      {"text where the walk looks", with({4, 1}, "x"), 3},
      {"text where it doesn't", with({5, 1}, "x"), 0, 2, {sheet + "B6: expected a number, found 'x'"}},
      {"an error at the very end", with({10, 1}, SheetCell()), 9},
      {"a name with a blank", with({0, 1}, "a b%c"), 10, 2, {renamed}},
      {"a name twice", with({0, 1}, "u"), 10, 2, {"Warning: The model variable u will be modified in u_2"}},
      {"a name with a digit",
       with({0, 1}, "2a"),
       0,
       2,
       {"Error: Incorrect model variable name: 2a",
        sheet + "B1: the name of an output must not begin with a digit, as '2a' does"}}};
  model_.choice.kind = kNoModelToStart;
  for (const auto& c : cases) {
    application_.sheets.back().cells = c.outputs;
    EXPECT_EQ(run(), c.runs > 0) << c.name;
    EXPECT_EQ(messages_, c.messages) << c.name;
    EXPECT_EQ(model_.results.runCount(), c.runs) << c.name;
    EXPECT_EQ(model_.results.outputCount(), c.runs > 0 ? c.columns : 0) << c.name;
  }
  application_.sheets.pop_back();
  EXPECT_FALSE(run());
  EXPECT_EQ(messages_, Calls{"Error: Model Output variables not found"});
}

TEST_F(Workbook, theFileBehindALinkIsReplacedWithItsPermissions) {
  using std::filesystem::perms;
  std::filesystem::permissions(workbook_, perms::owner_all | perms::group_read);
  std::filesystem::create_symlink("book.ods", file("link.ods"));
  model_.choice.outputFile = file("link.ods");
  ASSERT_TRUE(run());
  EXPECT_TRUE(std::filesystem::is_symlink(file("link.ods")));
  EXPECT_EQ(test::readFile(workbook_), "computed");
  EXPECT_EQ(std::filesystem::status(workbook_).permissions(), perms::owner_all | perms::group_read);
  EXPECT_EQ(directory_.entries(), (Calls{"book.ods", "link.ods"}));
}

TEST_F(Workbook, aFullDiskLeavesTheWorkbook) {
  for (const auto call : {test::FailingCalls::kOpen, test::FailingCalls::kFsync, test::FailingCalls::kRename}) {
    test::FailingCalls calls;
    calls.fail(call, 1, ENOSPC);
    EXPECT_FALSE(run()) << call;
    EXPECT_EQ(messages_, Calls{"Error: The workbook cannot be written: No space left on device\n" + workbook_}) << call;
    EXPECT_EQ(model_.results.runCount(), 0);
    EXPECT_EQ(test::readFile(workbook_), "as it was");
    EXPECT_EQ(directory_.entries(), Calls{"book.ods"});
  }
}

}  // namespace
}  // namespace tarvex
