#include <filesystem>

#include "base/TextReader.h"
#include "batch/Commands.h"
#include "batch/Reports.h"
#include "model/ModelConfiguration.h"
#include "postproc/PostProcessorFile.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SampleFiles.h"

namespace tarvex {

namespace {

enum class FileKind { Unknown, Factors, Sample, Model, PostProcessor };

// By the name's ending, or else by how the file begins.
FileKind kindOf(const std::string& path) {
  const std::string extension = std::filesystem::path(path).extension().string();
  if (extension == ".fac") return FileKind::Factors;
  if (extension == ".sam") return FileKind::Sample;
  if (extension == ".imd") return FileKind::Model;
  if (extension == ".spc") return FileKind::PostProcessor;
  TextReader in = TextReader::fromFile(path);
  constexpr std::size_t kFirstLineLimit = 100;
  const std::string_view first = in.peekLine(kFirstLineLimit);
  if (first == "Default Truncations:") return FileKind::Factors;
  return FileKind::Unknown;
}

int showFactors(const std::string& path, const Console& console) {
  FactorList factors;
  std::string message;
  if (!loadFactorFile(path, factors, message)) return console.fail(message + "\n" + path);
  reportFactors(console.out, factors);
  return kSucceeded;
}

int showSample(const std::string& path, const Console& console) {
  PrepConfiguration prep;
  std::string message;
  if (!loadSampleFile(path, prep, message)) return console.fail(message + "\n" + path);
  reportSample(console.out, prep);
  return kSucceeded;
}

int showModel(const std::string& path, const Console& console) {
  InternalModel model;
  std::string message;
  if (!loadModelFile(path, model, message)) return console.fail(message + "\n" + path);
  reportEquations(console.out, model);
  return kSucceeded;
}

int showPostProcessor(const std::string& path, const Console& console) {
  PrepConfiguration prep;
  ModelConfiguration model;
  VelsConfiguration vels;
  std::string message;
  if (!loadPostProcessorFile(path, prep, model, vels, message)) return console.fail(message + "\n" + path);
  reportSample(console.out, prep);
  console.out << '\n';
  reportResults(console.out, model);
  console.out << '\n';
  reportUncertainty(console.out, vels.uncertainty);
  console.out << '\n';
  if (vels.sensitivity) reportMeasures(console.out, *vels.sensitivity, vels.selectedVariables());
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
    case FileKind::Unknown:
      break;
  }
  return console.fail(options.file + " is none of the system's files: .fac, .sam, .imd or .spc.");
}

}  // namespace tarvex
