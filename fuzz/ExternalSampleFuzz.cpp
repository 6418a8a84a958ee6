// An external sample file.

#include "FuzzInput.h"
#include "base/Names.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SampleFiles.h"

namespace {

// A sample file holds stricter names than an external one.
bool canBeKept(const tarvex::FactorList& factors) {
  for (std::int32_t i = 0; i < factors.factorCount(); ++i) {
    const std::string& name = factors.factor(i).name;
    if (!tarvex::isValidName(name) || name.size() > tarvex::Factor::kMaxName) return false;
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarvex;
  const fuzz::InputFile file(data, size);
  PrepConfiguration prep;
  std::string message;
  if (loadExternalSample(file.path(), prep, message)) {
    if (canBeKept(prep.factors)) fuzz::checkRoundTrip(prep);
  } else if (message.empty()) {
    fuzz::finding("a refusal without a message", {});
  }
  return 0;
}
