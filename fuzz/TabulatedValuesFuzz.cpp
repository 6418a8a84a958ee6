// A table of values of each class that has one.

#include "FuzzInput.h"
#include "factors/Discrete.h"
#include "factors/LogUniform.h"
#include "factors/TabulatedValues.h"
#include "factors/Uniform.h"

namespace {

using namespace tarvex;

template <class Table>
void load(const std::string& path) {
  Table table;
  const std::string before = fuzz::written(table);
  std::string message;
  if (loadTabulatedValues(path, table, message)) return;
  if (message.empty()) fuzz::finding("a refusal without a message", {});
  if (const std::string after = fuzz::written(table); after != before) {
    fuzz::finding("a failed load changed the table", before, after);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::InputFile file(data, size);
  load<Uniform>(file.path());
  load<LogUniform>(file.path());
  load<Discrete>(file.path());
  return 0;
}
