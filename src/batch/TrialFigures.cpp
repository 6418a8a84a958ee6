#include "batch/TrialFigures.h"

#include <algorithm>
#include <ostream>
#include <string_view>

#include "app/ModelTrial.h"
#include "base/NumberText.h"

namespace tarvex {

namespace {

void printLines(std::string_view text, std::ostream& out) {
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    out << "  " << text.substr(start, end - start) << '\n';
    start = end + 1;
  }
}

}  // namespace

void printTrial(const TrialReport& report, std::ostream& out) {
  constexpr int kSeconds = 3;  // significant digits
  if (!report.row.title.empty()) out << "at " << report.row.title << '\n';
  if (!report.command.empty()) out << "command    " << report.command << "\ndirectory  " << report.directory << '\n';
  if (report.exitCode) out << "exit code  " << *report.exitCode << '\n';
  out << "seconds    " << numberText(report.seconds, kSeconds) << '\n';
  if (!report.printed.empty()) out << "printed\n";
  printLines(report.printed, out);
  if (!report.lines.empty()) out << report.outputFile << '\n';
  for (std::size_t i = 0; i < report.lines.size(); ++i) {
    const std::size_t number = report.firstLine + i;
    out << (number == report.badLine ? "> " : "  ") << number << "  " << report.lines[i] << '\n';
  }
  for (std::size_t i = 0; i < report.values.size(); ++i) {
    const std::size_t output = i % report.names.size();
    const bool hasValue = output >= report.reasons.size() || report.reasons[output].empty();
    out << report.names[output];
    if (!report.times.empty()) out << "  t=" << numberText(report.times[i / report.names.size()]);
    out << "  " << (hasValue ? numberText(report.values[i]) : report.reasons[output]) << '\n';
  }
}

}  // namespace tarvex
