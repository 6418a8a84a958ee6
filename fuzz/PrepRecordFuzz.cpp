// The Prep record: a sample file, with the sections of all sampling methods.

#include "FuzzInput.h"
#include "base/RememberedDirectories.h"
#include "sampling/PrepConfiguration.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarvex;
  RememberedDirectories::forget();
  PrepConfiguration prep;
  TextReader in = TextReader::fromText(fuzz::textOf(data, size));
  if (prep.read(in)) fuzz::checkRoundTrip(prep);
  return 0;
}
