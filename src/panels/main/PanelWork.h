#pragma once

#include <QObject>
#include <string>

#include "app/LongOperation.h"
#include "panels/main/PanelFrontEnd.h"

namespace tarvex {

// Work of a panel that may be long, as the reading of a large file. Events are served meanwhile, but nothing in the
// panel's window can be used: Esc and its close button stop the work. After a moment a display of the progress appears,
// with a button that stops it too.
class PanelWork : public QObject {
 public:
  PanelWork(const Display& display, const std::string& title, QWidget* window);
  ~PanelWork() override;

  // For what does the work; it may not outlive this object.
  const Progress& progress() const { return operation_.progress(); }
  bool stopped() const { return operation_.stopped(); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* window_;
  PanelFrontEnd frontEnd_;
  LongOperation operation_;
};

}  // namespace tarvex
