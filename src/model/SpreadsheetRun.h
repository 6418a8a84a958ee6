#pragma once

#include <string>

#include "model/OutputNames.h"

namespace tarvex {

class ModelChoice;
class ModelResults;
class PrepConfiguration;
class SpreadsheetApplication;
class WorkbookCopy;

// A model that is a workbook, run once over a whole sample.
class SpreadsheetRun {
 public:
  // The user computes and saves the workbook in the application and closes that. With nobody there it is recalculated,
  // and takes the place of the file once all has gone well; unsaved it is computed in a copy that nobody keeps.
  enum class Attendance { User, Nobody, Unsaved };

  SpreadsheetRun(SpreadsheetApplication& application, Attendance attendance, Warn warn);

  // Writes the sample into the sheet "Inputs" of the chosen workbook, has it computed and reads its sheet "Outputs"
  // into the results; with the kind kNoModelToStart it is only read. On false, with errorText(), there are no results
  // and the file is as it was, or as the user left it.
  [[nodiscard]] bool run(const ModelChoice& choice, const PrepConfiguration& prep, ModelResults& results);
  // "book.ods: Outputs.B5: expected a number, found 'x'"; empty when messages have told it all.
  const std::string& errorText() const { return errorText_; }

 private:
  [[nodiscard]] bool prepareWorkbook(const ModelChoice& choice, const PrepConfiguration& prep, WorkbookCopy& copy);
  [[nodiscard]] bool start(bool visible);
  [[nodiscard]] bool letUserRun(const PrepConfiguration& prep);
  [[nodiscard]] bool openResults();
  [[nodiscard]] bool computeAlone(const PrepConfiguration& prep, WorkbookCopy& copy);
  [[nodiscard]] bool readOutputs(ModelResults& results);
  bool cannotWrite(const WorkbookCopy& copy);

  SpreadsheetApplication& application_;
  Attendance attendance_;
  Warn warn_;
  std::string workbook_;
  std::string errorText_;
};

}  // namespace tarvex
