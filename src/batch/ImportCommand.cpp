#include "batch/Commands.h"
#include "batch/TextTable.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SampleFiles.h"

namespace tarvex {

int runImport(const ImportOptions& options, const Console& console) {
  PrepConfiguration prep;
  std::string message;
  if (!loadExternalSample(options.externalFile, prep, message)) return console.fail(message);
  prep.sampleFile = options.output;
  if (!saveSampleFile(options.output, prep, message)) return console.fail(message);
  console.out << counted(prep.samples.rows(), "run") << " of " << counted(prep.samples.columns(), "factor") << ": "
              << options.output << '\n';
  return kSucceeded;
}

}  // namespace tarvex
