// The runs that charts and tables show, and what is saved of them.

#include "app/FrontEnd.h"
#include "app/LongOperation.h"
#include "app/RunControllerScope.h"
#include "app/Selection.h"
#include "base/Paths.h"
#include "sampling/SampleSelection.h"

namespace tarvex {

Outcome RunController::readRuns(const std::vector<std::string>& names, std::shared_ptr<Selection>& selection) {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  const BusyScope inProgress(*this);
  const LongOperation operation(frontEnd_, "Reading runs", project_.prep.samples.rows());
  auto table = std::make_shared<RunTable>();
  std::string message;
  if (!readRunTable(project_.prep, project_.model, project_.vels.outputNames(project_.model), names, *table, message,
                    operation.progress()))
    return operation.stopped() ? Outcome::Refused : fail(message);
  if (!message.empty()) frontEnd_.message(MessageKind::Warning, "Warning", message);
  selection = std::make_shared<Selection>(std::move(table), project_.sampleMark());
  return Outcome::Done;
}

Outcome RunController::saveSelectedSample(const Selection& selection, const std::string& path) {
  if (busy_) return Outcome::Busy;
  if (selection.sample() != project_.sampleMark())
    return fail("These runs are of an earlier sample, which is gone: they can be saved as a table only.", kWriteError);
  for (const std::string& kept : {project_.prep.sampleFile, heldPath_})
    if (isSameFile(path, kept))
      return fail("The file holds the whole sample, of which the model is run: choose another one.\n" + path,
                  kWriteError);
  const Scope scope(*this);
  const BusyScope inProgress(*this);
  const LongOperation operation(frontEnd_, "Writing a sample", selection.keptCount());
  std::string message;
  if (saveSelection(path, project_.prep, selection.runs(), message, operation.progress())) return Outcome::Done;
  return operation.stopped() ? Outcome::Refused : fail(message, kWriteError);
}

Outcome RunController::saveSelectedTable(const Selection& selection, const std::string& path) {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  const BusyScope inProgress(*this);
  const LongOperation operation(frontEnd_, "Writing a table", selection.keptCount());
  std::string message;
  if (selection.saveCsv(path, message, operation.progress())) return Outcome::Done;
  return operation.stopped() ? Outcome::Refused : fail(message, kWriteError);
}

Outcome RunController::perform(const std::string& title, std::int32_t runs, const Work& work) {
  if (busy_) return Outcome::Busy;
  const Scope scope(*this);
  const BusyScope inProgress(*this);
  const LongOperation operation(frontEnd_, title, runs);
  std::string message;
  if (work(operation.progress(), message)) return Outcome::Done;
  return operation.stopped() ? Outcome::Refused : fail(message);
}

}  // namespace tarvex
