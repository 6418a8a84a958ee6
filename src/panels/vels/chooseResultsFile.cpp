#include "panels/vels/chooseResultsFile.h"

#include <utility>

#include "base/RememberedDirectories.h"

namespace tarvex {

std::optional<ChosenFile> chooseResultsFile(const char* title, std::vector<FileFilter> filters, const char* suffix,
                                            QWidget* parent) {
  constexpr auto kKind = RememberedDirectories::Vels;
  const QString directory = QString::fromStdString(RememberedDirectories::get(kKind));
  std::optional<ChosenFile> chosen =
      Dialogs::current().chooseFile({title, std::move(filters), directory, FileChoice::Purpose::Save, suffix}, parent);
  // One that can't be entered leaves the old one.
  if (chosen) static_cast<void>(RememberedDirectories::set(kKind, chosen->directory.toStdString()));
  return chosen;
}

}  // namespace tarvex
