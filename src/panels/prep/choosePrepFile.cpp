#include "panels/prep/choosePrepFile.h"

#include "base/RememberedDirectories.h"

namespace tarvex {

std::optional<ChosenFile> choosePrepFile(const char* title, FileChoice::Purpose purpose,
                                         std::vector<FileFilter> filters, const char* suffix, QWidget* parent) {
  filters.push_back({"*.*", "all files"});
  const QString directory = QString::fromStdString(RememberedDirectories::get(RememberedDirectories::Prep));
  std::optional<ChosenFile> chosen =
      Dialogs::current().chooseFile({title, std::move(filters), directory, purpose, suffix}, parent);
  // One that can't be entered leaves the old one.
  if (chosen)
    static_cast<void>(RememberedDirectories::set(RememberedDirectories::Prep, chosen->directory.toStdString()));
  return chosen;
}

}  // namespace tarvex
