#include "batch/FileFindings.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "app/ProjectConfiguration.h"
#include "batch/StudyFile.h"
#include "correlation/importStein.h"
#include "factors/FactorFiles.h"
#include "factors/FactorList.h"
#include "factors/FactorProblems.h"
#include "model/ModelOutputReader.h"
#include "postproc/PostProcessorFile.h"
#include "sampling/RowsFile.h"
#include "sampling/SampleFiles.h"
#include "sampling/SamplerFactory.h"

namespace tarvex {

namespace {

void addLines(std::vector<std::string>& findings, const std::string& text) {
  if (!text.empty()) findings.push_back(text);
}

// What a generation from the list would be told, and refused for.
void examineFactors(const FactorList& factors, FileFindings& found) {
  constexpr std::int32_t kEnough = 2;  // runs of a design that is never made
  if (factors.factorCount() == 0) return addLines(found.doubtful, "The list has no factors.");
  const std::vector<FactorProblem> problems = factorProblems(factors);
  for (const FactorProblem& problem : problems) addLines(problem.isError ? found.wrong : found.doubtful, problem.text);
  const std::unique_ptr<Sampler> sampler = makeSampler(factors.correlationMode == kSteinSample ? kLatin : kRandom);
  if (sampler->setSamples(kEnough)) addLines(found.doubtful, sampler->warningBefore(factors));
}

// Cells that are not numbers; told of each column with the first run that has one.
void examineSample(const PrepConfiguration& prep, FileFindings& found) {
  const std::int32_t rows = prep.samples.rows();
  if (rows == 0) addLines(found.doubtful, "The file holds no sample.");
  if (prep.sampler && rows > 0 && prep.sampler->numSamples != rows)
    addLines(found.doubtful,
             fmt::format("The sampling method has {} runs, the sample {}.", prep.sampler->numSamples, rows));
  std::vector<double> column;
  for (std::int32_t i = 0; i < prep.samples.columns() && i < prep.factors.factorCount(); ++i) {
    if (!prep.samples.getColumn(i, column)) return addLines(found.wrong, prep.samples.errorText());
    const auto isBad = [](double value) { return !std::isfinite(value); };
    const auto bad = std::find_if(column.begin(), column.end(), isBad);
    if (bad != column.end())
      addLines(found.doubtful, fmt::format("The factor {} has no finite value in {} of {} runs, first in run {}.",
                                           prep.factors.factor(i).name, std::count_if(bad, column.end(), isBad),
                                           column.size(), bad - column.begin()));
  }
}

void examineResults(const ModelResults& results, FileFindings& found) {
  std::int32_t missing = 0;
  std::int32_t first = 0;
  std::vector<double> values;
  for (std::int32_t run = 0; run < results.runCount(); ++run) {
    if (!results.readRun(run, values)) return addLines(found.wrong, fmt::format("Run {} can't be read.", run));
    if (std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); })) continue;
    if (missing++ == 0) first = run;
  }
  if (results.runCount() == 0) addLines(found.doubtful, "The file holds no results.");
  if (missing > 0)
    addLines(found.doubtful, fmt::format("{} of {} runs have an output that is no finite number, first run {}.",
                                         missing, results.runCount(), first));
}

void examineStudy(const ProjectConfiguration& project, FileFindings& found) {
  if (project.hasPrep) examineSample(project.prep, found);
  if (project.hasPrep && project.prep.external == 0) examineFactors(project.prep.factors, found);
  if (project.hasModel) examineResults(project.model.results, found);
  const std::int32_t runs = project.model.results.runCount();
  if (project.hasPrep && project.hasModel && runs > 0 && runs != project.prep.samples.rows())
    addLines(found.wrong,
             fmt::format("The generated sample cardinality is different from model outputs size\n{} runs of the "
                         "sample, {} of the results",
                         project.prep.samples.rows(), runs));
}

// A check reads and examines: what the reader has to say is wrong when it failed, and doubtful when it succeeded.

bool checkStudy(const std::string& path, FileKind kind, FileFindings& found, std::string& message) {
  ProjectConfiguration project;
  if (!readStudyFile(path, kind, {}, project, message)) return false;
  if (kind == FileKind::Factors)
    examineFactors(project.prep.factors, found);
  else
    examineStudy(project, found);
  return true;
}

bool checkModel(const std::string& path, FileFindings& found, std::string& message) {
  InternalModel model;
  if (!loadModelFile(path, model, message)) return false;
  if (model.numOutputs() == 0) addLines(found.doubtful, "   Model produces no result");
  return true;
}

bool checkOutput(const std::string& path, FileFindings& found, std::string& message) {
  ModelResults results;
  ModelOutputReader reader(results,
                           [&found](const std::string&, const std::string& text) { addLines(found.doubtful, text); });
  if (!reader.read(path)) {
    message = "Error reading model output file\n" + reader.errorText();
    return false;
  }
  examineResults(results, found);
  return true;
}

bool checkExternal(const std::string& path, FileFindings& found, std::string& message) {
  PrepConfiguration prep;
  if (!loadExternalSample(path, prep, message)) return false;
  examineSample(prep, found);
  return true;
}

bool checkStein(const std::string& path, FileFindings&, std::string& message) {
  FactorList list;
  return importStein(path, kSteinReplace, list, message);
}

struct Kind {
  const char* word;
  FileKind kind;  // Unknown: no name or beginning tells it
  bool (*check)(const std::string& path, FileFindings& found, std::string& message);
};

template <FileKind kind>
bool checkStudyOf(const std::string& path, FileFindings& found, std::string& message) {
  return checkStudy(path, kind, found, message);
}

constexpr const char* kRows = "rows";

// clang-format off
constexpr std::array<Kind, 8> kKinds = {{
    {"factors",  FileKind::Factors,       checkStudyOf<FileKind::Factors>},
    {"model",    FileKind::Model,         checkModel},
    {"sample",   FileKind::Sample,        checkStudyOf<FileKind::Sample>},
    {"results",  FileKind::PostProcessor, checkStudyOf<FileKind::PostProcessor>},
    {"project",  FileKind::Project,       checkStudyOf<FileKind::Project>},
    {"external", FileKind::Unknown,       checkExternal},
    {"output",   FileKind::Unknown,       checkOutput},
    {"stein",    FileKind::Unknown,       checkStein},
}};
// clang-format on

bool checkRows(const std::string& path, const std::string& factorFile, std::string& message) {
  FactorList factors;
  std::vector<std::vector<double>> rows;
  return loadFactorFile(factorFile, factors, message) && readRowsFile(path, factors, rows, message);
}

}  // namespace

const std::vector<std::string>& fileKindWords() {
  static const std::vector<std::string> words = [] {
    std::vector<std::string> all = {kRows};
    for (const Kind& kind : kKinds) all.emplace_back(kind.word);
    return all;
  }();
  return words;
}

std::string kindWordOf(const std::string& path) {
  const FileKind kind = fileKindOf(path);
  for (const Kind& k : kKinds)
    if (kind != FileKind::Unknown && k.kind == kind) return k.word;
  return {};
}

FileFindings findInFile(const std::string& path, const std::string& kind, const std::string& factorFile) {
  FileFindings found;
  std::string message;
  const auto known = std::find_if(kKinds.begin(), kKinds.end(), [&kind](const Kind& k) { return kind == k.word; });
  const bool sound = known == kKinds.end() ? checkRows(path, factorFile, message) : known->check(path, found, message);
  addLines(sound ? found.doubtful : found.wrong, message);
  return found;
}

}  // namespace tarvex
