#include "app/ProjectConfiguration.h"
#include "base/Paths.h"
#include "batch/Commands.h"
#include "batch/StudyFile.h"
#include "postproc/PostProcessorFile.h"
#include "sampling/SampleFiles.h"

namespace tarvex {

namespace {

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
  const std::string projectPath = absolutePath(options.project);
  const std::string samplePath = absolutePath(options.sample);
  const std::string resultsPath = absolutePath(options.results);
  ProjectConfiguration project;
  std::string message;
  const FileKind kind = fileKindOf(options.input);
  if (kind == FileKind::Factors || kind == FileKind::Model || kind == FileKind::Unknown)
    return console.fail("Error reading configuration file.\n" + options.input);
  if (!loadStudyFile(options.input, project, message)) return console.fail(message);
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
