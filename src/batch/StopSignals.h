#pragma once

namespace tarvex {

// Ctrl-C, a termination request and the loss of the terminal ask the command in progress to stop. One that hasn't come
// to its own end after a second and a half is ended: its children are killed, its unfinished files deleted, the status
// is 130. A second request ends it at once. No file that isn't in its place yet at the request comes there.
class StopSignals {
 public:
  // For the whole process, once, before anything else runs. Full disks by quota and readers that went away become
  // failed writes instead of signals.
  static void install();
  static bool requested();
  // For tests: as if the user had pressed Ctrl-C, or not.
  static void request(bool stop);
};

}  // namespace tarvex
