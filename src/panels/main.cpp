#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "panels/main/TarvexApplication.h"
#include "plots/libraryFailures.h"
#include "report/versions.h"
#include "toolkit/Application.h"
#include "toolkit/Dialogs.h"
#include "toolkit/print.h"

namespace {

constexpr const char* kHelp =
    "Usage: tarvex [FILE...]\n"
    "\n"
    "The desktop environment for uncertainty and sensitivity analysis. Opens each FILE: a project (.psc), a sample\n"
    "(.sam), results (.spc), factors (.fac), a model of equations (.imd), or a sample of another program. It starts in "
    "a directory "
    "with a file Tarvex.cfg.\n"
    "\n"
    "  --help      this text\n"
    "  --version   the version\n"
    "\n"
    "tarvex-batch does the same work from a shell.\n";

// What the launcher has to say: on standard error, and to a user who has no terminal.
int tellFailure(int argc, char** argv, const char* text) {
  tarvex::print(text);
  const tarvex::Application application(argc, argv, "Tarvex", "");
  tarvex::Dialogs::current().message(tarvex::DialogKind::Error, "Error", text, nullptr);
  return 1;
}

}  // namespace

// Both words are answered before a display is asked for.
int main(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--help") == 0) return std::fputs(kHelp, stdout) < 0 ? 1 : 0;
    if (std::strcmp(argv[i], "--version") == 0)
      return std::printf("tarvex %s\n", tarvex::programVersion().c_str()) < 0 ? 1 : 0;
  }
  if (argc > 2 && std::strcmp(argv[1], "--failed") == 0) return tellFailure(argc, argv, argv[2]);
  tarvex::endOnLibraryFailure("tarvex");
  tarvex::TarvexApplication application(argc, argv);
  return application.run(std::vector<std::string>(argv + 1, argv + argc));
}
