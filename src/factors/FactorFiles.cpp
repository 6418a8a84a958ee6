#include <utility>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/FactorList.h"

namespace tarvex {

bool loadFactorFile(const std::string& path, FactorList& list, std::string& message) {
  TextReader in = TextReader::fromFile(path);
  if (in.fail()) {
    message = "Error opening factors file";
    return false;
  }
  FactorList loaded;
  if (!loaded.read(in)) {
    message = "Error reading factors file";
    return false;
  }
  list = std::move(loaded);
  return true;
}

bool saveFactorFile(const std::string& path, const FactorList& list, std::string& message) {
  TextWriter out(path);
  list.write(out);
  if (!out.commit()) {
    message = "Error opening file for output";
    return false;
  }
  return true;
}

}  // namespace tarvex
