#include "model/CellsRun.h"

#include <limits>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/makeFactor.h"
#include "model/ModelConfiguration.h"
#include "sampling/PrepConfiguration.h"
#include "support/ScriptedApplication.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using Texts = std::vector<std::string>;

TEST(WorkbookCells, PlacesAreReadAsPeopleWriteThem) {
  const struct {
    const char* text;
    const char* place;  // or nothing
  } rows[] = {{"Model!B3", "Model!B3"},
              {"$Model.$B$3", "Model!B3"},
              {"'My sheet'!aa10", "'My sheet'!AA10"},
              {"'It''s'.A1", "'It''s'!A1"},
              {"v1.2!C4", "'v1.2'!C4"},
              {"a!b!XFD1048576", "'a!b'!XFD1048576"},
              {"B3", nullptr},
              {"Model!B", nullptr},
              {"Model!3", nullptr},
              {"Model!B0", nullptr},
              {"Model!XFE1", nullptr},
              {"Model!A1048577", nullptr},
              {"!B3", nullptr},
              {"'Model!B3", nullptr},
              {"Model!B3 ", nullptr},
              {"Model!AAAAAAAAA1", nullptr},
              {"Model!B99999999999999", nullptr},
              {"a\tb!B3", nullptr},
              {"", nullptr}};
  for (const auto& row : rows) {
    NamedCell cell{"x"};
    std::string problem;
    EXPECT_EQ(parsePlace(row.text, cell, problem), row.place != nullptr) << row.text;
    if (row.place != nullptr) {
      EXPECT_EQ(cell.place(), row.place);
    } else {
      EXPECT_EQ(problem, std::string("expected a cell such as Model!B3, found '") + row.text + "'");
    }
  }
}

TEST(WorkbookCells, TheRecordKeepsThemWhereOtherReadersPassOver) {
  ModelConfiguration model;
  model.choice.setExternal("Excel Application", "book.ods", 1);
  model.choice.kind = kExternalExecutable;
  for (int i = 1; i <= 300; ++i) model.choice.cells.inputs.push_back({"x" + std::to_string(i), "My sheet", i, 1});
  model.choice.cells.outputs = {{"y", "Model", 8, 5}};
  TextWriter out;
  out << '\n';
  model.write(out);
  ModelConfiguration read;
  TextReader in = TextReader::fromText(out.text());
  ASSERT_TRUE(read.read(in)) << in.problem();
  EXPECT_EQ(read.choice.cells, model.choice.cells);
  EXPECT_EQ(ModelChoice(read.choice).executable, "Excel Application");
  const std::pair<std::string, bool> rests[] = {
      {"", true}, {" anything", true}, {"\tinput x1=A", false}, {"\tcells", false}, {"\toutput =M!A1", false}};
  for (const auto& [rest, isGood] : rests) {
    TextReader damaged = TextReader::fromText("\nExcel Application\nbook.ods\n1\n1\n0\n0" + rest + "\n0\n\n\n");
    EXPECT_EQ(ModelConfiguration().read(damaged), isGood) << rest;
  }
}

