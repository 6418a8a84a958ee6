#pragma once

#include <ostream>
#include <string>

#include "app/FrontEnd.h"
#include "base/Progress.h"
#include "batch/CommandLine.h"
#include "batch/StopSignals.h"

namespace tarvex {

enum ExitStatus : int { kSucceeded = 0, kFailed = 1, kWrongUsage = 2, kStopped = 130 };

// The message with the file's path below it, unless it already says where in the file.
std::string aboutFile(const std::string& message, const std::string& path);

// Where a command's results and messages go.
struct Console {
  std::ostream& out;
  std::ostream& errors;
  FrontEnd& frontEnd;
  bool isTerminal = false;  // errors go to one

  // Prints the message and gives the status of a failed operation. Of one that was stopped nothing is said.
  int fail(const std::string& message) const {
    if (!StopSignals::requested()) errors << message << '\n';
    return kFailed;
  }
  // Prints what a success has to say, if anything.
  void warn(const std::string& message) const {
    if (!message.empty()) frontEnd.message(MessageKind::Warning, "Warning", message);
  }
  // For operations that ask whether they shall stop.
  Progress watched() const {
    return Progress([](double) { return !StopSignals::requested(); });
  }
  int fail(const std::string& message, const std::string& path) const { return fail(aboutFile(message, path)); }
};

// Each carries out one subcommand. A failure leaves every file complete or as it was: those that a command had put in
// their place before it failed stay there.
int runSample(const SampleOptions& options, const Console& console);
int runImport(const ImportOptions& options, const Console& console);
int runRun(const RunOptions& options, const Console& console);
int runWorkbookPart(const WorkbookPartOptions& options, const Console& console);
int runResume(const ResumeOptions& options, const Console& console);
int runStatus(const StatusOptions& options, const Console& console);
int runCancel(const CancelOptions& options, const Console& console);
int runAnalyse(const AnalyseOptions& options, const Console& console);
int runPlot(const PlotOptions& options, const Console& console);
int runReport(const ReportOptions& options, const Console& console);
int runProject(const ProjectOptions& options, const Console& console);
int runShow(const ShowOptions& options, const Console& console);
int runCheck(const CheckOptions& options, const Console& console);
int runDemo(const DemoOptions& options, const Console& console);

// The whole program but its process: the words after its name, to the exit status. What fails outside the reach of a
// command, as memory that can't be had, ends here as a failed command.
int runBatch(const std::vector<std::string>& words, std::ostream& out, std::ostream& errors, bool errorsAreTerminal);

}  // namespace tarvex
