// The text of a .imd file. What was read is run once, too.

#include <vector>

#include "FuzzInput.h"
#include "model/InternalModel.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarvex;
  InternalModel model;
  TextReader in = TextReader::fromText(fuzz::textOf(data, size));
  if (!model.read(in)) {
    if (model.numVariables() + model.numExpressions() != 0) fuzz::finding("a failed read left something", {});
    return 0;
  }
  const std::vector<double> values(static_cast<std::size_t>(model.numVariables()), 0.5);
  std::vector<double> outputs(static_cast<std::size_t>(model.numOutputs()));
  static_cast<void>(model.evaluate(values.data(), outputs.data()));
  return 0;
}