// Three runs of a and b through a workbook whose sum lies on another sheet.
class CellsOfAWorkbook : public test::InDirectory {
 protected:
  void SetUp() override {
    for (const char* const name : {"a", "b"}) {
      prep_.factors.addFactor(makeFactor("Normal"));
      prep_.factors.factor(prep_.factors.factorCount() - 1).name = name;
    }
    ASSERT_TRUE(prep_.samples.allocate(2));
    for (const double a : {1.0, 2.0, 3.0}) addRow(a, a / 4);
    choice_.setExternal("Excel Application", file("book.ods"), 1);
    choice_.kind = kExternalExecutable;
    choice_.cells = {{{"b", "One", 2, 1}, {"a", "Two", 0, 0}}, {{"sum", "Two", 5, 5}, {"q", "One", 0, 0}}};
    application_.sheets = {{"One"}, {"Two"}};
    application_.compute = [this] {
      test::ScriptedApplication::Cells& one = application_.sheets[0].cells;
      test::ScriptedApplication::Cells& two = application_.sheets[1].cells;
      const double* const a = std::get_if<double>(&two[{0, 0}]);
      const double* const b = std::get_if<double>(&one[{2, 1}]);
      if (a == nullptr || b == nullptr) return;
      two[{5, 5}] = *a + *b;
      one[{0, 0}] = *a == broken_ ? SheetCell() : SheetCell(*a / *b);
    };
  }
  void addRow(double a, double b) {
    const double row[] = {a, b};
    EXPECT_GT(prep_.samples.addRow(row), 0);
  }
  bool run() {
    messages_.clear();
    application_.calls.clear();
    CellsRun run(application_,
                 [this](const auto& title, const auto& text) { messages_.push_back(title + ": " + text); });
    const bool done = run.run(choice_, prep_, results_);
    if (!run.errorText().empty()) messages_.push_back(run.errorText());
    problemRow_ = run.problemRow();
    return done;
  }

  std::int32_t problemRow_ = 0;
  PrepConfiguration prep_;
  ModelChoice choice_;
  ModelResults results_;
  test::ScriptedApplication application_;
  double broken_ = -1.0;
  Texts messages_;
};

TEST_F(CellsOfAWorkbook, TakeTheFactorsByNameAndGiveTheOutputs) {
  EXPECT_TRUE(run());
  EXPECT_EQ(messages_, Texts());
  EXPECT_EQ(application_.calls, (Texts{"start hidden", "open copy of " + file("book.ods"), "recalculate", "drive 1",
                                       "drive 2", "close", "quit"}));
  EXPECT_EQ(results_.outputNames(), (Texts{"sum", "q"}));
  std::vector<double> values;
  EXPECT_TRUE(results_.readRun(2, values));
  EXPECT_EQ(values, (std::vector<double>{3.75, 4.0}));
  choice_.cells.inputs.pop_back();
  application_.formulas = {0};
  EXPECT_TRUE(run());
  EXPECT_EQ(messages_, (Texts{"Warning: The workbook has no cell for the factors 'a'.",
                              "Warning: Input cells hold formulas, in whose place the values of factors are put: "
                              "One!B3 (b). The file keeps them."}));
}

TEST_F(CellsOfAWorkbook, AFailureIsToldWithItsPlaceAndLeavesNothing) {
  for (const char* const call : {"start", "open", "count", "name", "bind", "recalculate", "drive", "close"}) {
    application_.failing = call;
    EXPECT_FALSE(run()) << call;
    EXPECT_NE(messages_.back().find(std::string(call) + " failed"), std::string::npos) << call;
    EXPECT_EQ(application_.calls.back(), "quit") << call;
    EXPECT_EQ(results_.runCount(), 0) << call;
  }
  application_.failing.clear();
  const std::string book = file("book.ods") + ": ";
  broken_ = 2.0;
  EXPECT_FALSE(run());
  EXPECT_EQ(messages_, Texts{book + "One!A1: expected a number, found '#DIV/0!'"});
  EXPECT_EQ(problemRow_, 2);
  EXPECT_EQ(results_.runCount(), 0);
  choice_.cells.outputs[0].sheet = "Three";
  EXPECT_FALSE(run());
  EXPECT_EQ(messages_, Texts{book + "there is no sheet 'Three', but 'One', 'Two'"});
  choice_.cells.outputs[0].sheet = "Two";
  choice_.cells.inputs[0].name = "c";
  EXPECT_FALSE(run());
  EXPECT_EQ(messages_, Texts{book + "One!B3: 'c' is no factor of the sample"});
  choice_.cells.inputs[0].name = "b";
  broken_ = -1.0;
  addRow(4.0, std::numeric_limits<double>::infinity());
  EXPECT_FALSE(run());
  EXPECT_EQ(messages_, Texts{"No cell can hold inf, the value of b"});
  EXPECT_EQ(problemRow_, 4);
}

}  // namespace
}  // namespace tarvex
