#include <unistd.h>

#include <iostream>

#include "batch/Commands.h"
#include "batch/ConsoleFrontEnd.h"

int main(int argc, char** argv) {
  tarvex::ConsoleFrontEnd::installStopSignals();
  const std::vector<std::string> words(argv + 1, argv + argc);
  const int status = tarvex::runBatch(words, std::cout, std::cerr, isatty(STDERR_FILENO) != 0);
  std::cout.flush();
  return std::cout ? status : tarvex::kFailed;
}
