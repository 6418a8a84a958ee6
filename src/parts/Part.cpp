#include "parts/Part.h"

#include <algorithm>

namespace tarvex {

std::vector<Part> splitRows(std::int32_t rows, std::int32_t parts) {
  const std::int32_t count = std::clamp(parts, std::int32_t{1}, std::max(rows, std::int32_t{1}));
  std::vector<Part> table;
  std::int32_t first = 0;
  for (std::int32_t i = 0; i < count; ++i) {
    const std::int32_t size = rows / count + (i < rows % count ? 1 : 0);
    table.push_back({first, size});
    first += size;
  }
  return table;
}

std::string partText(std::size_t number, const Part& part) {
  return "part " + std::to_string(number) + " (runs " + std::to_string(part.first) + " to " +
         std::to_string(part.first + part.rows - 1) + ')';
}

}  // namespace tarvex
