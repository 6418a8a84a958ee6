#include <fmt/format.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "app/Analysis.h"
#include "app/FrontEnd.h"
#include "app/RunController.h"
#include "batch/Commands.h"
#include "batch/Reports.h"
#include "batch/SamplerSettings.h"
#include "batch/ShareDirectory.h"
#include "batch/TextTable.h"

namespace tarvex {

namespace {

// The function of T. Ishigami and T. Homma (1990) with a = 7 and b = 0.1; its moments and indices in closed form.
constexpr double kA = 7.0;
constexpr double kB = 0.1;
constexpr double kPi4 = 97.40909103400244;  // pi to the fourth power
constexpr double kExactMean = kA / 2.0;
constexpr double kShare1 = 0.5 * (1.0 + kB * kPi4 / 5.0) * (1.0 + kB * kPi4 / 5.0);
constexpr double kShare2 = kA * kA / 8.0;
constexpr double kShare13 = kB * kB * kPi4 * kPi4 * 8.0 / 225.0;
constexpr double kExactVariance = kShare1 + kShare2 + kShare13;

// A directory for the files of the case, gone with the object.
class ScratchDirectory {
 public:
  ScratchDirectory() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tarvex-demo-XXXXXX").string();
    if (mkdtemp(pattern.data()) != nullptr) path_ = pattern;
  }
  ~ScratchDirectory() {
    std::error_code error;
    if (!path_.empty()) std::filesystem::remove_all(path_, error);
  }
  ScratchDirectory(const ScratchDirectory&) = delete;
  ScratchDirectory& operator=(const ScratchDirectory&) = delete;
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

// From the factor file and the equations of the case to statistics, with the sampling method of `options`.
bool carryCase(const SampleOptions& options, const std::string& modelFile, const AnalysisRequest& request,
               const Console& console, RunController& controller) {
  PrepConfiguration prep;
  std::string message;
  auto equations = std::make_unique<InternalModel>();
  if (!loadFactorFile(options.factorFile, prep.factors, message) || !loadModelFile(modelFile, *equations, message)) {
    console.fail(message);
    return false;
  }
  prep.sampler = makeConfiguredSampler(options, prep.factors, message);
  if (!prep.sampler) {
    console.fail(message);
    return false;
  }
  prep.sampleFile = options.output;
  ModelConfiguration model;
  model.setInternalModel(std::move(equations));
  controller.project.setPrep(std::move(prep));
  controller.project.setModel(std::move(model));
  return controller.runModel(false) && analyse(controller.project, request, console.frontEnd);
}

// The moments beside the exact ones, and how far they may lie apart: one standard error of each estimate.
void printMoments(std::ostream& out, const UaStats& statistics) {
  const double runs = statistics.sampleSize();
  const double variance = statistics.std(0) * statistics.std(0);
  const double errorOfMean = statistics.std(0) / std::sqrt(runs);
  const double errorOfVariance = variance * std::sqrt((statistics.kurtosis(0) + 2.0) / runs);
  TextTable table;
  table.addColumn("", TextTable::Align::Left);
  for (const char* heading : {"computed", "exact", "difference", "sampling error"}) table.addColumn(heading);
  const auto addRow = [&table](const char* name, double computed, double exact, double error) {
    table.addRow({name, fmt::format("{:.4f}", computed), fmt::format("{:.4f}", exact),
                  fmt::format("{:+.4f}", computed - exact), fmt::format("{:.4f}", error)});
  };
  addRow("mean", statistics.mean(0), kExactMean, errorOfMean);
  addRow("variance", variance, kExactVariance, errorOfVariance);
  table.print(out);
}

void printIndices(std::ostream& out, const SensitivityStats& statistics) {
  const double first[] = {kShare1 / kExactVariance, kShare2 / kExactVariance, 0.0};
  const double total[] = {(kShare1 + kShare13) / kExactVariance, first[1], kShare13 / kExactVariance};
  TextTable table;
  table.addColumn("factor", TextTable::Align::Left);
  for (const char* heading : {"first order", "exact", "total order", "exact"}) table.addColumn(heading);
  for (std::size_t i = 0; i < statistics.records.size() && i < std::size(first); ++i) {
    const IndexRecord& record = statistics.records[i];
    table.addRow({record.name, fmt::format("{:.4f}", record.values[0]), fmt::format("{:.4f}", first[i]),
                  fmt::format("{:.4f}", record.values[1]), fmt::format("{:.4f}", total[i])});
  }
  table.print(out);
}

int runIshigami(const std::string& directory, const Console& console) {
  const ScratchDirectory scratch;
  if (scratch.path().empty()) return console.fail("No directory can be made for the files of the demonstration.");
  const std::string modelFile = directory + "/ishigami.imd";
  SampleOptions random;
  random.factorFile = directory + "/ishigami.fac";
  random.output = scratch.path() + "/ishigami.sam";
  random.method = "random";
  random.runs = 20000;
  SampleOptions sobol = random;
  sobol.method = "sobol";
  sobol.runs.reset();
  sobol.baseSize = 4096;

  RunController moments(console.frontEnd);
  AnalysisRequest uncertainty;
  uncertainty.sensitivity = false;
  if (!carryCase(random, modelFile, uncertainty, console, moments)) return kFailed;
  printSection(console.out, reportEquations, *moments.project.model.internalModel());
  console.out << "\nUncertainty of y from " << *random.runs << " random runs\n";
  printMoments(console.out, moments.project.vels.uncertainty);

  RunController indices(console.frontEnd);
  AnalysisRequest sensitivity;
  sensitivity.uncertainty = false;
  if (!carryCase(sobol, modelFile, sensitivity, console, indices)) return kFailed;
  console.out << "\nSensitivity of y from " << indices.project.model.runCount() << " runs of a Sobol design\n";
  printIndices(console.out, *indices.project.vels.sensitivity);
  return kSucceeded;
}

}  // namespace

int runDemo(const DemoOptions& options, const Console& console) {
  if (!options.caseName.empty() && options.caseName != "Ishigami")
    return console.fail("There is no demonstration case '" + options.caseName + "'. The cases are: Ishigami");
  const std::string share = shareDirectory();
  if (share.empty()) return console.fail("The demonstration files are not installed.");
  return runIshigami(share + "/Demo", console);
}

}  // namespace tarvex
