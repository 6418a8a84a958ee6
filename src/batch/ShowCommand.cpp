#include "app/ProjectConfiguration.h"
#include "batch/Commands.h"
#include "batch/StudyFile.h"
#include "report/printSection.h"

namespace tarvex {

namespace {

void addSample(Document& out, const PrepConfiguration& prep) {
  reportDesign(out, prep);
  reportFactors(out, prep.factors);
  if (prep.samples.rows() > 0) reportSampleStatistics(out, prep);
}

int showModel(const std::string& path, const Console& console) {
  InternalModel model;
  std::string message;
  if (!loadModelFile(path, model, message)) return console.fail(message, path);
  printSection(console.out, reportEquations, model);
  return kSucceeded;
}

void addStatistics(Document& out, const VelsConfiguration& vels) {
  reportUncertainty(out, vels.uncertainty);
  if (vels.sensitivity) reportMeasures(out, *vels.sensitivity, vels.selectedVariables());
}

void addProject(Document& out, const ProjectConfiguration& project) {
  const auto heading = [&out](const char* name, bool present) {
    out.add(Heading{std::string(present ? "" : "No ") + name + " Configuration"});
    return present;
  };
  if (heading("Prep", project.hasPrep)) addSample(out, project.prep);
  if (heading("Model", project.hasModel)) reportResults(out, project.model, project.vels);
  if (heading("Vels", project.hasVels)) addStatistics(out, project.vels);
}

void addStudy(Document& out, FileKind kind, const ProjectConfiguration& project) {
  if (kind == FileKind::Project) return addProject(out, project);
  if (kind == FileKind::Factors) return reportFactors(out, project.prep.factors);
  addSample(out, project.prep);
  if (kind == FileKind::Sample) return;
  reportResults(out, project.model, project.vels);
  addStatistics(out, project.vels);
}

}  // namespace

int runShow(const ShowOptions& options, const Console& console) {
  const FileKind kind = fileKindOf(options.file);
  if (kind == FileKind::Unknown)
    return console.fail(options.file + " is none of the system's files: .fac, .sam, .imd, .spc, .dem or .psc.");
  if (kind == FileKind::Model) return showModel(options.file, console);
  ProjectConfiguration project;
  if (!loadStudyFile(options.file, project, console)) return kFailed;
  Document text;
  addStudy(text, kind, project);
  printText(console.out, text);
  return kSucceeded;
}

}  // namespace tarvex
