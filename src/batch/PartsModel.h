#pragma once

#include <string>

namespace tarvex {

class ModelChoice;
class RunDirectory;
struct Console;
struct RunOptions;
struct RunRecord;

// The workbook as a model that is computed; `cells` as WorkbookCells::text() has them, empty: by its sheets. False,
// with the message.
[[nodiscard]] bool chooseWorkbook(const std::string& path, const std::string& cells, ModelChoice& model,
                                  std::string& message);

// Into a new record: the model that the options ask for. False, with the message, for a workbook that can't be read.
[[nodiscard]] bool describeModel(const RunOptions& options, const ModelChoice& model, RunRecord& record,
                                 std::string& message);
// The model of a run that was begun, from its record. What has changed since is told. False, with the message.
[[nodiscard]] bool chooseModelAgain(const RunRecord& record, ModelChoice& model, const Console& console,
                                    std::string& message);

// Makes the run ready to start parts of its model. A workbook is put into the run's directory, as its file has it now:
// nobody else writes to it there, and the file itself isn't used any more. False, with the message, and nothing
// changed.
[[nodiscard]] bool prepareModel(RunRecord& record, const RunDirectory& run, const Console& console,
                                std::string& message);

}  // namespace tarvex
