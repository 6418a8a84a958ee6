#include "batch/TableFiles.h"

#include <functional>

#include "app/ProjectConfiguration.h"
#include "base/TextWriter.h"
#include "batch/ResultDirectory.h"
#include "postproc/SavedTables.h"

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
  for (const SavedTable& table : savedTables(statistics, project.prep, wholeTable(statistics, v, variable)))
    addTable(directory, variable, table.word, table.write);
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
