#include <filesystem>
#include <utility>

#include "app/Analysis.h"
#include "app/DemoCases.h"
#include "app/DemoRepair.h"
#include "app/FrontEnd.h"
#include "app/RunController.h"
#include "app/ShareDirectory.h"
#include "base/ScratchDirectory.h"
#include "batch/Commands.h"
#include "demo/DemoComparison.h"
#include "report/TimeReport.h"
#include "report/printSection.h"

namespace tarvex {

namespace {

std::string unknownCase(const std::string& name) {
  std::string text = "There is no demonstration case '" + name + "'. The cases are:";
  for (const DemoCase& demo : kDemoCases) text += std::string(" ") + demo.name;
  return text;
}

// The delivered case as a first start leaves it, in a main directory of its own: a run may write there.
bool installCase(const DemoCase& demo, const std::string& mainDirectory) {
  std::error_code error;
  const std::string delivered = demoFilePath(shareDirectory(), demo.fileName);
  if (!std::filesystem::create_directory(mainDirectory + "/Demo", error) ||
      !std::filesystem::copy_file(delivered, mainDirectory + "/Demo/" + demo.fileName + ".dem", error))
    return false;
  repairDemoFiles(mainDirectory);
  return true;
}

std::string resultsText(const ModelConfiguration& model, const VelsConfiguration& vels) {
  std::string text = "Results of a program:";
  for (const std::string& output : vels.outputNames(model)) text += ' ' + output;
  const std::int32_t times = model.results.runCount() > 0 ? model.results.timeCount(0) : 0;
  if (times > 0)
    text += " at " + counted(times, "time") + " from " + cell(model.results.time(0, 0)) + " to " +
            cell(model.results.time(0, times - 1));
  return text + '\n';
}

void describeCase(const DemoCase& demo, const ProjectConfiguration& project, std::ostream& out) {
  out << "Demonstration case " << demo.name << "\n\n";
  // The file is gone when the user reads this.
  printSection(out, reportDesign, project.prep, SampleFileName::Untold);
  out << '\n';
  printSection(out, reportFactors, project.prep.factors);
  out << '\n';
  const InternalModel* model = project.model.choice.internalModel();
  if (model == nullptr) {
    out << resultsText(project.model, project.vels);
    return;
  }
  for (const ModelExpression& equation : model->expressions()) out << equation.name << " = " << equation.text << '\n';
}

// Of a case with equations: sample and run anew. The results of the other are analysed as they were delivered.
int carryCase(const DemoCase& demo, RunController& controller, const Console& console) {
  const ProjectConfiguration& project = controller.project();
  if (controller.openDemo(demo.name) != Outcome::Done) return kFailed;
  describeCase(demo, project, console.out);
  if (demo.canRun && controller.runModel(RunController::SampleUse::Replaced) != Outcome::Done) return kFailed;
  if (controller.analyse(AnalysisRequest()) != Outcome::Done || !console.frontEnd.continueRun()) return kFailed;
  console.out << '\n'
              << counted(project.model.results.runCount(), "run")
              << (demo.canRun ? " made and analysed\n" : " analysed\n");
  for (const Comparison& comparison : compareWithExact(demo.name, project)) {
    console.out << '\n';
    reportComparison(console.out, comparison);
  }
  if (demo.canRun) return kSucceeded;
  console.out << '\n';
  reportTimesOfMaxima(console.out, project.model, project.vels);
  console.out << '\n';
  reportLeadingFactors(console.out, project.vels);
  return kSucceeded;
}

}  // namespace

int runDemo(const DemoOptions& options, const Console& console) {
  const std::string name = options.caseName.empty() ? kDemoCases.front().name : options.caseName;
  const DemoCase* demo = findDemoCase(name);
  if (demo == nullptr) return console.fail(unknownCase(name));
  const ScratchDirectory scratch;
  if (scratch.path().empty()) return console.fail("No directory can be made for the files of the demonstration.");
  if (!installCase(*demo, scratch.path())) return console.fail("The demonstration files are not installed.");
  RunController controller(console.frontEnd, scratch.path());
  return carryCase(*demo, controller, console);
}

}  // namespace tarvex
