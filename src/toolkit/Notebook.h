#pragma once

#include <QString>
#include <QTabWidget>

namespace tarvex {

class Display;

// A notebook whose pages have files of their own.
class Notebook : public QTabWidget {
  Q_OBJECT

 public:
  explicit Notebook(QWidget* parent = nullptr) : QTabWidget(parent) {}

  // Adds the page that the file <file>.ui describes. Its gadgets are found through the panel like all others, and have
  // their callbacks and pictures if the page is added before the panel registers its callbacks. False,
  // with the reason, when there is no such page.
  bool addPage(const Display& display, const QString& file, const QString& label, QString& problem);
};

}  // namespace tarvex
