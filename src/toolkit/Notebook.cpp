#include "toolkit/Notebook.h"

#include "toolkit/PanelFile.h"

namespace tarvex {

bool Notebook::addPage(const Display& display, const QString& file, const QString& label, QString& problem) {
  QWidget* const page = loadPanelFile(display, file, this, problem);
  if (page == nullptr) return false;
  page->setObjectName(file);
  addTab(page, label);
  return true;
}

}  // namespace tarvex
