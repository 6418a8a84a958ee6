#include "base/NumberText.h"
#include "batch/CommandFixture.h"
#include "batch/PlotWords.h"
#include "model/ModelConfiguration.h"
#include "plots/RunTable.h"
#include "postproc/PostProcessorFile.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SampleFiles.h"
#include "sampling/SampleSelection.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using test::Words;

TEST(PlotWords, listsAreSplitOutsideBracketsOnly) {
  EXPECT_EQ(splitLists({"a, b", "atan2(x, y[1,5]),c,,", ""}), (Words{"a", "b", "atan2(x, y[1,5])", "c"}));
  NamedRange range;
  std::string message;
  ASSERT_TRUE(parseRange("(a == 1 ? b : c)=-2:1e3", range, message)) << message;
  EXPECT_EQ(range.name, "(a == 1 ? b : c)");
  EXPECT_EQ(range.lower, -2.0);
  EXPECT_EQ(range.upper, 1000.0);
}

class PlotCommand : public test::CommandFixture {
 protected:
  // Draws from a golden file into the file of that name.
  int plot(const std::string& golden, const std::string& name, const Words& options) {
    Words words{"plot", test::goldenPath(golden), "-o", file(name)};
    words.insert(words.end(), options.begin(), options.end());
    return run(words);
  }
};

TEST_F(PlotCommand, drawsEveryKind) {
  const char* const cases[] = {
      "ishigami.spc scatter --variables x1,sin(y)+1",
      "ishigami.spc scatter --region x1=0:1,y=0:5 --filter x2=0:3",
      "ishigami.spc cobweb --filter y=5:20 --show-dropped",
      "mixed.fac distribution --variables x1",
      "random-none.sam cobweb",
      "times.spc histogram --form complement --log -v dose[max] -v rate[1.5]",
      "ishigami-run.spc bars",  // no measures yet
      "ishigami.spc bars --measure src",
      "unit-sobol.spc pie",
      "pair.spc pie",
      "fast-groups.spc bars --measure first,total",
      "morris.spc morris",
      "times-run.spc curves --variables dose[0],dose[0.5],dose[1] --measure src",
      "plant.spc forecast --variables cost/(1+exp(-margin))",
      "matrix.fac preview --variables a,b",
      "random-tree.sam distribution --variables against",
      "tree.fac preview --variables root,against",
      "stein.fac preview --variables a,b",
      "ishigami.spc matrix --variables x1,x2,y --width-mm 90 --height-mm 90",
      "ishigami.spc correlations --ranks --font-size 7",
      "ishigami.spc scatter --variables x1,y --shade yes --jitter",
      "times.spc times",
  };
  for (const char* const words : cases) {
    Words options = test::wordsOf(words);
    const std::string input = options[0];
    options[0] = "--kind";
    EXPECT_EQ(plot(input, "a.svg", options), kSucceeded) << words << errors_;
    const std::string svg = test::readFile(file("a.svg"));
    EXPECT_NE(svg.find("<svg"), std::string::npos) << words;
    EXPECT_NE(svg.find("</text>\n"), std::string::npos) << words << ": texts are no outlines";
    std::filesystem::remove(file("a.svg"));
  }
}

TEST_F(PlotCommand, writesEveryFormat) {
  const Words options{"--kind", "scatter", "--variables", "x1,y"};
  const std::pair<const char*, const char*> formats[] = {
      {"svg", "<?xml"}, {"pdf", "%PDF-"}, {"ps", "%!PS-Adobe"}, {"eps", "%!PS-Adobe-3.0 EPSF"}, {"png", "\x89PNG"}};
  for (const auto& [format, magic] : formats) {
    ASSERT_EQ(plot("ishigami.spc", std::string("a.") + format, options), kSucceeded) << errors_;
    EXPECT_TRUE(test::readFile(file(std::string("a.") + format)).starts_with(magic)) << format;
    Words named = options;
    named.insert(named.end(), {"--format", format, "--width", "300", "--height", "200", "--zoom", "2"});
    ASSERT_EQ(plot("ishigami.spc", "picture", named), kSucceeded) << errors_;
    EXPECT_TRUE(test::readFile(file("picture")).starts_with(magic)) << format;
  }
  // The last one was a PNG: its size stands in the header, big end first.
  EXPECT_EQ(test::readFile(file("picture")).substr(16, 8), std::string("\0\0\2\x58\0\0\1\x90", 8));
}

// Within the bounds, of which the upper one of a filter belongs to it and that of a region doesn't.
TEST_F(PlotCommand, savesTheRunsWithinTheBounds) {
  PrepConfiguration prep;
  ModelConfiguration model;
  VelsConfiguration vels;
  std::string message;
  ASSERT_TRUE(loadPostProcessorFile(test::goldenPath("ishigami.spc"), prep, model, vels, message));
  RunTable table;
  ASSERT_TRUE(readRunTable(prep, model, model.results.outputNames(), {"x1", "y"}, table, message));
  const auto& y = table.columns[1].values;
  const double highest = *std::max_element(y.begin(), y.begin() + 20);  // a bound that a value meets exactly
  const std::string upper = "y=1:" + numberText(highest, 17);
  for (const bool region : {false, true}) {
    const std::vector<std::int32_t> kept = runsWithin(table, {{0, -1.0, 2.0, !region}, {1, 1.0, highest, !region}});
    ASSERT_GT(kept.size(), 5u);
    Words words{"plot", test::goldenPath("ishigami.spc"), "--save-selection", file("kept.sam")};
    for (const std::string& word :
         region ? Words{"--region", "x1=-1:2," + upper} : Words{"--filter", "x1=-1:2", "--filter", upper})
      words.push_back(word);
    ASSERT_EQ(run(words), kSucceeded) << errors_;
    EXPECT_EQ(out_, "Total samples: 200\nSaved samples: " + std::to_string(kept.size()) + "\n");
    PrepConfiguration selected, saved;
    ASSERT_TRUE(selectRuns(prep, kept, selected, message) && loadSampleFile(file("kept.sam"), saved, message))
        << message;
    EXPECT_EQ(test::textOf(saved.samples), test::textOf(selected.samples));
  }
  const Words none{"plot",     test::goldenPath("ishigami.spc"), "--save-selection", file("no/such.sam"), "--filter",
                   "y=900:901"};
  EXPECT_EQ(run(none), kFailed);
  EXPECT_EQ(errors_, "  Error writing output file\n " + file("no/such.sam") + "\n" + file("no/such.sam") +
                         ": No such file or directory\n");
}

