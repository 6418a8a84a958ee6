#include "batch/Commands.h"

#include <new>
#include <stdexcept>

#include "base/Cores.h"
#include "batch/ConsoleFrontEnd.h"
#include "batch/StopSignals.h"

namespace tarvex {

namespace {

struct Dispatch {
  const Console& console;
  int operator()(std::monostate) const { return kWrongUsage; }
  int operator()(const SampleOptions& options) const { return runSample(options, console); }
  int operator()(const ImportOptions& options) const { return runImport(options, console); }
  int operator()(const RunOptions& options) const { return runRun(options, console); }
  int operator()(const WorkbookPartOptions& options) const { return runWorkbookPart(options, console); }
  int operator()(const ResumeOptions& options) const { return runResume(options, console); }
  int operator()(const StatusOptions& options) const { return runStatus(options, console); }
  int operator()(const CancelOptions& options) const { return runCancel(options, console); }
  int operator()(const AnalyseOptions& options) const { return runAnalyse(options, console); }
  int operator()(const PlotOptions& options) const { return runPlot(options, console); }
  int operator()(const ReportOptions& options) const { return runReport(options, console); }
  int operator()(const ProjectOptions& options) const { return runProject(options, console); }
  int operator()(const ShowOptions& options) const { return runShow(options, console); }
  int operator()(const CheckOptions& options) const { return runCheck(options, console); }
  int operator()(const DemoOptions& options) const { return runDemo(options, console); }
};

// What a command was about, behind "to".
struct Purpose {
  std::string operator()(std::monostate) const { return "begin"; }
  std::string operator()(const SampleOptions& options) const { return "make the sample " + options.output; }
  std::string operator()(const ImportOptions& options) const { return "import the sample " + options.externalFile; }
  std::string operator()(const RunOptions& options) const { return "run the model over " + options.sampleFile; }
  std::string operator()(const WorkbookPartOptions& options) const { return "compute " + options.sampleFile; }
  std::string operator()(const ResumeOptions& options) const { return "go on with the run in " + options.directory; }
  std::string operator()(const StatusOptions& options) const { return "show the run in " + options.directory; }
  std::string operator()(const CancelOptions& options) const { return "end the run in " + options.directory; }
  std::string operator()(const AnalyseOptions& options) const { return "analyse " + options.input; }
  std::string operator()(const PlotOptions& options) const { return "draw a picture of " + options.input; }
  std::string operator()(const ReportOptions& options) const { return "write the report " + options.output; }
  std::string operator()(const ProjectOptions& options) const { return "take or make the parts of " + options.input; }
  std::string operator()(const ShowOptions& options) const { return "show " + options.file; }
  std::string operator()(const CheckOptions&) const { return "check the files"; }
  std::string operator()(const DemoOptions&) const { return "carry out the demonstration case"; }
};

int carryOut(const Command& command, const Console& console) {
  try {
    return std::visit(Dispatch{console}, command);
  } catch (const std::bad_alloc&) {
    return console.fail("There is not enough memory to " + std::visit(Purpose(), command) + '.');
  } catch (const std::length_error&) {
    return console.fail("There is not enough memory to " + std::visit(Purpose(), command) + '.');
  } catch (const std::exception& error) {
    return console.fail("Failed to " + std::visit(Purpose(), command) + ": " + error.what());
  }
}

}  // namespace

std::string aboutFile(const std::string& message, const std::string& path) {
  return message.find('\n' + path) == std::string::npos ? message + '\n' + path : message;
}

int runBatch(const std::vector<std::string>& words, std::ostream& out, std::ostream& errors, bool errorsAreTerminal) {
  const CommandLine line = parseCommandLine(words, out, errors);
  if (std::holds_alternative<std::monostate>(line.command)) return line.status;
  Cores::use(line.threads);
  ConsoleFrontEnd frontEnd(errors, errorsAreTerminal);
  const int result = carryOut(line.command, Console{out, errors, frontEnd, errorsAreTerminal});
  return result != kSucceeded && StopSignals::requested() ? kStopped : result;
}

}  // namespace tarvex
