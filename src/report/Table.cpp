#include "report/Table.h"

#include "base/NumberText.h"

namespace tarvex {

std::string cell(double value) {
  return numberText(value);
}

std::string counted(std::int64_t count, const std::string& what) {
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

}  // namespace tarvex
