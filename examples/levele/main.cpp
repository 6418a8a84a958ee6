// levele SAMPLE.sam [OUTPUT]: doses of the Level E model in every run of a sample.

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>

#include "levele/LevelEModel.h"
#include "levele/SampleTable.h"

namespace {

using levele::kFactors;

using Columns = std::array<int, kFactors>;  // of the table, for each factor of the model

// By name when the table has all of them, else by position. None when neither can be.
std::optional<Columns> findColumns(const levele::SampleTable& table) {
  Columns columns{};
  bool named = true;
  for (std::size_t i = 0; i < kFactors; ++i) {
    columns[i] = table.columnOf(levele::kFactorNames[i]);
    named = named && columns[i] >= 0;
  }
  if (named) return columns;
  if (table.columns() != static_cast<int>(kFactors)) return std::nullopt;
  for (std::size_t i = 0; i < kFactors; ++i) columns[i] = static_cast<int>(i);
  return columns;
}

levele::Inputs inputsOf(const levele::SampleTable& table, const Columns& columns, int run) {
  levele::Inputs inputs{};
  for (std::size_t i = 0; i < kFactors; ++i) inputs[i] = table.value(run, columns[i]);
  return inputs;
}

void writeRun(std::FILE* file, int run, const levele::LevelEModel& model) {
  const std::vector<double> times = levele::LevelEModel::times();
  std::fprintf(file, "RUN %d\n%zu\n", run, times.size());
  for (const double time : times) {
    const levele::Dose dose = model.dose(time);
    std::fprintf(file, "%g %g %g %g\n", time, dose.iodine, dose.chain, dose.total());
  }
}

int fail(const std::string& text) {
  std::fprintf(stderr, "%s\n", text.c_str());
  return 1;
}

int runModel(const std::string& samplePath, const std::string& outputPath) {
  levele::SampleTable table;
  if (!table.read(samplePath)) return fail(table.errorText());
  const std::optional<Columns> columns = findColumns(table);
  if (!columns) return fail("The sample needs the factors T, kI, kC, v1, v2, l1, l2, RI1, RI2, RC1, RC2 and W");
  for (int run = 0; run < table.runs(); ++run) {
    const std::string error = levele::LevelEModel::inputError(inputsOf(table, *columns, run));
    if (!error.empty()) return fail("Run " + std::to_string(run) + ": " + error);
  }

  std::FILE* file = std::fopen(outputPath.c_str(), "w");
  if (!file) return fail("Can't write " + outputPath + ": " + std::strerror(errno));
  std::fprintf(file, "3\ndoseI\ndoseChain\ndose\ntime = yes\n%d\n", table.runs());
  for (int run = 0; run < table.runs(); ++run) writeRun(file, run, levele::LevelEModel(inputsOf(table, *columns, run)));
  const bool written = !std::ferror(file);
  if (std::fclose(file) != 0 || !written) return fail("Can't write " + outputPath + ": " + std::strerror(errno));
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 && argc != 3) return fail("Use: levele SAMPLE.sam [OUTPUT]");
  return runModel(argv[1], argc == 3 ? argv[2] : "levele.out");
}
