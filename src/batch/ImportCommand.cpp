#include "batch/CommandFiles.h"
#include "batch/Commands.h"
#include "report/TextTable.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SampleFiles.h"

namespace tarvex {

int runImport(const ImportOptions& options, const Console& console) {
  CommandFiles files;
  files.reads("external sample", options.externalFile);
  files.writes("sample file", options.output, kSampleNotWritten);
  PrepConfiguration prep;
  std::string message;
  if (!files.check(message)) return console.fail(message);
  if (!loadExternalSample(options.externalFile, prep, message, console.watched()))
    return console.fail(message, options.externalFile);
  console.warn(message);
  prep.sampleFile = options.output;
  if (!saveSampleFile(options.output, prep, message, console.watched())) return console.fail(message);
  console.out << counted(prep.samples.rows(), "run") << " of " << counted(prep.samples.columns(), "factor") << ": "
              << options.output << '\n';
  return kSucceeded;
}

}  // namespace tarvex
