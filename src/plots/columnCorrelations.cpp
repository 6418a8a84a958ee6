#include "plots/columnCorrelations.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "plots/ColourSet.h"
#include "plots/RunTable.h"
#include "plots/Ticks.h"
#include "postproc/ColumnCorrelations.h"
#include "postproc/OutputTable.h"
#include "postproc/RankColumns.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

namespace {

constexpr double kRanksShare = 0.6;  // of the time, roughly

// Reads rows of a table, of its values or of their ranks.
struct Rows {
  const RunTable& table;
  const std::vector<std::int32_t>& runs;

  void read(std::int32_t row, double* values) const {
    const auto run = static_cast<std::size_t>(runs[static_cast<std::size_t>(row)]);
    for (const RunColumn& column : table.columns) *values++ = column.values[run];
  }
};

bool rankRows(const Rows& rows, RankColumns& ranks, std::string& message, const Progress& progress) {
  OutputTable stored;
  std::vector<double> row(rows.table.columns.size());
  bool done = stored.allocate(static_cast<std::int32_t>(row.size()));
  for (std::int32_t i = 0; done && i < std::ssize(rows.runs); ++i) {
    rows.read(i, row.data());
    done = stored.addRow(row.data()) > 0;
  }
  if (!done) message = stored.errorText();
  if (!done || ranks.add(stored, progress)) return done;
  message = "The ranks can't be computed: there isn't enough memory, or it was stopped.";
  return false;
}

std::vector<std::string> namesOf(const RunTable& table) {
  std::vector<std::string> names;
  for (const RunColumn& column : table.columns) {
    const auto same = [&](const RunColumn& other) { return other.name == column.name; };
    names.push_back(std::ranges::count_if(table.columns, same) > 1 ? column.label() : column.name);
  }
  return names;
}

}  // namespace

bool correlateColumns(const RunTable& table, const std::vector<std::int32_t>& runs, CorrelationKind kind,
                      CorrelationMatrix& matrix, std::string& message, const Progress& progress) {
  std::vector<std::int32_t> all = runs;
  if (all.empty()) {
    all.resize(static_cast<std::size_t>(table.runs));
    std::iota(all.begin(), all.end(), 0);
  }
  const Rows rows{table, all};
  RankColumns ranks;
  const bool ofRanks = kind == CorrelationKind::Ranks;
  if (ofRanks && !rankRows(rows, ranks, message, progress.part(0.0, kRanksShare))) return false;
  const std::size_t size = table.columns.size();
  const auto read = [&](std::int32_t row, std::int32_t count, double* values) {
    if (ofRanks) ranks.rows(row, count, values);
    for (std::int32_t i = 0; i < count && !ofRanks; ++i)
      rows.read(row + i, values + static_cast<std::size_t>(i) * size);
    return true;
  };
  ColumnCorrelations correlations;
  if (!correlations.compute(static_cast<std::int32_t>(all.size()), size, read,
                            progress.part(ofRanks ? kRanksShare : 0.0, 1.0))) {
    message = kStoppedText;
    return false;
  }
  matrix = {namesOf(table), {}, static_cast<std::int32_t>(all.size()), ofRanks ? "Rank correlations" : "Correlations"};
  for (std::size_t i = 0; i < size; ++i)
    for (std::size_t j = 0; j < size; ++j) matrix.values.push_back(i == j ? 1.0 : correlations.correlation(i, j));
  return true;
}

bool sampleCorrelations(const PrepConfiguration& prep, CorrelationMatrix& matrix, std::string& message,
                        const Progress& progress) {
  SampleStatistics computed;
  const bool stored = prep.sampleStatistics && prep.sampleStatistics->size() == prep.factors.factorCount();
  if (!stored && !computed.compute(prep.samples, progress)) {
    message = progress.stopped() ? kStoppedText : prep.samples.errorText();
    return false;
  }
  const SampleStatistics& statistics = stored ? *prep.sampleStatistics : computed;
  CorrelationMatrix read;
  read.runs = prep.samples.rows();
  read.kind = "Correlations of the sample";
  for (std::int32_t i = 0; i < prep.factors.factorCount(); ++i) {
    read.names.push_back(prep.factors.factor(i).name);
    for (std::int32_t j = 0; j < prep.factors.factorCount(); ++j) read.values.push_back(statistics.correlation(i, j));
  }
  matrix = std::move(read);
  return true;
}

Figure correlationMap(const CorrelationMatrix& matrix) {
  constexpr double kLeast = 0.005;
  constexpr double kCell = 46.0;
  constexpr double kLeastSize = 480.0;
  constexpr double kMostSize = 2400.0;
  const std::size_t size = matrix.names.size();
  Figure figure;
  figure.title = matrix.kind;
  figure.subtitle = runsText(matrix.runs) + "; white at 0, bluer down to -1, redder up to 1";
  figure.emptyText = "There is nothing to correlate.";
  if (size == 0) return figure;
  figure.width = figure.height = std::clamp(kCell * static_cast<double>(size), kLeastSize, kMostSize);
  XyChart chart;
  chart.x.upper = chart.y.upper = static_cast<double>(size);
  Cells cells{size, matrix.values, {}, {}};
  for (std::size_t i = 0; i < size; ++i) {
    // Below the squares stand the numbers of the names beside them, for which there is room.
    chart.x.names.push_back(std::to_string(i + 1));
    chart.y.names.push_back(std::to_string(size - i) + "  " + matrix.names[size - 1 - i]);
  }
  for (const double value : matrix.values) {
    // Where another form would begin two decimals are 0.
    const double rounded = std::abs(value) < kLeast ? 0.0 : value;
    cells.texts.push_back(!std::isfinite(value) ? "-"
                          : rounded == 0.0      ? "0.00"
                                                : formNumber(rounded, NumberForm::TwoDecimals));
    cells.colours.push_back(correlationColour(value));
  }
  chart.layers.emplace_back(std::move(cells));
  figure.charts.emplace_back(std::move(chart));
  return figure;
}

}  // namespace tarvex
