// The rows of a fixed sample, a CSV file.

#include <memory>
#include <vector>

#include "FuzzInput.h"
#include "factors/FactorList.h"
#include "factors/makeFactor.h"
#include "sampling/RowsFile.h"

namespace {

tarvex::FactorList twoFactors() {
  tarvex::FactorList list;
  for (const char* name : {"x1", "x2"}) {
    std::unique_ptr<tarvex::Factor> factor = tarvex::makeFactor("Factor");
    factor->name = name;
    list.addFactor(std::move(factor));
  }
  return list;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarvex;
  static const FactorList kFactors = twoFactors();
  const fuzz::InputFile file(data, size);
  std::vector<std::vector<double>> rows;
  std::string message;
  if (!readRowsFile(file.path(), kFactors, rows, message)) {
    if (message.empty()) fuzz::finding("a refusal without a message", {});
    return 0;
  }
  for (const std::vector<double>& row : rows) {
    if (row.size() != 2) fuzz::finding("a row of another width", {});
  }
  return 0;
}
