#include "app/ProjectConfiguration.h"

#include <utility>

namespace tarvex {

void ProjectConfiguration::setPrep(PrepConfiguration part) {
  prep = std::move(part);
  hasPrep = true;
}

void ProjectConfiguration::setModel(ModelConfiguration part) {
  model = std::move(part);
  hasModel = true;
}

void ProjectConfiguration::setVels(VelsConfiguration part) {
  vels = std::move(part);
  hasVels = true;
}

void ProjectConfiguration::resetPrep() {
  prep = PrepConfiguration();
  hasPrep = false;
}

void ProjectConfiguration::resetModel() {
  model = ModelConfiguration();
  hasModel = false;
}

void ProjectConfiguration::resetVels() {
  vels = VelsConfiguration();
  hasVels = false;
}

void ProjectConfiguration::resetAll() {
  resetPrep();
  resetModel();
  resetVels();
}

}  // namespace tarvex
