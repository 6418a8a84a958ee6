// A Stein file: as the source of the factors, then attached to the list that this made.

#include "FuzzInput.h"
#include "correlation/importStein.h"
#include "factors/FactorList.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarvex;
  const fuzz::InputFile file(data, size);
  FactorList list;
  for (const SteinImport mode : {kSteinReplace, kSteinAttach, kSteinAttachAny}) {
    std::string message;
    if (!importStein(file.path(), mode, list, message) && message.empty()) {
      fuzz::finding("a refusal without a message", {});
    }
    // Not read again: names are longer here than a factor file allows.
    static_cast<void>(fuzz::written(list));
  }
  return 0;
}
