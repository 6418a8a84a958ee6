#include "model/ModelConfiguration.h"

#include "model/ModelOutputReader.h"

namespace tarvex {

bool ModelConfiguration::copyFrom(const ModelConfiguration& other, std::string& message) {
  if (!results.copyFrom(other.results, message)) return false;
  choice = other.choice;
  warningText = other.warningText;
  return true;
}

bool ModelConfiguration::readModelOutput(const Warn& warn, std::string& message, const Progress& progress) {
  choice.dropInternalModel();
  ModelOutputReader reader(results, warn);
  if (reader.read(choice.outputFile, 0, progress)) return true;
  message = reader.errorText();
  return false;
}

}  // namespace tarvex
