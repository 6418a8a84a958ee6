// Models that are workbooks.

#include "app/FrontEnd.h"
#include "app/RunController.h"
#include "base/Paths.h"
#include "model/CellsRun.h"
#include "model/SpreadsheetApplication.h"
#include "model/SpreadsheetRun.h"

namespace tarvex {

namespace {

constexpr std::int64_t kPercent = 100;

}  // namespace

bool RunController::runSpreadsheet() {
  using Attendance = SpreadsheetRun::Attendance;
  ModelChoice model = project_.model.choice;
  const std::unique_ptr<SpreadsheetApplication> application = makeSpreadsheetApplication([this] {
    frontEnd_.animate();
    frontEnd_.drainEvents();
    return frontEnd_.continueRun();
  });
  // The application has a current directory of its own.
  model.outputFile = absolutePath(model.outputFile);
  frontEnd_.openAnimation("External model execution", model.executable, model.outputFile);
  SpreadsheetRun run(*application, userAtWorkbook ? Attendance::User : Attendance::Nobody,
                     [this](const auto& title, const auto& text) { tell(title, text); });
  const bool done = run.run(model, project_.prep, project_.model.results);
  frontEnd_.closeProgress();
  const std::string detail = run.errorText().empty() ? "" : '\n' + run.errorText();
  return done || refuse("Error in the Excel model execution" + detail);
}

bool RunController::runCells() {
  const ModelChoice& model = project_.model.choice;
  const std::int32_t rows = project_.prep.samples.rows();
  const std::unique_ptr<SpreadsheetApplication> application = makeSpreadsheetApplication([this] {
    frontEnd_.drainEvents();
    return frontEnd_.continueRun();
  });
  frontEnd_.openProgress("Model execution", rows);
  frontEnd_.progress(0);
  frontEnd_.status("Workbook:  " + model.outputFile);
  CellsRun run(
      *application, [this](const auto& title, const auto& text) { tell(title, text); },
      [&](std::int32_t done) { frontEnd_.progress(static_cast<int>(kPercent * done / rows)); });
  const bool done = run.run(model, project_.prep, project_.model.results);
  const bool isStopped = !frontEnd_.continueRun();
  frontEnd_.closeProgress();
  std::string detail = run.errorText().empty() ? "" : '\n' + run.errorText();
  if (run.problemRow() > 0) detail += " (row " + std::to_string(run.problemRow()) + " of the sample)";
  return done || (!isStopped && refuse("Error in the Excel model execution" + detail));
}

}  // namespace tarvex
