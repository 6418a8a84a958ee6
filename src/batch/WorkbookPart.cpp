// A part of a run in parts whose model is a workbook: started by the run's script, in the directory of the part.

#include <algorithm>
#include <filesystem>

#include "base/ScratchDirectory.h"
#include "batch/Commands.h"
#include "batch/PartsModel.h"
#include "model/CellsRun.h"
#include "model/ModelChoice.h"
#include "model/ModelResults.h"
#include "model/OfficeApplication.h"
#include "model/SpreadsheetRun.h"
#include "model/writeModelOutput.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SampleFiles.h"

namespace tarvex {

namespace {

// What a failure has to say, in one line: the last one of a part's log is what a person sees of it.
class PartProblem {
 public:
  void add(const std::string& text) {
    if (!text.empty()) text_ += (text_.empty() ? "" : " - ") + text;
  }
  std::string line() const {
    std::string line = text_;
    std::ranges::replace(line, '\n', ' ');
    return line;
  }

 private:
  std::string text_;
};

bool computePart(const ModelChoice& model, const PrepConfiguration& prep, std::ostream& warnings, ModelResults& results,
                 PartProblem& problem) {
  OfficeApplication application([] { return !StopSignals::requested(); });
  const Warn warn = [&](const std::string& title, const std::string& text) {
    if (title == "Warning")
      warnings << text << '\n';
    else
      problem.add(text);
  };
  if (!model.drivesCells()) {
    SpreadsheetRun run(application, SpreadsheetRun::Attendance::Unsaved, warn);
    if (run.run(model, prep, results)) return true;
    problem.add(run.errorText());
    return false;
  }
  CellsRun run(application, warn);
  if (run.run(model, prep, results)) return true;
  problem.add(run.errorText());
  if (run.problemRow() > 0) problem.add("row " + std::to_string(run.problemRow()) + " of the part");
  return false;
}

// Applications that open one file in the same moment are in each other's way: each has a copy.
bool copyWorkbook(const std::string& workbook, const std::string& copy, std::string& message) {
  std::error_code error;
  std::filesystem::copy_file(workbook, copy, error);
  if (!error) return true;
  message = "The workbook cannot be copied: " + error.message() + '\n' + workbook;
  return false;
}

// What is said of the copy is meant of the workbook.
std::string aboutWorkbook(std::string text, const std::string& copy, const std::string& workbook) {
  for (std::size_t at = text.find(copy); at != std::string::npos; at = text.find(copy, at + workbook.size()))
    text.replace(at, copy.size(), workbook);
  return text;
}

}  // namespace

int runWorkbookPart(const WorkbookPartOptions& options, const Console& console) {
  PrepConfiguration prep;
  ModelChoice model;
  ModelResults results;
  PartProblem problem;
  std::string message;
  if (!loadSampleFile(options.sampleFile, prep, message, console.watched())) return console.fail(message);
  const ScratchDirectory scratch;
  const std::string copy = scratch.path() + '/' + std::filesystem::path(options.workbook).filename().string();
  if (!copyWorkbook(options.workbook, copy, message) || !chooseWorkbook(copy, options.cells, model, message))
    return console.fail(message);
  if (!computePart(model, prep, console.errors, results, problem))
    return console.fail(aboutWorkbook(problem.line(), copy, options.workbook));
  return writeModelOutput(options.output, results, message) ? kSucceeded : console.fail(message);
}

}  // namespace tarvex
