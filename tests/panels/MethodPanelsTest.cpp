#include <QCheckBox>
#include <algorithm>

#include "factors/FactorFiles.h"
#include "panels/PrepFixture.h"
#include "panels/sampling/makeMethodPanel.h"
#include "sampling/FastSampler.h"
#include "sampling/LpTauSampler.h"
#include "sampling/MorrisSampler.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/PrepSettings.h"
#include "sampling/RepLatinSampler.h"
#include "sampling/SobolSampler.h"
#include "support/Golden.h"

namespace tarvex {
namespace {

using test::kAllEffects;
using test::kGroupEffects;
using test::Texts;
using Uses = std::vector<std::pair<const char*, const char*>>;

class MethodPanels : public test::PrepTest {
 protected:
  void open(std::int32_t method, const FactorList& factors, const Sampler* current = nullptr, bool demo = false) {
    panel_ = makeMethodPanel(display_, method, {&factors, current, demo}, nullptr);
    if (panel_) {
      ASSERT_EQ(panel_->problems(), QStringList());
    }
  }
  // Fields are typed into, entries of lists chosen, the rest is clicked.
  void use(const Uses& uses) {
    for (const auto& [name, text] : uses) {
      auto* const list = panel_->window()->findChild<QComboBox*>(name);
      if (list == nullptr) {
        *text == '\0' && panel_->window()->findChild<QAbstractButton*>(name) != nullptr
            ? click(*panel_->window(), name)
            : type(*panel_->window(), {{name, text}});
        continue;
      }
      ASSERT_GE(list->findText(text), 0) << name << ": " << text;
      list->setCurrentIndex(list->findText(text));
      Q_EMIT list->activated(list->currentIndex());
    }
  }
  std::string label(const char* name) { return PrepTest::label(*panel_, name); }
  std::string entries(const char* name) {
    const auto* const list = panel_->gadget<QComboBox>(name);
    return cells(*list->model()) + "at " + list->currentText().toStdString();
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
  // A sampler with these settings that has generated.
  static PrepConfiguration generated(const SamplerSettings& settings, const FactorList& factors) {
    PrepSettings prep;
    std::string message;
    EXPECT_TRUE(prep.factors.copyFrom(factors, message));
    prep.sampler = makeSampler(settings, factors, message);
    EXPECT_TRUE(prep.sampler) << message;
    PrepConfiguration made = makePrep(std::move(prep));
    EXPECT_TRUE(made.prepareGeneration());
    EXPECT_EQ(made.generate(100), 100);
    return made;
  }

  std::unique_ptr<PMethod> panel_;
};

std::shared_ptr<FactorList> steinList() {
  auto list = std::make_shared<FactorList>();
  std::string message;
  EXPECT_TRUE(loadFactorFile(test::goldenPath("stein.fac"), *list, message)) << message;
  return list;
}

constexpr const char* kWrongValues = "Error: wrong values: ";

// clang-format off
TEST_F(MethodPanels, OkTakesWhatIsTypedOrRefusesInItsWords) {
  const std::string wrong = kWrongValues;
  const std::string random = wrong + "  Seed and Number of executions must be positive values\n";
  const std::string latin = wrong + "Incorrect value for Seed or Number of executions\n";
  const std::string seed = wrong + "Seed must be a value greater than 0 and less than 2,147,483,647\nSeed: '0' is not";
  const Uses order{{"TOSwitchSel", ""}, {"TOrder", "2"}};
  const struct {
    std::int32_t method;
    Uses uses;
    std::string outcome;  // from its start
  } rows[] = {
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
  for (const auto& row : rows) {
    SCOPED_TRACE(row.outcome);
    const auto list = normals(3, row.method == kRepLatin ? kImanConover : kNoCorrelation);
    open(row.method, *list);
    use(row.uses);
    const std::string line = label("MlMessage");
    const bool told = label("MlCost").empty();
    const std::string outcome = this->outcome();
    EXPECT_EQ(outcome.substr(0, row.outcome.size()), row.outcome);
    EXPECT_EQ(told, outcome.rfind(wrong, 0) == 0) << "the line tells what ok will say";
    EXPECT_TRUE(!told || outcome.find(line) != std::string::npos) << line;
  }
}

TEST_F(MethodPanels, CostAndTrapsAreToldBeforeOk) {
  const auto tree = normals(3, kDependenceTree), stein = steinList(), many = normals(200), three = normals(3),
             ranked = normals(2, kImanConover);
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
      {kRandom, *three, {{"NExecution", "1000"}}, "1000 runs: uncertainty statistics, regression", ""},
      {kRandom, *three, {{"NExecution", "1"}}, "1 run: ", "Regression over these factors needs at least 5 runs."},
      {kLatin, *tree, {{"NExecution", "9"}}, "9 runs: ", "follow others in the dependence tree: x3."},
      {kLatin, *stein, {{"NExecution", "61"}}, "61 runs: ", "The Stein sample has fewer rows than the sample"},
      {kLatin, *stein, {{"NExecution", "60"}}, "60 runs: ", ""},
      {kMorris, *three, {}, "16 runs: Morris index", "Each step goes half of a factor's range: a model that repeats"},
      {kFast, *three, {{"NExecution", "105"}}, "105 runs: first order", "Below 121 runs frequencies are mistaken"},
      {kFast, *three, {{"NExecution", "121"}}, "121 runs: first order", ""},
      {kFast, *three, {{"OSettings", kAllEffects}, {"NExecution", "200"}}, "195 runs of 200 asked for: first and total",
       "too few frequencies for so many factors: from 387 runs"},
      {kSobol, *many, {}, "6432 runs: ", "this design takes 400 and can't be generated"},
      {kSobol, *three, {}, "800 runs: first and total", "100 points of the sequence aren't balanced", &odd},
      {kMorris, *three, {}, "80 runs: ", "Levels: 5 was set; it is the last entry.", &five},
      {kMorris, *three, {{"OLevels", "5"}}, "80 runs: ", "Each step goes 2/5 of", &five},
      {kRepLatin, *ranked, {{"NBaseDesign", "10"}}, "10 runs: importance", "they need at least 2."},
      {kRepLatin, *ranked, {{"SCChoice", ""}}, "0 runs.", "this method makes no runs."},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.cost) + row.caution);
    open(row.method, row.list, row.current);
    use(row.uses);
    EXPECT_EQ(label("MlCost").rfind(row.cost, 0), 0U) << label("MlCost");
    EXPECT_NE(label("MlMessage").find(row.caution), std::string::npos) << label("MlMessage");
    EXPECT_EQ(label("MlMessage").empty(), *row.caution == '\0');
  }
}
// clang-format on

TEST_F(MethodPanels, ListsOfferWhatTheMethodHasAndOpenAtWhatIsSet) {
  const auto three = normals(3);
  LpTauSampler thousand;
  ASSERT_TRUE(thousand.setSamples(1000));
  open(kLpTau, *three, &thousand);
  EXPECT_EQ(panel_->gadget<QComboBox>("OExecutions")->currentText(), "512");
  EXPECT_EQ(outcome(), "3 QuasiRandom LpTau 512 3");
  MorrisSampler morris;
  ASSERT_TRUE(morris.setLevels(6) && morris.setTrajectories(8));
  open(kMorris, *three, &morris);
  EXPECT_EQ(entries("OExecution"), "16|20|24|28|32|36|40|at 32");
  EXPECT_EQ(entries("OLevels"), "4|6|8|at 6");
  const auto five = normals(5);
  open(kSobol, *five);
  EXPECT_EQ(entries("OExecutions"), "192|384|768|1536|3072|6144|12288|24576|49152|at 192");
  EXPECT_FALSE(panel_->gadget<QLineEdit>("TOrder")->isEnabled());
  use({{"TOSwitchSel", ""}, {"TOrder", "9"}});
  EXPECT_EQ(panel_->gadget<QComboBox>("OExecutions")->itemText(0), "112");  // as of the order 1
  const auto sixty = normals(60);
  open(kFast, *sixty);
  EXPECT_EQ(entries("OSettings"), std::string(kAllEffects) + '|' + kGroupEffects + "|at " + kAllEffects);
  use({{"NExecution", "5000"}, {"OSettings", kGroupEffects}});
  EXPECT_EQ(outcome().rfind("0 Fast 1 5000 60 0 2 0 groups:", 0), 0U);
  const auto stein = steinList();
  open(kLatin, *stein);
  EXPECT_EQ(panel_->window()->windowTitle() + panel_->gadget<QLabel>("labNumExe")->text(),
            "Parameters for Latin Hypercube with Stein&N° of executions (max 60)");
  open(kRepLatin, *stein);
  EXPECT_EQ(label("labSamSize") + label("labNumRep"),
            "Sample si&ze (max 60)N° of &replications (max value suggested 7)");
  use({{"NBaseDesign", "61"}});
  EXPECT_EQ(panel_->gadget<QLineEdit>("NSampleSize")->text(), "61");
  EXPECT_EQ(
      outcome().rfind(std::string(kWrongValues) + "Incorrect value for Seed or Number of executions\nThe sample", 0),
      0U);
}

TEST_F(MethodPanels, GroupsAreMadeChangedAndTakenAway) {
  const auto list = normals(5);
  open(kFast, *list);
  auto& window = *panel_->window();
  EXPECT_FALSE(panel_->gadget<QPushButton>("BNewGroup")->isEnabled());
  use({{"NExecution", "400"}, {"OSettings", kGroupEffects}});
  for (const char* const callback : {"modify", "delGroup"}) step(*panel_, callback, {"Error:    No group selected."});
  const auto fill = [&](const char* name, std::vector<int> rows, const char* button) {
    dialogs_.texts = {name};
    whenShown("selGroup", [=](QWidget& members) {
      EXPECT_EQ(members.windowTitle().toStdString(), std::string("Select members of ") + name);
      for (const int row : rows) clickRow(members, "SlAvailable", row, Qt::ControlModifier);
      EXPECT_EQ(members.findChild<QPushButton*>("BRight")->isEnabled(), !rows.empty());
      if (!rows.empty()) click(members, "BRight");
      click(members, button);
    });
    click(window, "BNewGroup");
    EXPECT_EQ(takeShown(), Texts{"New group: ^Name for the new group: [?]"});
  };
  const auto groups = [&] { return cells(*panel_->gadget<QListWidget>("SlGroups")->model()); };
  fill("one", {0, 2}, "BOk");
  fill("none", {0}, "BCancel");
  fill("two", {1}, "BOk");
  EXPECT_EQ(groups(), "one|two|");
  for (const char* const bad : {"", "1a", "one", "a b"}) {
    dialogs_.texts = {bad};
    const Texts shown = shownBy(*panel_, "newGroup");
    EXPECT_EQ(shown.back().substr(0, 28), "Error:   Invalid name field.") << bad;
  }
  clickRow(window, "SlGroups", 0);
  whenShown("selGroup", [](QWidget& members) {
    clickRow(members, "SlSelected", 1);
    click(members, "BLeft");
    click(members, "BOk");
  });
  click(window, "BModify");
  EXPECT_EQ(groups(), "two|one|");
  panel_->call("ok");
  const std::unique_ptr<Sampler> made = panel_->takeSampler();
  ASSERT_TRUE(made);
  EXPECT_EQ(described(*made),
            "0 Fast 1 400 5 0 2 2 groups: two one 2 elements in groups 0\tx4 1\tx1 no group information");
  open(kFast, *list, made.get());
  EXPECT_EQ(groups(), "two|one|");
  panel_->gadget<QListWidget>("SlGroups")->setCurrentRow(0);
  const std::string question = "Delete Group:   This group contains some factors.\n   Erase it anyway? [^Yes/^Cancel]";
  for (const bool answer : {false, true, true}) step(*panel_, "delGroup", {question}, {answer});
  EXPECT_EQ(groups(), "");
  EXPECT_FALSE(panel_->gadget<QPushButton>("BModify")->isEnabled() ||
               panel_->gadget<QPushButton>("BDelete")->isEnabled());
  // Nothing to compare: a group of all factors.
  FastSampler all;
  ASSERT_TRUE(all.setAnalysisMode(FastSampler::kGroups) && all.addGroup("all") && all.setSamples(900));
  for (int i = 0; i < 5; ++i) ASSERT_TRUE(all.addElement("all", list->factor(i).name));
  open(kFast, *list, &all);
  EXPECT_EQ(outcome(), std::string(kWrongValues) +
                           "The test on groups needs at least two groups, or a group and a factor in none.");
}

TEST_F(MethodPanels, ChosenFactorsKeepTheirFlags) {
  const auto list = normals(3, kImanConover);
  open(kRepLatin, *list);
  use({{"NBaseDesign", "20"}, {"NReplications", "6"}, {"SCChoice", ""}, {"SCChoice", ""}});
  EXPECT_EQ(panel_->gadget<QLineEdit>("NReplications")->text(), "6");  // as many as there were
  auto* const table = panel_->gadget<TableView>("MaElements");
  EXPECT_FALSE(table->isEnabled());
  use({{"SCChoice", ""}});
  EXPECT_FALSE(panel_->gadget<QLineEdit>("NReplications")->isEnabled());
  EXPECT_EQ(panel_->gadget<QLineEdit>("NSampleSize")->text(), "20");
  panel_->window()->show();
  const auto press = [&](int row) {
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->visualRect(table->model()->index(row, 0)).center());
  };
  press(1);
  press(2);
  press(2);
  EXPECT_EQ(table->model()->index(1, 1).data().toString() + table->model()->index(2, 1).data().toString(), "yesno");
  panel_->call("ok");
  const std::unique_ptr<Sampler> chosen = panel_->takeSampler();
  const auto& replicated = dynamic_cast<RepLatinSampler&>(*chosen);
  EXPECT_EQ(replicated.choice() * 100 + replicated.elementFlag(0) * 10 + replicated.elementFlag(1), 101);
  open(kRepLatin, *list, chosen.get());
  use({{"SCChoice", ""}});
  EXPECT_TRUE(panel_->gadget<QLineEdit>("NReplications")->isEnabled());
  use({{"NReplications", "3"}});
  EXPECT_EQ(outcome().rfind("6 Replicated Latin Hypercube 5648423 60 3 0 20 3 0\tx1 1\tx2 0\tx3", 0), 0U);
}

