#include "app/RunController.h"
#include "batch/CommandFiles.h"
#include "batch/Commands.h"
#include "batch/SamplerOptions.h"
#include "factors/FactorFiles.h"
#include "factors/FactorProblems.h"
#include "report/TextTable.h"
#include "sampling/SampleFiles.h"
#include "sampling/SamplerFactory.h"

namespace tarvex {

namespace {

// Nothing of which a generation would warn before it begins.
bool isBeyondDoubt(const PrepSettings& prep, std::string& message) {
  message = problemLines(factorProblems(prep.factors), false);
  const std::string warning = prep.sampler->warningBefore(prep.factors);
  if (!warning.empty()) message += (message.empty() ? "" : "\n") + warning;
  return message.empty();
}

}  // namespace

int runSample(const SampleOptions& options, const Console& console) {
  CommandFiles files;
  files.reads("factor file", options.factorFile);
  files.reads("file of rows", options.rowsFile.value_or(""));
  files.writes("sample file", options.output, kSampleNotWritten);
  PrepSettings prep;
  std::string message;
  if (!files.check(message)) return console.fail(message);
  if (!loadFactorFile(options.factorFile, prep.factors, message)) return console.fail(message, options.factorFile);
  prep.sampler = makeSampler(options, prep.factors, message);
  if (!prep.sampler) return console.fail(message);
  if (options.strict && !isBeyondDoubt(prep, message)) return console.fail(message);
  prep.order = options.settings.listing;
  prep.sampleFile = options.output;

  RunController controller(console.frontEnd);
  if (controller.acceptPrep(std::move(prep)) != Outcome::Done || controller.generateSample() != Outcome::Done)
    return kFailed;
  const PrepConfiguration& made = controller.project().prep;
  console.out << counted(made.samples.rows(), "run") << " of " << counted(made.samples.columns(), "factor")
              << ", method " << made.sampler->methodName;
  if (takesSeed(made.sampler->methodId)) console.out << ", seed " << made.sampler->seed;
  console.out << ": " << options.output << '\n';
  return kSucceeded;
}

}  // namespace tarvex
