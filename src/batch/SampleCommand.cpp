#include "app/RunController.h"
#include "batch/Commands.h"
#include "batch/SamplerOptions.h"
#include "batch/TextTable.h"

namespace tarvex {

int runSample(const SampleOptions& options, const Console& console) {
  PrepConfiguration prep;
  std::string message;
  if (!loadFactorFile(options.factorFile, prep.factors, message))
    return console.fail(message + "\n" + options.factorFile);
  prep.sampler = makeSampler(options, prep.factors, message);
  if (!prep.sampler) return console.fail(message);
  prep.samples.setOrder(options.byFactor ? 1 : 0);
  prep.sampleFile = options.output;

  RunController controller(console.frontEnd);
  controller.project.setPrep(std::move(prep));
  if (!controller.generateSample()) return kFailed;
  const PrepConfiguration& made = controller.project.prep;
  console.out << counted(made.samples.rows(), "run") << " of " << counted(made.samples.columns(), "factor")
              << ", method " << made.sampler->methodName << ": " << options.output << '\n';
  return kSucceeded;
}

}  // namespace tarvex
