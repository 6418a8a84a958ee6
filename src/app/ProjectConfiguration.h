#pragma once

#include <cstdint>
#include <string>

#include "base/Progress.h"
#include "model/ModelConfiguration.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

class TextReader;

// What is said, before the reason, of a project file that can't be written.
inline constexpr const char* kProjectNotWritten =
    "Error trying to write to the Tarvex configuration file.\nIs it locked by another application?";

// Everything that the program knows about one study: what is sampled, what is run, what was computed from it. A part
// counts only while its flag is set. It is a value and touches no file but the one that it is told to; the remembered
// directories are the business of who owns the session.
class ProjectConfiguration {
 public:
  static constexpr const char* kNoFile = "NO FILE";  // the file name of a project that has none

  PrepConfiguration prep;
  ModelConfiguration model;
  VelsConfiguration vels;
  bool hasPrep = false;
  bool hasModel = false;
  bool hasVels = false;
  std::string fileName = kNoFile;

  // Sample and results belong together by the run of generation and model that made them. Whoever replaces one of them
  // through these operations parts them, until markResults() says that the results are those of the sample in hand.
  // What a file holds, and what was put into the fields as it was read, belongs together.
  void setPrep(PrepConfiguration part);
  void setModel(ModelConfiguration part);
  void setVels(VelsConfiguration part);
  void resetPrep();
  void resetModel();
  void resetVels();
  void resetAll();
  void dropResults();  // and the measures with them; the model's choice stays
  void markResults();
  bool resultsBelong() const { return sampleMark_ == resultMark_; }
  // Tells the sample in hand from every other one that was. markSample(): `prep` is about to get another in place.
  std::uint64_t sampleMark() const { return sampleMark_; }
  void markSample();

  // Takes the other's file name and the parts that it has; the others are reset.
  void assign(ProjectConfiguration other);

  // The project file (.psc). On failure or a stop the object stays as it was, but the remembered directories may have
  // become those of the records that were read.
  [[nodiscard]] bool load(const std::string& path, const Progress& progress = {});
  // On failure the old file stays as it was. The path becomes the file name either way; without one the project is
  // written under its file name, and not at all while it has none.
  [[nodiscard]] bool save(const std::string& path, const Progress& progress = {});
  [[nodiscard]] bool save(const Progress& progress = {});
  // The same to another file; the file name stays.
  [[nodiscard]] bool saveCopy(const std::string& path, const Progress& progress = {});
  // Why the last load() or save() failed.
  const std::string& errorText() const { return errorText_; }

 private:
  [[nodiscard]] bool read(TextReader& in);
  [[nodiscard]] bool write(const std::string& path, const Progress& progress);

  std::uint64_t sampleMark_ = 0;
  std::uint64_t resultMark_ = 0;
  std::string errorText_ = "No errors";
};

}  // namespace tarvex
