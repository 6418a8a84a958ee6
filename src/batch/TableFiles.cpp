#include "batch/TableFiles.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <functional>
#include <set>

#include "app/ProjectConfiguration.h"
#include "base/TextWriter.h"
#include "postproc/FastStats.h"
#include "postproc/ImportanceStats.h"
#include "postproc/MorrisStats.h"
#include "postproc/RegressionStats.h"
#include "postproc/SavedTables.h"
#include "postproc/SobolStats.h"
#include "sampling/FastSampler.h"

namespace tarvex {

namespace {

// Writes the files of one directory; after a failure it writes no more.
class TableDirectory {
 public:
  explicit TableDirectory(std::string path) : path_(std::move(path)) {
    std::error_code error;
    std::filesystem::create_directories(path_, error);
  }

  void write(const std::string& variable, std::string_view table, const std::function<void(TextWriter&)>& fill) {
    if (!ok()) return;
    const std::string file = path_ + "/" + freeName(variable + "-" + std::string(table));
    TextWriter out(file);
    fill(out);
    if (!out.commit()) failedFile_ = file;
  }

  bool ok() const { return failedFile_.empty(); }
  const std::string& failedFile() const { return failedFile_; }

 private:
  // The name with '_' for what file names had better not hold, and a number when it was there before.
  std::string freeName(std::string name) {
    std::replace_if(
        name.begin(), name.end(),
        [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0 && c != '-' && c != '.' && c != '_'; },
        '_');
    std::string free = name;
    for (int number = 2; !taken_.insert(free).second; ++number) free = name + "-" + std::to_string(number);
    return free + ".txt";
  }

  std::string path_;
  std::set<std::string> taken_;
  std::string failedFile_;
};

void writeMeasures(const ProjectConfiguration& project, std::int32_t v, const std::string& variable,
                   TableDirectory& directory) {
  const SensitivityStats& statistics = *project.vels.sensitivity;
  const TableSelection selection = wholeTable(statistics, v, variable);
  if (const auto* regression = dynamic_cast<const RegressionStats*>(&statistics)) {
    for (std::int32_t measure = 0; measure < RegressionStats::kMeasures; ++measure)
      directory.write(variable, RegressionStats::measureName(measure),
                      [&](TextWriter& out) { writeRegressionTable(out, *regression, selection, measure); });
    return;
  }
  directory.write(variable, "sensitivity", [&](TextWriter& out) {
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
  TableDirectory tables(directory);
  const std::vector<std::string>& variables = project.vels.selectedVariables();
  for (std::size_t k = 0; k < variables.size(); ++k) {
    const auto v = static_cast<std::int32_t>(k);
    if (v < project.vels.uncertainty.variableCount())
      tables.write(variables[k], "uncertainty",
                   [&](TextWriter& out) { writeUncertaintyTable(out, project.vels.uncertainty, v, scale); });
    if (project.vels.sensitivity && project.vels.sensitivity->computed) writeMeasures(project, v, variables[k], tables);
  }
  if (!tables.ok()) message = "I cannot save the file\n" + tables.failedFile();
  return tables.ok();
}

}  // namespace tarvex
