#include "app/StartUp.h"

#include "app/DemoRepair.h"
#include "app/MainDirectory.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"

namespace tarvex {

namespace {

constexpr std::size_t kMaxDirectory = 1023;  // characters

}  // namespace

bool StartUp::run() {
  TextReader in = TextReader::fromFile(kFileName);
  std::string directory;
  if (!in.readLine(directory, kMaxDirectory) || directory.empty()) {
    // Kept: the file that the text names is not the file that is read.
    errorText_ =
        "    Error opening PrepVels configuration file.\nCan't open PrepVels.cfg in the current directory.\n\t "
        "Terminating.";
    return false;
  }
  mark_ = 0;
  in >> mark_;
  MainDirectory::set(directory);
  if (mark_ == 0) {
    repairDemoFiles(directory);
    mark_ = 1;
  }
  TextWriter out(kFileName);
  out << directory << '\n' << mark_ << '\n';
  static_cast<void>(out.commit());
  return true;
}

}  // namespace tarvex
