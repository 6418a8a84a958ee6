#pragma once

#include <string>

#include "model/ModelConfiguration.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

// Everything that the program knows about one study: what is sampled, what is run, what was computed from it. A part
// counts only while its flag is set.
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

  void setPrep(PrepConfiguration part);
  void setModel(ModelConfiguration part);
  void setVels(VelsConfiguration part);
  void resetPrep();
  void resetModel();
  void resetVels();
  void resetAll();
};

}  // namespace tarvex
