#include "batch/StudyFile.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "app/ProjectConfiguration.h"
#include "base/TextReader.h"
#include "batch/Commands.h"
#include "factors/FactorFiles.h"
#include "postproc/PostProcessorFile.h"
#include "sampling/SampleFiles.h"

namespace tarvex {

bool readStudyFile(const std::string& path, FileKind kind, const Progress& progress, ProjectConfiguration& project,
                   std::string& message) {
  switch (kind) {
    case FileKind::Factors:
      return loadFactorFile(path, project.prep.factors, message);
    case FileKind::Sample:
      project.hasPrep = loadSampleFile(path, project.prep, message, progress);
      return project.hasPrep;
    case FileKind::PostProcessor:
      project.hasVels = loadPostProcessorFile(path, project.prep, project.model, project.vels, message, progress);
      project.hasPrep = project.hasModel = project.hasVels;
      return project.hasVels;
    case FileKind::Project:
      if (!project.load(path, progress)) {
        message = project.errorText();
        return false;
      }
      message = project.vels.changedNames(project.model);
      return true;
    case FileKind::Model:
    case FileKind::Unknown:
      break;
  }
  message = "The file holds neither factors nor a sample, results or a project: .fac, .sam, .spc, .dem or .psc.";
  return false;
}

FileKind fileKindOf(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (extension == ".fac") return FileKind::Factors;
  if (extension == ".sam") return FileKind::Sample;
  if (extension == ".imd") return FileKind::Model;
  if (extension == ".spc" || extension == ".dem") return FileKind::PostProcessor;
  if (extension == ".psc") return FileKind::Project;
  TextReader in = TextReader::fromFile(path);
  constexpr std::size_t kFirstLineLimit = 100;
  const std::string_view first = in.peekLine(kFirstLineLimit);
  if (first == "Default Truncations:") return FileKind::Factors;
  if (first == "Prep Configuration" || first == "No Prep Configuration") return FileKind::Project;
  return FileKind::Unknown;
}

bool loadStudyFile(const std::string& path, ProjectConfiguration& project, const Console& console) {
  std::string message;
  if (!readStudyFile(path, fileKindOf(path), console.watched(), project, message)) {
    console.fail(message, path);
    return false;
  }
  console.warn(message);
  return true;
}

}  // namespace tarvex
