#pragma once

#include <QApplication>
#include <memory>

#include "toolkit/Display.h"

namespace tarvex {

// The program as the desktop sees it. Made once, before any panel. Numbers on panels are written as in files whatever
// the user's locale is. Without a display the process ends at once with the status 255 and a line that says so.
class Application {
 public:
  // `argc` and `argv` must outlive the object, which takes the toolkit's own words out of them.
  Application(int& argc, char** argv, const QString& name, const QString& version);
  ~Application();
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  Display& display() { return display_; }
  // The event loop; returns the status given to exit().
  int run();
  static void exit(int status);
  // Serves what the user did meanwhile, and returns.
  static void drainEvents();

 private:
  std::unique_ptr<QApplication> application_;
  Display display_;
};

}  // namespace tarvex
