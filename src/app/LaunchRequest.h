#pragma once

#include <string>
#include <vector>

namespace tarvex {

class RunController;

// What another program asks Tarvex to open at its start, in the optional file Tarvex.ini of the main directory: a line
// for each request, a label and its value. Other lines are passed over, and so is a label without a value.
class LaunchRequest {
 public:
  enum class FileKind { SavedSample, ExternalSample, Results };
  struct File {
    FileKind kind;
    std::string path;
  };

  // Reads the file; a request for nothing when there is none. A line of more than 1023 characters ends it.
  static LaunchRequest read(const std::string& mainDirectory);

  // The files to open one after the other, before the model.
  const std::vector<File>& files() const { return files_; }

  // Puts the model into the project, an internal one rather than an external one; an internal model that can't be read
  // is passed over in silence. True when the project has a model afterwards.
  [[nodiscard]] bool applyModel(RunController& controller) const;

 private:
  void takeLine(const std::string& line);

  std::vector<File> files_;
  std::string internalModel_;
  std::string executable_;
  std::string outputFile_;
};

}  // namespace tarvex
