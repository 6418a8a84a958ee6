#include "model/writeModelOutput.h"

#include <limits>
#include <vector>

#include "base/TextWriter.h"
#include "model/ModelResults.h"

namespace tarvex {

namespace {

constexpr std::size_t kLongestName = 255;  // that a reader takes as it is

}  // namespace

bool writeModelOutput(const std::string& path, const ModelResults& results, std::string& message) {
  TextWriter out(path);
  out.setPrecision(std::numeric_limits<double>::max_digits10);
  out << results.outputCount() << '\n';
  for (const std::string& name : results.outputNames()) {
    if (name.size() > kLongestName) {
      message = path + ": an output's name is too long for a file: " + name;
      return false;
    }
    out << name << '\n';
  }
  out << "time = no\n" << results.runCount() << '\n';
  std::vector<double> values;
  for (std::int32_t run = 0; run < results.runCount() && out.ok(); ++run) {
    if (!results.readRun(run, values)) {
      message = results.errorText();
      return false;
    }
    out.writeNumbers(values.data(), values.size(), ' ', values.size());
  }
  if (out.commit()) return true;
  message = out.problem();
  return false;
}

}  // namespace tarvex
