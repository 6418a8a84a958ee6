#include "batch/Commands.h"
#include "batch/FileFindings.h"
#include "report/TextTable.h"

namespace tarvex {

namespace {

// A finding under the path of its file; further lines stand below it.
void print(const Console& console, const std::string& path, const char* grade, std::string text) {
  for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 1))
    text.insert(at + 1, "  ");
  console.out << path << ": " << grade << ": " << text << '\n';
}

bool checkFile(const std::string& path, const CheckOptions& options, const Console& console) {
  const std::string kind = options.kind.empty() ? kindWordOf(path) : options.kind;
  FileFindings found;
  if (kind.empty())
    found.wrong = {"neither its name nor its first line tells what it is: --kind names it"};
  else
    found = findInFile(path, kind, options.factorFile);
  if (!console.watched().report(1.0)) return false;
  for (const std::string& text : found.wrong) print(console, path, "wrong", text);
  for (const std::string& text : found.doubtful) print(console, path, "doubtful", text);
  if (found.wrong.empty() && found.doubtful.empty()) console.out << path << ": nothing wrong, " << kind << '\n';
  return found.wrong.empty();
}

}  // namespace

int runCheck(const CheckOptions& options, const Console& console) {
  bool sound = true;
  for (const std::string& path : options.files) sound = checkFile(path, options, console) && sound;
  return sound ? kSucceeded : kFailed;
}

}  // namespace tarvex
