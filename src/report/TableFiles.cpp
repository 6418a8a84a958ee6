#include "report/TableFiles.h"

#include <functional>

#include "base/TextWriter.h"
#include "postproc/ResultExport.h"
#include "postproc/SavedTables.h"
#include "postproc/VelsConfiguration.h"
#include "report/ResultDirectory.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

namespace {

void addTable(ResultDirectory& directory, const std::string& variable, std::string_view table,
              const std::function<void(TextWriter&)>& fill) {
  directory.add(variable, table, ".txt", [&fill](const std::string& path, std::string& problem) {
    TextWriter out(path);
    fill(out);
    if (out.commit()) return true;
    problem = out.problem();
    return false;
  });
}

void writeMeasures(const PrepConfiguration& prep, const VelsConfiguration& vels, std::int32_t v,
                   const std::string& variable, ResultDirectory& directory) {
  const SensitivityStats& statistics = *vels.sensitivity;
  for (const SavedTable& table : savedTables(statistics, prep, wholeTable(statistics, v, variable)))
    addTable(directory, variable, table.word, table.write);
}

}  // namespace

bool writeTableFiles(const PrepConfiguration& prep, const VelsConfiguration& vels, const std::string& directory,
                     HistogramScale scale, std::string& message) {
  ResultDirectory tables(directory);
  const std::vector<std::string>& variables = vels.selectedVariables();
  for (std::size_t k = 0; k < variables.size(); ++k) {
    const auto v = static_cast<std::int32_t>(k);
    if (v < vels.uncertainty.variableCount())
      addTable(tables, variables[k], "uncertainty",
               [&](TextWriter& out) { writeUncertaintyTable(out, vels.uncertainty, v, scale); });
    if (vels.sensitivity && vels.sensitivity->computed) writeMeasures(prep, vels, v, variables[k], tables);
  }
  if (tables.finish()) return true;
  message = std::string(kCannotSave) + '\n' + tables.problem();
  return false;
}

}  // namespace tarvex
