#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <iostream>

#include "sheet/Commands.h"

// tarvex-sheet DIRECTORY: requests come in on standard input and are answered on standard output; see README.md.
// Everything that it leaves on disk lies in the directory, which is gone at its end.
int main(int argc, char** argv) {
  if (argc != 2 || argv[1][0] != '/') {
    std::cerr << "usage: tarvex-sheet DIRECTORY, an absolute path; requests on standard input\n";
    return 2;
  }
  ::setpgid(0, 0);
  ::prctl(PR_SET_CHILD_SUBREAPER, 1);
  std::signal(SIGPIPE, SIG_IGN);
  std::ios::sync_with_stdio(false);
  tarvex::office::Office office(argv[1]);
  {
    tarvex::office::Commands commands(office, std::cin, std::cout);
    office.end(commands.serve());
  }
  // Threads of the connection may still run.
  ::_exit(0);
}
