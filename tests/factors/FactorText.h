#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/TextReader.h"
#include "factors/Distribution.h"
#include "factors/makeFactor.h"

namespace tarvex {

// A distribution from its type and the fields of its record, in file order; those of a list of intervals as
// "left:right:weight". Null where the record isn't readable.
inline std::unique_ptr<Distribution> distributionOf(const std::string& type, const std::vector<std::string>& fields) {
  const bool isList = !fields.empty() && fields[0].find(':') != std::string::npos;
  std::string record = "name\n\n1\t" + (isList ? std::to_string(fields.size()) + "\n" : "");
  for (std::string field : fields) {
    for (char& c : field) c = c == ':' ? '\t' : c;
    record += field + "\n";
  }
  TextReader in = TextReader::fromText(record);
  std::unique_ptr<Factor> factor = makeFactor(type);
  auto* distribution = dynamic_cast<Distribution*>(factor.get());
  if (distribution == nullptr) return nullptr;
  factor->read(in);
  if (in.fail()) return nullptr;
  (void)factor.release();
  return std::unique_ptr<Distribution>(distribution);
}

}  // namespace tarvex
