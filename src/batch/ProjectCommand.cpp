#include "app/ProjectConfiguration.h"
#include "batch/CommandFiles.h"
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
  CommandFiles files;
  files.reads("file to read", options.input);
  files.writes("project file", options.project, kProjectNotWritten);
  files.writes("sample file", options.sample, kSampleNotWritten);
  files.writes("post-processor file", options.results, kResultsNotWritten);
  ProjectConfiguration project;
  std::string message;
  if (!files.check(message)) return console.fail(message);
  const FileKind kind = fileKindOf(options.input);
  if (kind == FileKind::Factors || kind == FileKind::Model || kind == FileKind::Unknown)
    return console.fail("Error reading configuration file.\n" + options.input);
  if (!loadStudyFile(options.input, project, console)) return kFailed;
  if (!holdsWhatIsAsked(project, options, message)) return console.fail(message + "\n" + options.input);

  if (!options.sample.empty() && !saveSampleFile(options.sample, project.prep, message, console.watched()))
    return console.fail(message);
  if (!options.results.empty() &&
      !savePostProcessorFile(options.results, project.prep, project.model, project.vels, message, console.watched()))
    return console.fail(message);
  if (!options.project.empty() && !project.save(options.project, console.watched()))
    return console.fail(project.errorText());
  for (const std::string& written : {options.sample, options.results, options.project})
    if (!written.empty()) console.out << written << '\n';
  return kSucceeded;
}

}  // namespace tarvex
