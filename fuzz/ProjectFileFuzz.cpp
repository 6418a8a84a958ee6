// A project file (.psc): any of the three records, each behind its heading.

#include "FuzzInput.h"
#include "app/ProjectConfiguration.h"
#include "base/RememberedDirectories.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarvex;
  RememberedDirectories::forget();
  const fuzz::InputFile file(data, size);
  ProjectConfiguration project;
  if (!project.load(file.path()) && (project.hasPrep || project.hasModel || project.hasVels)) {
    fuzz::finding("a failed load left something", {});
  }
  return 0;
}
