#include <algorithm>

#include "panels/PrepFixture.h"
#include "panels/sampling/makeMethodPanel.h"
#include "sampling/FastSampler.h"
#include "sampling/LpTauSampler.h"
#include "sampling/MorrisSampler.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RepLatinSampler.h"
#include "sampling/SampleFiles.h"
#include "sampling/SobolSampler.h"

namespace tarvex {
namespace {

using test::kAllEffects;
using test::kGroupEffects;
using test::Texts;
using test::Uses;

class MethodPanels : public test::PrepPanelTest<PMethod> {
 protected:
  void open(std::int32_t method, const FactorList& factors, const Sampler* current = nullptr, const Uses& uses = {}) {
    show(makeMethodPanel(display_, method, {&factors, current, false}, nullptr));
    use(window(), uses);
  }
  std::string entries(const char* name) {
    const auto& list = in<QComboBox>(name);
    return cells(*list.model()) + "at " + list.currentText().toStdString();
  }
  // "5 Random 1000 3 1", or what ok says.
  std::string outcome() {
    const Texts shown = shownBy(*panel_, "ok");
    EXPECT_EQ(panel_->accepted(), shown.empty());
    return shown.empty() ? described(*panel_->takeSampler()) : shown.front();
  }
  static std::string described(const Sampler& sampler) {
    std::string text = test::textOf(sampler);
    std::ranges::replace(text, '\n', ' ');
    return text.substr(0, text.find_last_not_of(' ') + 1);
  }

