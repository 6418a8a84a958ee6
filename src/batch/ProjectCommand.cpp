#include <filesystem>

#include "app/ProjectConfiguration.h"
#include "batch/Commands.h"
#include "postproc/PostProcessorFile.h"
#include "sampling/SampleFiles.h"

namespace tarvex {

namespace {

bool loadInput(const std::string& path, ProjectConfiguration& project, std::string& message) {
  const std::string extension = std::filesystem::path(path).extension().string();
  if (extension == ".sam") {
    project.hasPrep = loadSampleFile(path, project.prep, message);
    return project.hasPrep;
  }
  if (extension == ".spc") {
    const bool loaded = loadPostProcessorFile(path, project.prep, project.model, project.vels, message);
    project.hasPrep = project.hasModel = project.hasVels = loaded;
    return loaded;
  }
  message = "Error reading configuration file.";
  return project.load(path);
}

// Settled before the first file is written, so that a refused command writes none.
bool holdsWhatIsAsked(const ProjectConfiguration& project, const ProjectOptions& options, std::string& message) {
  if (!options.sample.empty() && !project.hasPrep)
    message = "The project holds no Prep Configuration: there is no sample to write.";
  else if (!options.results.empty() && !(project.hasPrep && project.hasModel && project.hasVels))
    message = "The project lacks one of its three configurations: there are no results to write.";
  else
    return true;
  return false;
}

}  // namespace

int runProject(const ProjectOptions& options, const Console& console) {
  // The records carry directories into which their readers go: where the files go is settled before.
  const auto absolute = [](const std::string& path) {
    return path.empty() ? path : std::filesystem::absolute(path).string();
  };
  const std::string projectPath = absolute(options.project);
  const std::string samplePath = absolute(options.sample);
  const std::string resultsPath = absolute(options.results);
  ProjectConfiguration project;
  std::string message;
  if (!loadInput(options.input, project, message)) return console.fail(message + "\n" + options.input);
  if (!holdsWhatIsAsked(project, options, message)) return console.fail(message + "\n" + options.input);

  if (!samplePath.empty() && !saveSampleFile(samplePath, project.prep, message)) return console.fail(message);
  if (!resultsPath.empty() && !savePostProcessorFile(resultsPath, project.prep, project.model, project.vels, message))
    return console.fail(message);
  if (!projectPath.empty() && !project.save(projectPath))
    return console.fail(
        "Error trying to write to the Tarvex configuration file.\nIs it locked by another application?");
  for (const std::string& written : {options.sample, options.results, options.project})
    if (!written.empty()) console.out << written << '\n';
  return kSucceeded;
}

}  // namespace tarvex
