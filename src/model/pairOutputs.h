#pragma once

#include <string>
#include <vector>

namespace tarvex {

// Which outputs of a project the outputs of a new run most likely are: `given` by the model, and `kept` once they were
// made fit. One whose name the project knows, or that wasn't changed, keeps it; the others take, in order, the names of
// `former` that are left, and then their own. Each name comes once where those of `kept` do.
std::vector<std::string> pairOutputs(const std::vector<std::string>& given, const std::vector<std::string>& kept,
                                     const std::vector<std::string>& former);

}  // namespace tarvex
