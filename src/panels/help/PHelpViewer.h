#pragma once

#include <QStringList>
#include <QTimer>
#include <memory>

#include "toolkit/Display.h"
#include "toolkit/Panel.h"

class QUrl;

namespace tarvex {

class HelpBrowser;
class HelpCollection;

// The help in a window of its own, which stays open beside the others: pages with contents, index and search.
class PHelpViewer : public Panel {
 public:
  // The page that is shown first and where there is none on a topic.
  static constexpr const char* kStartPage = "PMainPanel";

  // Pages are found on the display's path; `cache` is where what is derived from them may lie (HelpCollection).
  PHelpViewer(const Display& display, const QString& cache);
  ~PHelpViewer() override;

  // Shows the window with what is asked for. Nothing is read before the first time.
  void serve(HelpCommand command, const QString& topic);

 private:
  void open();
  void openEngine();
  void showPage(const QUrl& url);
  void pageChanged();
  void turnTo(const char* page, const char* field);
  void openContents();
  void filterIndex();
  void openIndex();
  void openResult();
  void findText(const QString& text);
  void findAgain(bool backwards);
  void search();
  void showResults();
  void say(const QString& text);
  bool eventFilter(QObject* watched, QEvent* event) override;

  QString cache_;
  HelpBrowser* browser_;
  std::unique_ptr<HelpCollection> collection_;
  QTimer delay_;
  QStringList searched_;  // words of the search that is shown
};

}  // namespace tarvex
