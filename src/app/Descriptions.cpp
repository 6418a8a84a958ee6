#include "app/Descriptions.h"

#include <iterator>

#include "model/ModelConfiguration.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

namespace {

struct Wording {
  const char* heading;
  const char* size;
  const char* file;
  const char* order;     // null: no such line
  bool countsGenerated;  // the size is that of the sample that is there, not of the one to generate
};

// clang-format off
constexpr Wording kWordings[] = {  // by PrepOrigin
    {"Internal Configuration", "Samples to generate: ",     "Samples file:", "Samples", false},
    {"Saved Configuration",    "Generated samples: ",       "Samples file:", "Samples", true},
    {"Saved Configuration",    "Generated sample size: ",   "Sample file:",  "Sample",  true},
    {"External Configuration", "Generated sample size: ",   "Sample file:",  nullptr,   true},
    {"Demo Configuration",     "Samples to generate: ",     "Samples file:", "Samples", false},
};
// clang-format on

std::string correlationText(const PrepConfiguration& prep, PrepOrigin origin) {
  static constexpr const char* kMethods[] = {"Dependence tree", "Iman Conover", "None", "Stein"};
  const std::int32_t mode = prep.factors.correlationMode;
  const bool known =
      origin != PrepOrigin::External && mode >= 0 && mode < static_cast<std::int32_t>(std::size(kMethods));
  return std::string("Correlation method selected: ") + (known ? kMethods[mode] : "unknown");
}

bool hasEquations(const ModelConfiguration& model) {
  return model.choice.kind == kInternalModel && model.choice.internalModel() != nullptr;
}

std::vector<std::string> describeEquations(const InternalModel& model) {
  std::vector<std::string> lines = {"Internal model executable:", "   " + model.fileName(),
                                    "Number of equations: ", "   " + std::to_string(model.numExpressions()),
                                    "Output Variables: "};
  for (const ModelExpression& expression : model.expressions())
    if (expression.type == 1) lines.push_back("   " + expression.name);
  return lines;
}

}  // namespace

std::vector<std::string> describePrep(const PrepConfiguration& prep, PrepOrigin origin) {
  const Wording& wording = kWordings[static_cast<std::size_t>(origin)];
  const std::int64_t toGenerate = prep.sampler ? prep.sampler->numSamples : 0;
  const std::int64_t size = wording.countsGenerated ? prep.samples.rows() : toGenerate;
  std::vector<std::string> lines = {
      wording.heading,
      "Total factors: " + std::to_string(prep.factors.factorCount()),
      "Sampling method selected: " + (prep.sampler ? prep.sampler->methodName : std::string("None")),
      correlationText(prep, origin),
      wording.size + std::to_string(size),
      wording.file,
      "   " + prep.sampleFile};
  if (wording.order != nullptr)
    lines.push_back(std::string(wording.order) +
                    (prep.samples.order() == 0 ? " ordered by Run" : " ordered by Factor"));
  return lines;
}

std::vector<std::string> describeModel(const ModelConfiguration& model) {
  if (hasEquations(model)) return describeEquations(*model.choice.internalModel());
  return {"External model executable:",
          "   " + (model.choice.kind == kNoModelToStart ? "No model selected" : model.choice.executable), "",
          "Model output file:", "   " + model.choice.outputFile};
}

std::string modelSelectionText(const ModelConfiguration& model) {
  return hasEquations(model) ? "Internal model selection" : "External model selection";
}

}  // namespace tarvex
