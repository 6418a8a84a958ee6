#include "factors/FactorFiles.h"

#include <utility>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/FactorList.h"
#include "factors/FactorProblems.h"
#include "factors/lineEnd.h"

namespace tarvex {

bool loadFactorFile(const std::string& path, FactorList& list, std::string& message, const Progress& progress) {
  TextReader in = TextReader::fromFile(path, progress);
  if (in.fail()) {
    message = withProblem("Error opening factors file", in);
    return false;
  }
  FactorList loaded;
  if (!loaded.read(in) || !readTextEnd(in)) {
    message = withProblem("Error reading factors file", in);
    return false;
  }
  list = std::move(loaded);
  return true;
}

bool saveFactorFile(const std::string& path, const FactorList& list, std::string& message, const Progress& progress) {
  constexpr std::uint64_t kCell = 2;  // bytes, of the matrix, which is most of a long list
  const auto order = static_cast<std::uint64_t>(list.correlatableCount());
  TextWriter out(path);
  out.watch(progress, order * order * kCell);
  list.write(out);
  if (!out.commit()) {
    message = withProblem("Error opening file for output", out);
    return false;
  }
  message = lossesInFile(list);
  return true;
}

}  // namespace tarvex