  const std::shared_ptr<FactorList> three_ = normals(3), stein_ = golden("stein.fac");
};

constexpr const char* kWrongValues = "Error: wrong values: ";

// clang-format off
TEST_F(MethodPanels, OkTakesWhatIsTypedOrRefusesInItsWords) {
  const std::string wrong = kWrongValues;
  const std::string random = wrong + "  Seed and Number of executions must be positive values\n";
  const std::string latin = wrong + "Incorrect value for Seed or Number of executions\n";
  const std::string seed = wrong + "Seed must be a value greater than 0 and less than 2,147,483,647\nSeed: '0' is not";
  const Uses order{{"TOSwitchSel", ""}, {"TOrder", "2"}};
  const std::tuple<std::int32_t, Uses, std::string> rows[] = {  // with what the outcome begins with
      {kRandom, {}, random + "Number of executions: '0' is not above 0."},
      {kRandom, {{"NExecution", " 1000 "}, {"NSeed", "7"}}, "5 Random 1000 3 7"},
      {kRandom, {{"NExecution", "2147483647"}, {"NSeed", "2147483647"}}, "5 Random 2147483647 3 2147483647"},
      {kRandom, {{"NExecution", "2147483648"}}, wrong + "The value 2147483648 of number of executions is out of"},
      {kRandom, {{"NExecution", "1,000"}}, random + "Number of executions: '1,000' is no whole number"},
      {kRandom, {{"NExecution", "99999999999999999999"}}, random},
      {kRandom, {{"NExecution", "9"}, {"NSeed", "-1"}}, random + "Seed: '-1'"},
      {kLatin, {{"NExecution", "20"}, {"NSeed", "x"}}, latin},
      {kLpTau, {}, "3 QuasiRandom LpTau 16 3"},
      {kLpTau, {{"OExecutions", "1048576"}}, "3 QuasiRandom LpTau 1048576 3"},
      {kMorris, {}, "4 Morris 4 4 16 3 1"},
      {kMorris, {{"NSeed", "0"}}, seed},
      {kFast, {{"NExecution", "0"}}, wrong + "  Number of executions must be a positive value"},
      {kFast, {{"NExecution", "105"}, {"NSeed", "0"}}, seed},
      {kFast, {{"OSettings", kAllEffects}, {"NExecution", "194"}}, wrong + "Sample size too small\nThe sample size must be >= 65"},
      {kFast, {{"OSettings", kAllEffects}, {"NExecution", "195"}}, "0 Fast 1 195 3 0 1 0 groups:"},
      {kRepLatin, {{"NBaseDesign", "0"}}, latin},
      {kRepLatin, {{"NBaseDesign", "65536"}, {"NReplications", "65536"}}, latin + "The sample size would be 4294967296"},
      {kSobol, {order[0], order[1], {"OExecutions", "32768"}}, "7 Sobol 4096 32768 3 2 3"},
      {kSobol, {order[0], order[1], {"ChCheapDesign", ""}}, "7 Sobol 16 80 3 2 3"},
      {kSobol, {order[0], {"TOrder", "3"}}, "7 Sobol 16 128 3 3 3"},
      {kSobol, {order[0], {"TOrder", "9"}}, wrong + "  Incorrect order number, order too big."},
      {kSobol, {order[0], {"TOrder", "0"}}, wrong + "The order must be at least 1, not 0."},
      {kSobol, {order[0], {"TOrder", "two"}}, wrong + "The order must be a whole number"},
  };
  const auto ranked = normals(3, kImanConover);
  for (const auto& [method, uses, expected] : rows) {
    SCOPED_TRACE(expected);
    open(method, method == kRepLatin ? *ranked : *three_, nullptr, uses);
    const std::string line = message();
    const bool told = label("MlCost").empty();
    const std::string outcome = this->outcome();
    EXPECT_EQ(outcome.substr(0, expected.size()), expected);
    EXPECT_EQ(told, outcome.starts_with(wrong)) << "the line tells what ok will say";
    EXPECT_TRUE(!told || outcome.find(line) != std::string::npos) << line;
  }
}

TEST_F(MethodPanels, CostAndTrapsAreToldBeforeOk) {
  const auto tree = normals(3, kDependenceTree), many = normals(200), ranked = normals(2, kImanConover);
  ASSERT_TRUE(tree->link(2, 0, 0.5));
  SobolSampler odd;
  ASSERT_TRUE(odd.setBaseSize(100) && odd.setSamples(800));
  MorrisSampler five;
  ASSERT_TRUE(five.setLevels(5) && five.setTrajectories(20));
  const struct {
    std::int32_t method;
    const FactorList& list;
    Uses uses;
    const char* cost;
    const char* caution;  // part of it
    const Sampler* current = nullptr;
  } rows[] = {
      {kRandom, *three_, {{"NExecution", "1000"}}, "1000 runs: uncertainty statistics, regression", ""},
      {kRandom, *three_, {{"NExecution", "1"}}, "1 run: ", "Regression over these factors needs at least 5 runs."},
      {kLatin, *tree, {{"NExecution", "9"}}, "9 runs: ", "follow others in the dependence tree: x3."},
      {kLatin, *stein_, {{"NExecution", "61"}}, "61 runs: ", "The Stein sample has fewer rows than the sample"},
      {kLatin, *stein_, {{"NExecution", "60"}}, "60 runs: ", ""},
      {kMorris, *three_, {}, "16 runs: Morris index", "Each step goes half of a factor's range: a model that repeats"},
      {kFast, *three_, {{"NExecution", "105"}}, "105 runs: first order", "Below 121 runs frequencies are mistaken"},
      {kFast, *three_, {{"NExecution", "121"}}, "121 runs: first order", ""},
      {kFast, *three_, {{"OSettings", kAllEffects}, {"NExecution", "200"}}, "195 runs of 200 asked for: first and total",
       "too few frequencies for so many factors: from 387 runs"},
      {kSobol, *many, {}, "6432 runs: ", "this design takes 400 and can't be generated"},
      {kSobol, *three_, {}, "800 runs: first and total", "100 points of the sequence aren't balanced", &odd},
      {kMorris, *three_, {}, "80 runs: ", "Levels: 5 was set; it is the last entry.", &five},
      {kMorris, *three_, {{"OLevels", "5"}}, "80 runs: ", "Each step goes 2/5 of", &five},
      {kRepLatin, *ranked, {{"NBaseDesign", "10"}}, "10 runs: importance", "they need at least 2."},
      {kRepLatin, *ranked, {{"SCChoice", ""}}, "0 runs.", "this method makes no runs."},
  };
  for (const auto& [method, list, uses, cost, caution, current] : rows) {
    SCOPED_TRACE(std::string(cost) + caution);
    open(method, list, current, uses);
    EXPECT_TRUE(label("MlCost").starts_with(cost)) << label("MlCost");
    EXPECT_NE(message().find(caution), std::string::npos) << message();
    EXPECT_EQ(message().empty(), *caution == '\0');
  }
}

TEST_F(MethodPanels, ListsOfferWhatTheMethodHasAndOpenAtWhatIsSet) {
  const auto five = normals(5), sixty = normals(60);
  LpTauSampler thousand;
  ASSERT_TRUE(thousand.setSamples(1000));
  MorrisSampler morris;
  ASSERT_TRUE(morris.setLevels(6) && morris.setTrajectories(8));
  const std::string effects = std::string(kAllEffects) + '|' + kGroupEffects + "|at ";
  const std::string refused = std::string(kWrongValues) + "Incorrect value for Seed or Number of executions\nThe sample";
  const struct {
    std::int32_t method;
    const FactorList& list;
    const Sampler* current;
    Uses uses;
    const char* gadget;
    std::string entries;       // to their end; of a field its text
    std::string outcome = {};  // from its start
  } rows[] = {
      {kLpTau, *three_, &thousand, {}, "OExecutions", "|1048576|1000|at 512", "3 QuasiRandom LpTau 512 3"},
      {kMorris, *three_, &morris, {}, "OExecution", "16|20|24|28|32|36|40|at 32", "4 Morris 6 8 32 3 "},
      {kMorris, *three_, &morris, {}, "OLevels", "4|6|8|at 6"},
      {kSobol, *five, nullptr, {}, "OExecutions", "192|384|768|1536|3072|6144|12288|24576|49152|at 192"},
      {kSobol, *five, nullptr, {{"TOSwitchSel", ""}, {"TOrder", "9"}}, "OExecutions",  // as of the order 1
       "112|224|448|896|1792|3584|7168|14336|28672|at 112"},
      {kFast, *sixty, nullptr, {}, "OSettings", effects + kAllEffects},
      {kFast, *sixty, nullptr, {{"NExecution", "5000"}, {"OSettings", kGroupEffects}}, "OSettings",
       effects + kGroupEffects, "0 Fast 1 5000 60 0 2 0 groups:"},
      {kRepLatin, *stein_, nullptr, {{"NBaseDesign", "61"}}, "NSampleSize", "61", refused},
  };
  // clang-format on
  for (const auto& row : rows) {
    SCOPED_TRACE(row.entries);
    open(row.method, row.list, row.current, row.uses);
    const bool isField = window().findChild<QLineEdit*>(row.gadget) != nullptr;
    const std::string entries = isField ? field(row.gadget) : this->entries(row.gadget);
    EXPECT_TRUE(entries.ends_with(row.entries)) << entries;
    EXPECT_EQ(outcome().substr(0, row.outcome.size()), row.outcome);
  }
  EXPECT_EQ(label("labSamSize") + label("labNumRep"),
            "Sample si&ze (max 60)N° of &replications (max value suggested 7)");
  open(kLatin, *stein_);
  EXPECT_EQ(window().windowTitle().toStdString() + label("labNumExe"),
            "Parameters for Latin Hypercube with Stein&N° of executions (max 60)");
  open(kSobol, *five);
  EXPECT_FALSE(enabled("TOrder"));
}

TEST_F(MethodPanels, GroupsAreMadeChangedAndTakenAway) {
  const auto list = normals(5);
  open(kFast, *list);
  EXPECT_FALSE(enabled("BNewGroup"));
  use(window(), {{"NExecution", "400"}, {"OSettings", kGroupEffects}});
  for (const char* const callback : {"modify", "delGroup"}) does(callback, {"Error:    No group selected."});
  const auto groups = [&] { return cells(*in<QListWidget>("SlGroups").model()); };
  // The members that move between the lists, and how the panel is left.
  const auto select = [this](const char* name, const char* from, std::vector<int> rows, const char* button) {
    whenShown("selGroup", [=](QWidget& members) {
      EXPECT_EQ(members.windowTitle().toStdString(), std::string("Select members of ") + name);
      const char* const mover = from == std::string("SlAvailable") ? "BRight" : "BLeft";
      EXPECT_FALSE(members.findChild<QPushButton*>(mover)->isEnabled());
      for (const int row : rows) clickRow(members, from, row, Qt::ControlModifier);
      click(members, mover);
      click(members, button);
    });
  };
  const std::tuple<const char*, std::vector<int>, const char*, const char*> made[] = {
      {"one", {0, 2}, "BOk", "one|"}, {"none", {0}, "BCancel", "one|"}, {"two", {1}, "BOk", "one|two|"}};
  const std::string asked = "New group: ^Name for the new group: [?]";
  for (const auto& [name, rows, button, after] : made) {
    dialogs_.texts = {name};
    select(name, "SlAvailable", rows, button);
    does("newGroup", {asked});
    EXPECT_EQ(groups(), after);
  }
  for (const char* const bad : {"", "1a", "one", "a b"}) {
    dialogs_.texts = {bad};
    does("newGroup", {asked, "Error:   Invalid name field...."});
  }
  clickRow(window(), "SlGroups", 0);
  select("one", "SlSelected", {1}, "BOk");
  click(window(), "BModify");
  does("ok");
  const std::unique_ptr<Sampler> two = panel_->takeSampler();
  ASSERT_TRUE(two);
  EXPECT_EQ(described(*two),
            "0 Fast 1 400 5 0 2 2 groups: two one 2 elements in groups 0\tx4 1\tx1 no group information");
  open(kFast, *list, two.get());
  EXPECT_EQ(groups(), "two|one|");
  in<QListWidget>("SlGroups").setCurrentRow(0);
  const std::string question = "Delete Group:   This group contains some factors.\n   Erase it anyway? [^Yes/^Cancel]";
  for (const bool answer : {false, true, true}) does("delGroup", {question}, {answer});
  EXPECT_EQ(groups(), "");
  EXPECT_FALSE(enabled("BModify") || enabled("BDelete"));
  // Nothing to compare: a group of all factors.
  FastSampler all;
  ASSERT_TRUE(all.setAnalysisMode(FastSampler::kGroups) && all.addGroup("all") && all.setSamples(900));
  for (int i = 0; i < 5; ++i) ASSERT_TRUE(all.addElement("all", list->factor(i).name));
  open(kFast, *list, &all);
  does("ok",
       {std::string(kWrongValues) + "The test on groups needs at least two groups, or a group and a factor in none."});
}

TEST_F(MethodPanels, ChosenFactorsKeepTheirFlags) {
  const auto list = normals(3, kImanConover);
  const std::pair<const char*, const char*> choose{"SCChoice", ""};
  open(kRepLatin, *list, nullptr, {{"NBaseDesign", "20"}, {"NReplications", "6"}, choose, choose});
  EXPECT_EQ(field("NReplications"), "6");  // as many as there were
  EXPECT_FALSE(enabled("MaElements"));
  use(window(), {choose});
  EXPECT_FALSE(enabled("NReplications"));
  EXPECT_EQ(field("NSampleSize"), "20");
  auto& elements = table("MaElements");
  for (const int row : {1, 2, 2}) {
    const QPoint place = elements.visualRect(elements.model()->index(row, 0)).center();
    QTest::mouseClick(elements.viewport(), Qt::LeftButton, {}, place);
  }
  EXPECT_EQ(cells(*elements.model()), "x1 no|x2 yes|x3 no|");
  does("ok");
  const std::unique_ptr<Sampler> chosen = panel_->takeSampler();
  EXPECT_TRUE(described(*chosen).starts_with("6 Replicated Latin Hypercube 5648423 20 3 1 20 1 0\tx1 1\tx2 0\tx3"));
  open(kRepLatin, *list, chosen.get(), {choose, {"NReplications", "3"}});
  EXPECT_TRUE(enabled("NReplications"));
  EXPECT_TRUE(outcome().starts_with("6 Replicated Latin Hypercube 5648423 60 3 0 20 3 0\tx1 1\tx2 0\tx3"));
}

TEST_F(MethodPanels, TheSameSettingsKeepTheRecordOfTheSample) {
  for (const char* const sample : {"morris.sam", "fast-extended.sam"}) {
    PrepConfiguration prep;
    std::string problem;
    ASSERT_TRUE(loadSampleFile(test::goldenPath(sample), prep, problem)) << problem;
    const std::string before = described(*prep.sampler);
    open(prep.sampler->methodId, prep.factors, prep.sampler.get());
    EXPECT_EQ(outcome(), before);
    open(prep.sampler->methodId, prep.factors, prep.sampler.get(), {{"NSeed", "77"}});
    does("cancel");
    EXPECT_FALSE(panel_->accepted() || panel_->takeSampler());
    EXPECT_NE(outcome(), before);
    EXPECT_EQ(described(*prep.sampler), before);
  }
  SobolSampler cheap;
  ASSERT_TRUE(cheap.setBaseSize(32) && cheap.setDesignKind(SobolSampler::kUpToOrder) && cheap.setOrder(2) &&
              cheap.setSamples(160));
  open(kSobol, *three_, &cheap);
  EXPECT_TRUE(in<QCheckBox>("ChCheapDesign").isChecked());
  EXPECT_EQ(outcome(), described(cheap));
}

}  // namespace
}  // namespace tarvex
