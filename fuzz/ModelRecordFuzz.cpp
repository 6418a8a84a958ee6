// The Model record: what is run, with the results of all runs.

#include "FuzzInput.h"
#include "model/ModelConfiguration.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarvex;
  ModelConfiguration model;
  TextReader in = TextReader::fromText(fuzz::textOf(data, size));
  if (model.read(in)) fuzz::checkRoundTrip(model, "\n");  // the empty line that ends the record in front of it
  return 0;
}
