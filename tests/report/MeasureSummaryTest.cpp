// What is said of measures that were made up for it.
#include "report/MeasureSummary.h"

#include <cmath>

#include "postproc/FastStats.h"
#include "postproc/ImportanceStats.h"
#include "postproc/MorrisStats.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using Values = std::vector<std::vector<double>>;  // a factor each: a, b, c

template <class Stats>
MeasureSummary summaryOf(const Values& values, bool correlated = false) {
  Stats statistics;
  statistics.computed = true;
  statistics.variableCount = 1;
  for (const std::vector<double>& of : values) {
    IndexRecord record;
    record.name = std::string(1, static_cast<char>('a' + statistics.records.size()));
    record.values = of;
    statistics.records.push_back(std::move(record));
  }
  return summarise(statistics, 0, {"Y", 100, 10, correlated});
}

TEST(MeasureSummary, claimsNoMoreThanTheMeasuresCarry) {
  const double nan = std::nan("");
  const struct {
    const char* what;
    MeasureSummary summary;
    std::vector<const char*> says;
    std::vector<const char*> neverSays;
  } rows[] = {
      {"interactions",
       summaryOf<FastStats>({{0.4, 0.7}, {0.1, 0.4}, {0.0, 0.005}}),
       {"alone explain: a 40 % and b 10 %", "the other 50 % are interactions, and what the estimates miss",
        "variance of Y would be expected to fall by about 40 %", "c can be fixed"},
       {"Nearly equal", "errors of at least"}},
      {"nearly equal", summaryOf<FastStats>({{0.48, 0.5}, {0.5, 0.5}, {0.0, 0.0}}), {"Nearly equal", "b and a"}, {}},
      {"noise",
       summaryOf<FastStats>({{0.6, 0.5}, {-0.04, 0.2}, {0.6, 0.9}}),
       {"add up to 116 %, more than there is", "errors of at least 0.10"},
       {"interactions, and what", "b -4 %"}},
      {"first order alone", summaryOf<ImportanceStats>({{0.9}, {0.05}}), {"only total orders tell"}, {"can be fixed"}},
      {"correlated",
       summaryOf<ImportanceStats>({{0.5}, {0.1}}, true),
       {"says nothing of interactions"},
       {"expected to fall", "interactions, and what"}},
      {"constant output", summaryOf<FastStats>({{nan, nan}, {nan, nan}}), {"is the same in all runs, or has runs"}, {}},
      {"effects",
       summaryOf<MorrisStats>({{2.0, 3.0}, {1.9, 0.1}, {0.01, 0.0}}),
       {"is no share of the variance; it rests on 10 effects a factor", "a and b", "effects of a depend", "c is below"},
       {"%"}},
      {"no effects", summaryOf<MorrisStats>({{0.0, 0.0}}), {"No factor changes Y"}, {"most"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const std::string text = row.summary.leads + ' ' + row.summary.trust + ' ' + row.summary.next;
    for (const char* part : row.says) EXPECT_NE(text.find(part), std::string::npos) << part << " in: " << text;
    for (const char* part : row.neverSays) EXPECT_EQ(text.find(part), std::string::npos) << part << " in: " << text;
  }
}

}  // namespace
}  // namespace tarvex