TEST_F(PlotCommand, refusals) {
  const struct {
    const char* words;  // the file, the picture, and what follows
    int status;
    const char* text;
  } cases[] = {
      {"ishigami.spc a.svg --kind donut", kWrongUsage, "donut"},
      {"ishigami.spc a.svg", kWrongUsage, "--kind"},
      {"ishigami.spc a.gif --kind cobweb", kFailed, ".png"},
      {"ishigami.spc a.svg --kind scatter -v x1,q", kFailed, "q"},
      {"ishigami.spc a.svg --kind scatter -v x1", kFailed, "two"},
      {"ishigami.spc a.svg --kind matrix -v x1", kFailed, "two to eight"},
      {"ishigami.spc a.svg --kind scatter -v x1,y --font Nosuchfont", kFailed, "Nosuchfont"},
      {"ishigami.spc a.svg --kind scatter -v x1,y --region x1=1:2", kFailed, "two ranges"},
      {"ishigami.spc a.svg --kind scatter -v x1,y --region x1=1:2,x2=1:2", kFailed, "region"},
      {"ishigami.spc a.svg --kind cobweb --filter y=1", kFailed, "y=1"},
      {"ishigami.spc a.svg --kind cobweb --filter y=2:2", kFailed, "  Upper bound must be greater than lower bound."},
      {"ishigami.spc a.svg --kind bars --measure morris", kFailed, "src"},
      {"ishigami.spc a.svg --kind bars -v q", kFailed, "q"},
      {"ishigami.spc a.svg --kind pie", kFailed, "Pies"},
      {"ishigami.spc a.svg --kind morris", kFailed, "Morris"},
      {"ishigami.spc a.svg --kind preview -v x1,x2", kFailed, "not correlated"},
      {"ishigami.spc a.svg --kind times", kFailed, "no time axis"},
      {"times.spc a.svg --kind times -v dose[1]", kFailed, "no output dose[1]"},
      {"times.spc a.svg --kind times --log-x", kFailed, "the first one is 0"},
      {"times.spc a.svg --kind times --filter dose=0:1", kFailed, "shows all of them"},
      {"ishigami.fac a.svg --kind cobweb", kFailed, "no sample"},
      {"ishigami.sam a.svg --kind bars", kFailed, "no results"},
      {"ishigami.imd a.svg --kind bars", kFailed, "ishigami.imd"},
      {"ishigami.spc no/such/a.svg --kind cobweb", kFailed, "I cannot create the file\n"},
      {"ishigami.spc no/such/a.svg --kind histogram", kFailed, "I cannot save the file\n"},
  };
  for (const auto& c : cases) {
    const Words words = test::wordsOf(c.words);
    EXPECT_EQ(plot(words[0], words[1], {words.begin() + 2, words.end()}), c.status) << c.words;
    EXPECT_NE(errors_.find(c.text), std::string::npos) << c.words << '\n' << errors_;
    EXPECT_TRUE(directory_.entries().empty()) << c.words;
  }
}

TEST_F(PlotCommand, analysePutsAllPicturesIntoADirectory) {
  const auto analyse = [this](const char* file, const std::string& directory, const Words& more) {
    Words words{"analyse", test::goldenPath(file), "--plots", directory};
    words.insert(words.end(), more.begin(), more.end());
    return run(words);
  };
  ASSERT_EQ(analyse("times-run.spc", file("new/pictures"), {"-v", "dose[max]", "-v", "rate/2", "--format", "pdf"}),
            kSucceeded)
      << errors_;
  std::size_t found = 0;
  for (const char* name : {"dose_max_-histogram", "dose_max_-cumulative", "dose_max_-src", "dose_max_-cobweb",
                           "rate_2-histogram", "rate_2-srrc", "rate_2-cobweb"})
    found += test::readFile(file("new/pictures/") + name + ".pdf").starts_with("%PDF-") ? 1 : 0;
  EXPECT_EQ(found, 7u);
  // Neither a file in a directory's place nor one picture that can't be put into its place leaves others behind.
  test::writeFile(file("file"), "");
  EXPECT_EQ(analyse("morris-run.spc", file("file"), {"--sa"}), kFailed);
  EXPECT_EQ(errors_.rfind("I cannot create the file\n" + file("file") + ": Not a directory", 0), 0u) << errors_;
  EXPECT_EQ(analyse("morris-run.spc", file("file"), {}), kFailed);
  EXPECT_EQ(errors_.rfind("I cannot save the file\n" + file("file") + ": Not a directory", 0), 0u) << errors_;
  EXPECT_EQ(directory_.entries(), (Words{"file", "new"}));
}

}  // namespace
}  // namespace tarvex
