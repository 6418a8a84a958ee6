#pragma once

#include <memory>
#include <string>
#include <vector>

#include "toolkit/Application.h"

namespace tarvex {

class PHelpViewer;
class PMainPanel;
class SignalWatch;

// The desktop program from its start to its end.
class TarvexApplication {
 public:
  TarvexApplication(int& argc, char** argv);
  ~TarvexApplication();

  // Reads the start-up file, shows the main panel, opens `files` and serves the user until the end. Returns the status
  // of the process.
  int run(const std::vector<std::string>& files);

 private:
  void buildPanels();
  void showHelp(HelpCommand command, const QString& topic);

  Application application_;
  std::unique_ptr<PHelpViewer> help_;
  std::unique_ptr<PMainPanel> panel_;
  std::unique_ptr<SignalWatch> signals_;
};

}  // namespace tarvex
