// A model output file, as a program of the user's leaves it.

#include <algorithm>

#include "FuzzInput.h"
#include "model/ModelConfiguration.h"

namespace {

// A Model record cuts names.
bool canBeKept(const std::string& name) {
  return name.size() <= 28;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarvex;
  const fuzz::InputFile file(data, size);
  ModelConfiguration model;
  model.choice.outputFile = file.path();
  std::string problem;
  if (!model.readModelOutput([](const std::string&, const std::string&) {}, problem)) return 0;
  const std::vector<std::string>& names = model.results.outputNames();
  if (std::all_of(names.begin(), names.end(), canBeKept)) fuzz::checkRoundTrip(model, "\n");
  return 0;
}
