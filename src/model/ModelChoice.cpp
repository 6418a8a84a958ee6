#include "model/ModelChoice.h"

#include <utility>

namespace tarvex {

ModelChoice::ModelChoice(const ModelChoice& other)
    : executable(other.executable),
      outputFile(other.outputFile),
      kind(other.kind),
      spreadsheet(other.spreadsheet),
      cells(other.cells),
      internalModel_(other.internalModel_ ? std::make_unique<InternalModel>(*other.internalModel_) : nullptr) {}

ModelChoice& ModelChoice::operator=(const ModelChoice& other) {
  return *this = ModelChoice(other);
}

void ModelChoice::setExternal(const std::string& executablePath, const std::string& outputPath,
                              std::int32_t isSpreadsheet) {
  executable = executablePath;
  outputFile = outputPath;
  spreadsheet = isSpreadsheet;
}

std::string ModelChoice::problem() const {
  const std::string first = kExecutableRule.problem(executable);
  return first.empty() ? kOutputFileRule.problem(outputFile) : first;
}

void ModelChoice::setInternalModel(std::unique_ptr<InternalModel> model) {
  internalModel_ = std::move(model);
  kind = kInternalModel;
}

void ModelChoice::clearInternalModel() {
  internalModel_.reset();
  kind = kExternalExecutable;
}

}  // namespace tarvex
