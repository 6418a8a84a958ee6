#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace tarvex {

class ResultDesk;
class Selection;
struct CorrelationMatrix;

// Pictures that have a window but nothing to be set. The columns are those of the selection's table.
void openScatterMatrix(ResultDesk& desk, std::shared_ptr<Selection> selection, std::vector<std::size_t> columns);
void openCorrelationMap(ResultDesk& desk, std::shared_ptr<Selection> selection, const CorrelationMatrix& matrix);

}  // namespace tarvex
