#pragma once

#include <string>

namespace tarvex {

// The directories in which the user last chose files, kept between runs in config.dat of MainDir. An empty text stands
// for none.
class RememberedDirectories {
 public:
  enum Kind { Prep, Vels, Model, ModelOutput };
  static constexpr int kCount = 4;

  // Remembers `directory` if it can be entered, and enters it where the session has asked for that. An empty text
  // forgets the old value. Returns false when the directory can't be entered or is none that a line of 1023 characters
  // holds: the old value stays.
  static bool set(Kind kind, const std::string& directory);
  static const std::string& get(Kind kind);
  // Whether set() also makes the directory the process's current one, so that relative paths follow the user from
  // chooser to chooser. For who owns the session; not so at first.
  static void enterWhenSet(bool enter);
  static bool entersWhenSet();
  // As in a fresh process, but for the current directory.
  static void forget();

  // config.dat: four lines, an empty one for none, and one more empty line. Reading passes each line that is there to
  // set(); a missing file changes nothing. Write errors go unnoticed.
  static void readConfig(const std::string& mainDirectory);
  static void writeConfig(const std::string& mainDirectory);
};

}  // namespace tarvex
