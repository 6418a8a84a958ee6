// A model output file, as a program of the user's leaves it.

#include "FuzzInput.h"
#include "model/ModelConfiguration.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarvex;
  const fuzz::InputFile file(data, size);
  ModelConfiguration model;
  model.outputFile = file.path();
  bool warned = false;
  const bool good = model.readModelOutput([&](const std::string&, const std::string&) { warned = true; });
  if (good) {
    fuzz::checkRoundTrip(model);
  } else if (!warned) {
    fuzz::finding("a refusal without a message", {});
  }
  return 0;
}
