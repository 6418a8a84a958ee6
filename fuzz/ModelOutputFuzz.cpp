// A model output file, as a program of the user's leaves it.

#include "FuzzInput.h"
#include "model/ModelConfiguration.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarvex;
  const fuzz::InputFile file(data, size);
  ModelConfiguration model;
  model.outputFile = file.path();
  if (model.readModelOutput([](const std::string&, const std::string&) {})) fuzz::checkRoundTrip(model);
  return 0;
}
