#include "app/MainDirectory.h"

namespace tarvex {

namespace {

std::string current;

}  // namespace

const std::string& MainDirectory::get() {
  return current;
}

void MainDirectory::set(const std::string& directory) {
  current = directory;
}

std::vector<std::string> MainDirectory::panelDirectories() {
  return {current + "/Preprocessor/PrepPanels", current + "/Tarvex/TarvexPanels",
          current + "/Postprocessor/VelsPanels"};
}

}  // namespace tarvex
