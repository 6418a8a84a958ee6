// The factor list record: a .fac file, and a part of every other file.

#include "FuzzInput.h"
#include "factors/FactorList.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarvex;
  FactorList list;
  TextReader in = TextReader::fromText(fuzz::textOf(data, size));
  if (list.read(in)) fuzz::checkRoundTrip(list);
  return 0;
}