TEST_F(MethodPanels, TheSameSettingsKeepTheRecordOfTheSample) {
  const auto list = normals(3);
  SamplerSettings morris;
  morris.method = kMorris;
  morris.trajectories = morris.levels = 4;
  SamplerSettings fast;
  fast.method = kFast;
  fast.runs = 200;
  fast.mode = FastSampler::kExtended;
  for (const SamplerSettings& settings : {morris, fast}) {
    const PrepConfiguration prep = generated(settings, *list);
    const std::string before = described(*prep.sampler);
    open(settings.method, *list, prep.sampler.get());
    EXPECT_EQ(outcome(), before);
    open(settings.method, *list, prep.sampler.get());
    use({{"NSeed", "77"}});
    EXPECT_NE(outcome(), before);
    open(settings.method, *list, prep.sampler.get());
    use({{"NSeed", "77"}});
    panel_->call("cancel");
    EXPECT_FALSE(panel_->accepted() || panel_->takeSampler());
    EXPECT_EQ(described(*prep.sampler), before);
  }
  SobolSampler cheap;
  ASSERT_TRUE(cheap.setBaseSize(32) && cheap.setDesignKind(SobolSampler::kUpToOrder) && cheap.setOrder(2) &&
              cheap.setSamples(160));
  open(kSobol, *list, &cheap);
  EXPECT_TRUE(panel_->gadget<QCheckBox>("ChCheapDesign")->isChecked());
  EXPECT_EQ(outcome(), described(cheap));
}

}  // namespace
}  // namespace tarvex
