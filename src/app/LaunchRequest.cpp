#include "app/LaunchRequest.h"

#include <memory>
#include <string_view>
#include <utility>

#include "app/RunController.h"
#include "base/TextReader.h"
#include "model/ModelChoice.h"

namespace tarvex {

namespace {

constexpr std::size_t kMaxLine = 1023;

// The value behind `label`, which stands at the very start of the line; empty where it doesn't.
std::string valueOf(std::string_view line, std::string_view label) {
  if (!line.starts_with(label)) return {};
  const std::size_t start = line.find_first_not_of(' ', label.size());
  return start == std::string_view::npos ? std::string() : std::string(line.substr(start));
}

}  // namespace

LaunchRequest LaunchRequest::read(const std::string& mainDirectory) {
  LaunchRequest request;
  TextReader in = TextReader::fromFile(mainDirectory + "/Tarvex.ini");
  std::string line;
  while (in.readLine(line, kMaxLine)) request.takeLine(line);
  return request;
}

void LaunchRequest::takeLine(const std::string& line) {
  const auto takeFile = [&](std::string_view label, FileKind kind) {
    if (std::string value = valueOf(line, label); !value.empty()) files_.push_back({kind, std::move(value)});
  };
  const auto takeText = [&](std::string_view label, std::string& text) {
    if (std::string value = valueOf(line, label); !value.empty()) text = std::move(value);
  };
  takeFile("Tarvex sample file:", FileKind::SavedSample);
  takeFile("External sample file:", FileKind::ExternalSample);
  takeFile("Tarvex configuration file:", FileKind::Results);
  takeText("Internal model:", internalModel_);
  takeText("External model executable:", executable_);
  takeText("External model output file:", outputFile_);
}

bool LaunchRequest::applyModel(RunController& controller) const {
  Outcome accepted = Outcome::Done;
  if (!outputFile_.empty()) {
    ModelChoice model;  // its kind stays: nothing is to be started
    model.setExternal(executable_, outputFile_, executable_ == kSpreadsheetProgram ? 1 : 0);
    accepted = controller.acceptModel(std::move(model), RunController::Edit::AtStart);
  }
  auto internal = std::make_unique<InternalModel>();
  std::string message;
  if (!internalModel_.empty() && loadModelFile(internalModel_, *internal, message)) {
    ModelChoice model;
    model.setInternalModel(std::move(internal));
    accepted = controller.acceptModel(std::move(model), RunController::Edit::AtStart);
  }
  return accepted == Outcome::Done && controller.project().hasModel;
}

}  // namespace tarvex
