#include "batch/TableFiles.h"

#include <functional>

#include "app/ProjectConfiguration.h"
#include "base/TextWriter.h"
#include "batch/ResultDirectory.h"
#include "postproc/FastStats.h"
#include "postproc/ImportanceStats.h"
#include "postproc/MorrisStats.h"
#include "postproc/RegressionStats.h"
#include "postproc/SavedTables.h"
#include "postproc/SobolStats.h"
#include "sampling/FastSampler.h"

namespace tarvex {

namespace {

void addTable(ResultDirectory& directory, const std::string& variable, std::string_view table,
              const std::function<void(TextWriter&)>& fill) {
  directory.add(variable, table, ".txt", [&fill](const std::string& path) {
    TextWriter out(path);
    fill(out);
    return out.commit();
  });
}

void writeMeasures(const ProjectConfiguration& project, std::int32_t v, const std::string& variable,
                   ResultDirectory& directory) {
  const SensitivityStats& statistics = *project.vels.sensitivity;
  const TableSelection selection = wholeTable(statistics, v, variable);
  if (const auto* regression = dynamic_cast<const RegressionStats*>(&statistics)) {
    for (std::int32_t measure = 0; measure < RegressionStats::kMeasures; ++measure)
      addTable(directory, variable, RegressionStats::measureName(measure),
               [&](TextWriter& out) { writeRegressionTable(out, *regression, selection, measure); });
    return;
  }
  addTable(directory, variable, "sensitivity", [&](TextWriter& out) {
    const auto* design = dynamic_cast<const FastSampler*>(project.prep.sampler.get());
    const bool withTotal = design != nullptr && design->analysisMode() != FastSampler::kClassic;
    if (const auto* fast = dynamic_cast<const FastStats*>(&statistics))
      writeFastTable(out, *fast, selection, withTotal);
    else if (const auto* morris = dynamic_cast<const MorrisStats*>(&statistics))
      writeMorrisTable(out, *morris, selection);
    else if (const auto* importance = dynamic_cast<const ImportanceStats*>(&statistics))
      writeImportanceTable(out, *importance, selection);
    else
      writeSobolTable(out, static_cast<const SobolStats&>(statistics), selection);
  });
}

}  // namespace

bool writeTableFiles(const ProjectConfiguration& project, const std::string& directory, HistogramScale scale,
                     std::string& message) {
  ResultDirectory tables(directory);
  const std::vector<std::string>& variables = project.vels.selectedVariables();
  for (std::size_t k = 0; k < variables.size(); ++k) {
    const auto v = static_cast<std::int32_t>(k);
    if (v < project.vels.uncertainty.variableCount())
      addTable(tables, variables[k], "uncertainty",
               [&](TextWriter& out) { writeUncertaintyTable(out, project.vels.uncertainty, v, scale); });
    if (project.vels.sensitivity && project.vels.sensitivity->computed) writeMeasures(project, v, variables[k], tables);
  }
  if (tables.finish()) return true;
  message = "I cannot save the file\n" + tables.failedFile();
  return false;
}

}  // namespace tarvex
