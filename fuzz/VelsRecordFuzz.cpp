// The Vels record: outputs, variables and the statistics of all methods.

#include "FuzzInput.h"
#include "base/RememberedDirectories.h"
#include "postproc/VelsConfiguration.h"

namespace {

std::string saved(const tarvex::VelsConfiguration& vels) {
  tarvex::TextWriter out;
  vels.save(out);
  return out.text();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarvex;
  RememberedDirectories::forget();
  VelsConfiguration vels;
  TextReader in = TextReader::fromText(fuzz::textOf(data, size));
  if (!vels.load(in)) return 0;
  const std::string first = saved(vels);
  if (fuzz::hasLostCharacters(first)) return 0;
  VelsConfiguration again;
  TextReader back = TextReader::fromText(first);
  if (!again.load(back)) fuzz::finding("what was read and written can't be read again", first);
  if (const std::string second = saved(again); first != second) {
    fuzz::finding("the second writing differs from the first", first, second);
  }
  return 0;
}
