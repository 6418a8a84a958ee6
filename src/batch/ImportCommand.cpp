#include "base/Names.h"
#include "batch/Commands.h"
#include "batch/TextTable.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SampleFiles.h"

namespace tarvex {

namespace {

// A sample file keeps only names that its reader takes back.
bool canKeepNames(const FactorList& factors, std::string& message) {
  for (std::int32_t i = 0; i < factors.factorCount(); ++i) {
    const std::string& name = factors.factor(i).name;
    if (isValidName(name) && name.size() <= Factor::kMaxName) continue;
    message = "A sample file cannot hold the factor name '" + name +
              "': names have letters and digits only, at most 19, and begin with a letter.";
    return false;
  }
  return true;
}

}  // namespace

int runImport(const ImportOptions& options, const Console& console) {
  PrepConfiguration prep;
  std::string message;
  if (!loadExternalSample(options.externalFile, prep, message))
    return console.fail(message + "\n" + options.externalFile);
  if (!canKeepNames(prep.factors, message)) return console.fail(message);
  prep.sampleFile = options.output;
  if (!saveSampleFile(options.output, prep, message)) return console.fail(message);
  console.out << counted(prep.samples.rows(), "run") << " of " << counted(prep.samples.columns(), "factor") << ": "
              << options.output << '\n';
  return kSucceeded;
}

}  // namespace tarvex
