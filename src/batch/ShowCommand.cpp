#include <filesystem>

#include "app/ProjectConfiguration.h"
#include "base/TextReader.h"
#include "batch/Commands.h"
#include "batch/Reports.h"
#include "postproc/PostProcessorFile.h"
#include "sampling/SampleFiles.h"

namespace tarvex {

namespace {

enum class FileKind { Unknown, Factors, Sample, Model, PostProcessor, Project };

// By the name's ending, or else by how the file begins.
FileKind kindOf(const std::string& path) {
  const std::string extension = std::filesystem::path(path).extension().string();
  if (extension == ".fac") return FileKind::Factors;
  if (extension == ".sam") return FileKind::Sample;
  if (extension == ".imd") return FileKind::Model;
  if (extension == ".spc") return FileKind::PostProcessor;
  if (extension == ".psc") return FileKind::Project;
  TextReader in = TextReader::fromFile(path);
  constexpr std::size_t kFirstLineLimit = 100;
  const std::string_view first = in.peekLine(kFirstLineLimit);
  if (first == "Default Truncations:") return FileKind::Factors;
  if (first == "Prep Configuration" || first == "No Prep Configuration") return FileKind::Project;
  return FileKind::Unknown;
}

void addSample(Document& out, const PrepConfiguration& prep) {
  reportDesign(out, prep);
  reportFactors(out, prep.factors);
  if (prep.samples.rows() > 0) reportSampleStatistics(out, prep);
}

int showFactors(const std::string& path, const Console& console) {
  FactorList factors;
  std::string message;
  if (!loadFactorFile(path, factors, message)) return console.fail(message + "\n" + path);
  printSection(console.out, reportFactors, factors);
  return kSucceeded;
}

int showSample(const std::string& path, const Console& console) {
  PrepConfiguration prep;
  std::string message;
  if (!loadSampleFile(path, prep, message)) return console.fail(message + "\n" + path);
  printSection(console.out, addSample, prep);
  return kSucceeded;
}

int showModel(const std::string& path, const Console& console) {
  InternalModel model;
  std::string message;
  if (!loadModelFile(path, model, message)) return console.fail(message + "\n" + path);
  printSection(console.out, reportEquations, model);
  return kSucceeded;
}

void addStatistics(Document& out, const VelsConfiguration& vels) {
  reportUncertainty(out, vels.uncertainty);
  if (vels.sensitivity) reportMeasures(out, *vels.sensitivity, vels.selectedVariables());
}

int showPostProcessor(const std::string& path, const Console& console) {
  PrepConfiguration prep;
  ModelConfiguration model;
  VelsConfiguration vels;
  std::string message;
  if (!loadPostProcessorFile(path, prep, model, vels, message)) return console.fail(message + "\n" + path);
  Document text;
  addSample(text, prep);
  reportResults(text, model);
  addStatistics(text, vels);
  printText(console.out, text);
  return kSucceeded;
}

int showProject(const std::string& path, const Console& console) {
  ProjectConfiguration project;
  if (!project.load(path)) return console.fail("Error reading configuration file.\n" + path);
  Document text;
  const auto heading = [&text](const char* name, bool present) {
    text.add(Heading{std::string(present ? "" : "No ") + name + " Configuration"});
    return present;
  };
  if (heading("Prep", project.hasPrep)) addSample(text, project.prep);
  if (heading("Model", project.hasModel)) reportResults(text, project.model);
  if (heading("Vels", project.hasVels)) addStatistics(text, project.vels);
  printText(console.out, text);
  return kSucceeded;
}

}  // namespace

int runShow(const ShowOptions& options, const Console& console) {
  switch (kindOf(options.file)) {
    case FileKind::Factors:
      return showFactors(options.file, console);
    case FileKind::Sample:
      return showSample(options.file, console);
    case FileKind::Model:
      return showModel(options.file, console);
    case FileKind::PostProcessor:
      return showPostProcessor(options.file, console);
    case FileKind::Project:
      return showProject(options.file, console);
    case FileKind::Unknown:
      break;
  }
  return console.fail(options.file + " is none of the system's files: .fac, .sam, .imd, .spc or .psc.");
}

}  // namespace tarvex
