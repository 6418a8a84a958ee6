#include "postproc/PostProcessorFile.h"

#include <utility>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "model/ModelConfiguration.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SampleFiles.h"

namespace tarvex {

bool loadPostProcessorFile(const std::string& path, PrepConfiguration& prep, ModelConfiguration& model,
                           VelsConfiguration& vels, std::string& message, const Progress& progress) {
  TextReader in = TextReader::fromFile(path, progress);
  PrepConfiguration loadedPrep;
  ModelConfiguration loadedModel;
  VelsConfiguration loadedVels;
  if (in.fail() || !loadedPrep.read(in) || !loadedModel.read(in) || !loadedVels.load(in)) {
    message = withProblem("  Error reading UA/SA file", in);
    return false;
  }
  message = loadedVels.changedNames(loadedModel);
  prep = std::move(loadedPrep);
  model = std::move(loadedModel);
  vels = std::move(loadedVels);
  return true;
}

bool savePostProcessorFile(const std::string& path, const PrepConfiguration& prep, const ModelConfiguration& model,
                           const VelsConfiguration& vels, std::string& message, const Progress& progress) {
  TextWriter out(path);
  out.watch(progress, recordBytes(prep) + recordBytes(model));
  prep.write(out);
  model.write(out);
  vels.save(out);
  if (out.commit()) return true;
  message = withProblem(kResultsNotWritten, out);
  return false;
}

}  // namespace tarvex
