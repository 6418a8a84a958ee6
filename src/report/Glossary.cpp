#include <string_view>
#include <utility>

#include "postproc/Quantiles.h"
#include "postproc/VelsConfiguration.h"
#include "report/Document.h"
#include "report/StudySections.h"

namespace tarvex {

namespace {

using Words = std::pair<std::string_view, std::string_view>;

constexpr Words kGeneral[] = {
    {"factor", "an uncertain input of the model, or a constant one; a relation is computed from others"},
    {"variable", "an output of the model, at a time where it has times, or an expression of outputs"},
    {"mean, standard deviation", "the average of the runs, and their usual distance from it"},
    {"skewness, kurtosis", "how lopsided a distribution is, and how heavy its tails are beside those of a normal one"},
    {"quantile of p percent", "the value that p percent of the runs lie below"},
    {"interval", "what holds the true value with the confidence that is told, were the study made again and again"},
    {"Tchebycheff, t-test", "half-widths of an interval of the mean: for any distribution, and by Student's t"},
};
constexpr Words kRegressionWords[] = {
    {"PEAR, SPEA", "correlation of factor and variable, on values and on ranks (Pearson, Spearman)"},
    {"PCC, PRCC", "the same with the linear effects of all other factors taken off"},
    {"SRC, SRRC", "standardised coefficients of a linear regression on all factors, on values and on ranks"},
    {"Smirnov",
     "the largest distance between the distributions of a factor in the top tenth of the runs and in the others"},
    {"R squared", "the share of the variance that a regression accounts for; adjusted: for the number of factors"},
    {"rank", "the place of a value in order of size, in place of the value"},
};
constexpr Words kShareWords[] = {
    {"first order, index of one factor", "the share of the variance that a factor explains alone"},
    {"total order", "that share with all interactions in which the factor has a part"},
    {"interaction", "what factors do together beyond what each does alone"},
    {"closed index", "the share that some factors explain alone and among themselves"},
};
constexpr Words kMorrisWords[] = {
    {"elementary effect", "the change of the variable with one step of one factor, divided by the step"},
    {"Morris Index (mu*)", "the mean size of a factor's elementary effects"},
    {"Sigma", "their standard deviation: large where an effect is not linear or depends on other factors"},
};
constexpr Words kImportanceWords[] = {
    {"importance", "the share of the variance that a factor explains alone, from runs that share its values"},
};

template <std::size_t N>
void addWords(Table& table, const Words (&words)[N]) {
  for (const auto& [word, meaning] : words) table.addRow({std::string(word), std::string(meaning)});
}

}  // namespace

void addGlossary(Document& out, const StudyParts& study) {
  Table table;
  table.addColumn("word", Table::Align::Left);
  table.addColumn("meaning", Table::Align::Left);
  addWords(table, kGeneral);
  if (study.vels.sensitivity) switch (study.vels.sensitivity->typeId()) {
      case SensitivityStats::kRegression:
        addWords(table, kRegressionWords);
        break;
      case SensitivityStats::kMorris:
        addWords(table, kMorrisWords);
        break;
      case SensitivityStats::kImportance:
        addWords(table, kImportanceWords);
        break;
      default:
        addWords(table, kShareWords);
    }
  out.add(Heading{"Words of this report"});
  out.add(std::move(table));
}

}  // namespace tarvex
