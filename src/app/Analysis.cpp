#include "app/Analysis.h"

#include "app/FrontEnd.h"
#include "app/LongOperation.h"
#include "app/ProjectConfiguration.h"

namespace tarvex {

namespace {

// `work` gets the progress and the message.
template <class Work>
bool serve(FrontEnd& frontEnd, Work work) {
  std::string message;
  bool stopped = false;
  bool done = false;
  {
    const LongOperation operation(frontEnd, "Analysis", 0);
    done = work(operation.progress(), message);
    stopped = operation.stopped();
  }
  if (stopped && !done) return false;
  if (!message.empty())
    frontEnd.message(done ? MessageKind::Warning : MessageKind::Error, done ? "Warning" : "Error", message);
  return done;
}

}  // namespace

bool analyse(PostProcessor& postProcessor, const AnalysisRequest& request, FrontEnd& frontEnd) {
  return serve(frontEnd, [&](const Progress& progress, std::string& message) {
    return postProcessor.compute(request, progress, message);
  });
}

bool analyse(ProjectConfiguration& project, const AnalysisRequest& request, FrontEnd& frontEnd) {
  PostProcessor postProcessor(project);
  return analyse(postProcessor, request, frontEnd);
}

bool applyAlpha(PostProcessor& postProcessor, double alpha, FrontEnd& frontEnd) {
  return serve(frontEnd, [&](const Progress& progress, std::string& message) {
    return postProcessor.applyAlpha(alpha, progress, message);
  });
}

bool completeAnalysis(PostProcessor& postProcessor, FrontEnd& frontEnd) {
  return serve(frontEnd, [&](const Progress& progress, std::string& message) {
    return postProcessor.complete(progress, message);
  });
}

bool completeAnalysis(ProjectConfiguration& project, FrontEnd& frontEnd) {
  PostProcessor postProcessor(project);
  return completeAnalysis(postProcessor, frontEnd);
}

bool provideMeasures(ProjectConfiguration& project, const std::string& name, FrontEnd& frontEnd, std::int32_t& place) {
  return serve(frontEnd, [&](const Progress& progress, std::string& message) {
    return PostProcessor(project).provideMeasures(name, progress, place, message);
  });
}

}  // namespace tarvex
