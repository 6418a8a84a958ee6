#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

class FactorList;

// How an expression fares over a small sample of the factors that it uses.
struct RelationPreview {
  static constexpr std::int32_t kRows = 400;

  std::vector<double> values;  // one a row; failed rows are 0.0, as in a generation
  std::int32_t failures = 0;
};

// Draws the factors of the list independently, from numbers of its own: no generation is changed by it. Relations above
// `place`, the relation's own or -1, are computed too; the one there and those below read as 0.0. False, with the
// reason, when the expression is refused or a factor that it needs can't be sampled.
[[nodiscard]] bool previewRelation(const FactorList& list, const std::string& expression, std::int32_t place,
                                   RelationPreview& preview, std::string& message);

}  // namespace tarvex
