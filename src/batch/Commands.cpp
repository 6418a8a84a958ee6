#include "batch/Commands.h"

#include "batch/ConsoleFrontEnd.h"

namespace tarvex {

namespace {

struct Dispatch {
  const Console& console;
  int operator()(std::monostate) const { return kWrongUsage; }
  int operator()(const SampleOptions& options) const { return runSample(options, console); }
  int operator()(const ImportOptions& options) const { return runImport(options, console); }
  int operator()(const RunOptions& options) const { return runRun(options, console); }
  int operator()(const AnalyseOptions& options) const { return runAnalyse(options, console); }
  int operator()(const PlotOptions& options) const { return runPlot(options, console); }
  int operator()(const ReportOptions& options) const { return runReport(options, console); }
  int operator()(const ProjectOptions& options) const { return runProject(options, console); }
  int operator()(const ShowOptions& options) const { return runShow(options, console); }
  int operator()(const DemoOptions& options) const { return runDemo(options, console); }
};

}  // namespace

int runBatch(const std::vector<std::string>& words, std::ostream& out, std::ostream& errors, bool errorsAreTerminal) {
  int status = kSucceeded;
  const Command command = parseCommandLine(words, out, errors, status);
  if (std::holds_alternative<std::monostate>(command)) return status;
  ConsoleFrontEnd frontEnd(errors, errorsAreTerminal);
  const int result = std::visit(Dispatch{Console{out, errors, frontEnd}}, command);
  return result != kSucceeded && ConsoleFrontEnd::stopRequested() ? kStopped : result;
}

}  // namespace tarvex
