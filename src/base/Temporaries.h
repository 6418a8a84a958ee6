#pragma once

#include <sys/types.h>

#include <string>

namespace tarvex {

// What this process has on disk under passing names, ".tarvex-PID-...": files that are being written beside their
// targets, directories of helpers. Whoever ends the process in the middle of an operation takes them away; what a
// killed process left behind goes when the next one makes something in the same directory. May be called from any
// thread.
class Temporaries {
 public:
  // Makes a new file in `directory` (empty: the current one) for writing, and sets its path. The descriptor, or -1 with
  // errno.
  static int createFile(const std::string& directory, mode_t mode, std::string& path);
  // Makes a new directory in `directory`. Its path, or an empty text with errno.
  static std::string createDirectory(const std::string& directory);
  // A file that a helper of this process makes, and may leave when it is killed.
  static void add(const std::string& path);
  // It is gone, or in its place under another name.
  static void forget(const std::string& path);

  // Whether the operation in progress shall leave nothing: then no writer puts its file in place any more. May be set
  // in a signal handler.
  static void cancel(bool cancelled);
  static bool cancelled();

  // Deletes them all, directories with what they hold. Whoever calls one of the operations above from then on, waits
  // for ever: nothing new appears.
  // Requires: the caller ends the process.
  static void deleteAllForEnd();
};

}  // namespace tarvex
