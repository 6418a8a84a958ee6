// A whole post-processor file (.spc): Prep, Model and Vels records one after the other.

#include "FuzzInput.h"
#include "base/RememberedDirectories.h"
#include "model/ModelConfiguration.h"
#include "postproc/PostProcessorFile.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/PrepConfiguration.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarvex;
  RememberedDirectories::forget();
  const fuzz::InputFile file(data, size);
  PrepConfiguration prep;
  ModelConfiguration model;
  VelsConfiguration vels;
  std::string message;
  if (!loadPostProcessorFile(file.path(), prep, model, vels, message)) {
    if (message.empty()) fuzz::finding("a refusal without a message", {});
    if (prep.factors.factorCount() + model.results.outputCount() != 0)
      fuzz::finding("a failed load left something", {});
  }
  return 0;
}
