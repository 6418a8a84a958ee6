#include <algorithm>
#include <optional>

#include "app/ProjectConfiguration.h"
#include "batch/CommandLine.h"
#include "batch/PlotFigures.h"
#include "batch/PlotWords.h"
#include "plots/columnCorrelations.h"
#include "plots/histogramPlots.h"
#include "plots/runPlots.h"

namespace tarvex {

namespace {

// The column of that name; a factor goes before a variable.
std::optional<std::size_t> columnOf(const RunTable& table, const FactorList& factors, const std::string& name) {
  for (std::size_t c = 0; c < table.columns.size(); ++c) {
    const RunColumn& column = table.columns[c];
    if (column.label() == name) return c;
    if (column.name == name && (column.isFactor || factors.indexOf(name) < 0)) return c;
  }
  return std::nullopt;
}

// Turns a bound's name into its column, which joins the table if it isn't there yet.
bool addRange(const ProjectConfiguration& project, const NamedRange& named, bool upperIncluded, RunTable& table,
              std::vector<RunRange>& ranges, std::string& message) {
  std::optional<std::size_t> column = columnOf(table, project.prep.factors, named.name);
  if (!column) {
    RunTable extra;
    std::string text;  // of a success, too: in how many runs an expression failed
    const bool done =
        readRunTable(project.prep, project.model, project.vels.outputNames(project.model), {named.name}, extra, text);
    if (!text.empty()) message = text;
    if (!done) return false;
    table.columns.push_back(std::move(extra.columns.front()));
    table.runs = extra.runs;
    column = table.columns.size() - 1;
  }
  ranges.push_back({*column, named.lower, named.upper, upperIncluded});
  return true;
}

bool parseRanges(const std::vector<std::string>& texts, std::vector<NamedRange>& ranges, std::string& message) {
  for (const std::string& text : texts)
    if (!parseRange(text, ranges.emplace_back(), message)) return false;
  return true;
}

RunTable keptOf(const RunTable& table, std::size_t columns, const std::vector<std::int32_t>& runs) {
  RunTable kept;
  kept.runs = static_cast<std::int32_t>(runs.size());
  for (std::size_t c = 0; c < columns; ++c) {
    const RunColumn& column = table.columns[c];
    RunColumn& copy =
        kept.columns.emplace_back(RunColumn{column.name, column.isFactor, {}, column.factor, column.unit});
    copy.values.reserve(runs.size());
    for (const std::int32_t run : runs) copy.values.push_back(column.values[static_cast<std::size_t>(run)]);
  }
  return kept;
}

HistogramForm formOf(const std::string& word) {
  if (word == "outline") return HistogramForm::Outline;
  if (word == "frequency") return HistogramForm::Frequency;
  if (word == "cumulative") return HistogramForm::Cumulative;
  if (word == "complement") return HistogramForm::Complement;
  if (word == "bars") return HistogramForm::Bars;
  return HistogramForm::Area;
}

bool makeScatter(const PlotOptions& options, const RunSelection& selection, Figure& figure, std::string& message) {
  if (selection.shown != 2) {
    message = "A scattergram shows two factors or variables: --variables a,b.";
    return false;
  }
  std::optional<Region> region;
  if (!selection.region.empty()) {
    const RunRange* x = &selection.region[0];
    const RunRange* y = &selection.region[1];
    if (x->column == 1) std::swap(x, y);
    if (x->column != 0 || y->column != 1) {
      message = "A region bounds the two variables of the scattergram.";
      return false;
    }
    region = Region{x->lower, x->upper, y->lower, y->upper, namedColour("Indian Red")};
  }
  ScatterLook look;
  look.region = region;
  look.jitter = options.jitter;
  look.logarithmicX = options.logX;
  look.logarithmicY = options.logY;
  if (options.shade == "yes" || options.shade == "no") look.shaded = options.shade == "yes";
  if (selection.filters.empty()) {
    figure = scatterPlot(selection.table.columns[0], selection.table.columns[1], look);
    return true;
  }
  const RunTable kept = keptOf(selection.table, 2, runsWithin(selection.table, selection.filters));
  figure = scatterPlot(kept.columns[0], kept.columns[1], look);
  return true;
}

Figure makeHistogram(const PlotOptions& options, const RunSelection& selection) {
  RunTable kept;
  const RunTable* table = &selection.table;
  if (!selection.filters.empty() || !selection.region.empty()) {
    kept = keptOf(selection.table, selection.shown, selection.runs());
    table = &kept;
  }
  std::vector<const RunColumn*> columns;
  for (std::size_t c = 0; c < selection.shown; ++c) columns.push_back(&table->columns[c]);
  return histogramPlot(columns, formOf(options.form), options.logScale ? kLogScale : kLinearScale,
                       options.bins == "all" ? HistogramBins::All : HistogramBins::Suited);
}

bool makeMatrix(const RunSelection& selection, Figure& figure, std::string& message) {
  constexpr std::size_t kMost = 8;  // for which a page has room
  if (selection.shown < 2 || selection.shown > kMost) {
    message = "A matrix of scattergrams shows two to eight factors or variables: --variables a,b,c.";
    return false;
  }
  const RunTable kept = keptOf(selection.table, selection.shown, selection.runs());
  std::vector<const RunColumn*> columns;
  for (const RunColumn& column : kept.columns) columns.push_back(&column);
  figure = scatterMatrix(columns);
  return true;
}

bool makeCorrelations(const PlotOptions& options, const RunSelection& selection, Figure& figure, std::string& message) {
  RunTable kept = keptOf(selection.table, selection.shown, selection.runs());
  CorrelationMatrix matrix;
  if (!correlateColumns(kept, {}, options.ranks ? CorrelationKind::Ranks : CorrelationKind::Values, matrix, message))
    return false;
  figure = correlationMap(matrix);
  return true;
}

// Without names a histogram shows the outputs where there are any, and all factors of a sample.
void dropFactors(RunTable& table) {
  if (std::any_of(table.columns.begin(), table.columns.end(), [](const RunColumn& c) { return !c.isFactor; }))
    std::erase_if(table.columns, [](const RunColumn& c) { return c.isFactor; });
}

}  // namespace

ColourSet coloursOf(const PlotOptions& options) {
  return options.colours == "system" ? ColourSet::System : ColourSet::Distinct;
}

std::vector<std::int32_t> RunSelection::runs() const {
  std::vector<RunRange> all = filters;
  all.insert(all.end(), region.begin(), region.end());
  return runsWithin(table, all);
}

bool readRunSelection(const PlotOptions& options, const ProjectConfiguration& project, RunSelection& selection,
                      std::string& message) {
  std::vector<NamedRange> filters;
  std::vector<NamedRange> region;
  if (!parseRanges(options.filters, filters, message) || !parseRanges(splitList(options.region), region, message))
    return false;
  if (!region.empty() && region.size() != 2) {
    message = "A region has two ranges: --region x=LOWER:UPPER,y=LOWER:UPPER.";
    return false;
  }
  std::vector<std::string> names = splitLists(options.variables);
  if (names.empty())
    for (const NamedRange& range : region) names.push_back(range.name);
  if (names.empty() && options.kind.empty())
    for (const NamedRange& range : filters) names.push_back(range.name);

  RunSelection read;
  if (!readRunTable(project.prep, project.model, project.vels.outputNames(project.model), names, read.table, message))
    return false;
  if (names.empty() && options.kind == "histogram") dropFactors(read.table);
  read.shown = read.table.columns.size();
  for (const NamedRange& range : filters)
    if (!addRange(project, range, true, read.table, read.filters, message)) return false;
  for (const NamedRange& range : region)
    if (!addRange(project, range, false, read.table, read.region, message)) return false;
  selection = std::move(read);
  return true;
}

bool makeRunFigure(const PlotOptions& options, const RunSelection& selection, Figure& figure, std::string& message) {
  if (options.kind == "scatter") return makeScatter(options, selection, figure, message);
  if (options.kind == "matrix") return makeMatrix(selection, figure, message);
  if (options.kind == "correlations") return makeCorrelations(options, selection, figure, message);
  if (options.kind == "histogram") {
    figure = makeHistogram(options, selection);
    return true;
  }
  std::vector<RunRange> ranges = selection.filters;
  ranges.insert(ranges.end(), selection.region.begin(), selection.region.end());
  figure = cobwebPlot(selection.table, ranges, options.showDropped, coloursOf(options));
  return true;
}

}  // namespace tarvex
