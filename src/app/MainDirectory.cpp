#include "app/MainDirectory.h"

namespace tarvex {

namespace {

std::string mainDirectory;

}  // namespace

const std::string& MainDirectory::get() {
  return mainDirectory;
}

void MainDirectory::set(const std::string& directory) {
  mainDirectory = directory;
}

std::vector<std::string> MainDirectory::panelDirectories() {
  return {mainDirectory + "/Preprocessor/PrepPanels", mainDirectory + "/Tarvex/TarvexPanels",
          mainDirectory + "/Postprocessor/VelsPanels"};
}

}  // namespace tarvex
