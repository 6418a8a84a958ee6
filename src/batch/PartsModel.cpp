#include "batch/PartsModel.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "app/PartsRequest.h"
#include "base/Paths.h"
#include "batch/Commands.h"
#include "model/ModelChoice.h"
#include "model/ModelCommand.h"
#include "model/ModelRequest.h"
#include "model/WorkbookCopy.h"
#include "parts/FileChecksum.h"
#include "parts/JobScript.h"
#include "parts/RunDirectory.h"
#include "parts/RunRecord.h"

namespace tarvex {

namespace {

namespace fs = std::filesystem;

constexpr const char* kPartOutput = "outputs";  // in the directory of a part

// The file whose content is the model.
std::string modelFile(const RunRecord& record) {
  return record.workbook.empty() ? programOf(record.executable) : record.workbook;
}

std::string partCommand(const RunRecord& record, const RunDirectory& run) {
  std::string command =
      shellQuoted(batchProgram()) + " workbook-part {sample} {output} " + shellQuoted(run.workbook(record.workbook));
  if (!record.cells.empty()) command += ' ' + shellQuoted(record.cells);
  return command;
}

}  // namespace

bool chooseWorkbook(const std::string& path, const std::string& cells, ModelChoice& model, std::string& message) {
  ModelChoice choice;
  if (!cells.empty() && !parseWorkbookCells(cells, choice.cells, message)) return false;
  choice.setExternal(kSpreadsheetProgram, path, 1);
  choice.kind = kExternalExecutable;
  model = std::move(choice);
  return true;
}

bool describeModel(const RunOptions& options, const ModelChoice& model, RunRecord& record, std::string& message) {
  record.workbook = options.workbook.value_or("");
  record.executable = options.executable.value_or("");
  record.outputFile = options.workbook ? kPartOutput : options.modelOutput;
  if (options.workbook && model.drivesCells()) record.cells = model.cells.text();
  errno = 0;
  record.programChecksum = fileChecksum(existingPath(modelFile(record)));
  if (!options.workbook || !record.programChecksum.empty()) return true;
  message = std::string("The workbook cannot be opened: ") + std::strerror(errno) + '\n' + record.workbook;
  return false;
}

bool chooseModelAgain(const RunRecord& record, ModelChoice& model, const Console& console, std::string& message) {
  if (!record.workbook.empty()) {
    if (!chooseWorkbook(record.workbook, record.cells, model, message)) return false;
  } else {
    ModelRequest request;
    request.executable = record.executable;
    request.outputFile = record.outputFile;
    if (const std::optional<ModelRefusal> refusal = acceptModelRequest(request, model); refusal) {
      message = refusal->text;
      return false;
    }
  }
  const std::string file = modelFile(record);
  if (fileChecksum(existingPath(file)) != record.programChecksum)
    console.warn("The model isn't the one that the run was begun with; what is done stays.\n" + file);
  return true;
}

bool prepareModel(RunRecord& record, const RunDirectory& run, const Console& console, std::string& message) {
  if (record.workbook.empty()) return true;
  const std::string source = absolutePath(existingPath(record.workbook));
  const std::string target = run.workbook(record.workbook);
  std::error_code error;
  fs::copy_file(source, target + ".new", fs::copy_options::overwrite_existing, error);
  // Whoever has opened the one before goes on reading that.
  if (!error) fs::rename(target + ".new", target, error);
  if (error) {
    message = "The workbook cannot be copied: " + error.message() + '\n' + record.workbook;
    return false;
  }
  console.warn(openElsewhere(source));
  record.executable = partCommand(record, run);
  return true;
}

}  // namespace tarvex
