// An external sample file.

#include "FuzzInput.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SampleFiles.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarvex;
  const fuzz::InputFile file(data, size);
  PrepConfiguration prep;
  std::string message;
  if (loadExternalSample(file.path(), prep, message)) {
    fuzz::checkRoundTrip(prep);
  } else if (message.empty()) {
    fuzz::finding("a refusal without a message", {});
  }
  return 0;
}
