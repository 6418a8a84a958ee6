#include "toolkit/PanelFile.h"

#include <QFile>
#include <QUiLoader>
#include <QWidget>

#include "toolkit/ChartView.h"
#include "toolkit/Display.h"
#include "toolkit/HelpBrowser.h"
#include "toolkit/Notebook.h"
#include "toolkit/SquareField.h"
#include "toolkit/TableView.h"
#include "toolkit/Tree.h"

namespace tarvex {
namespace {

// The loader puts the base class in the place of a class that it doesn't know and says so on the console alone.
class PanelLoader : public QUiLoader {
 public:
  QWidget* createWidget(const QString& className, QWidget* parent, const QString& name) override {
    QWidget* const widget = makeOwn(className, parent);
    if (widget == nullptr) {
      if (!availableWidgets().contains(className)) unknown = className;
      return QUiLoader::createWidget(className, parent, name);
    }
    widget->setObjectName(name);
    return widget;
  }

  QString unknown;

 private:
  static QWidget* makeOwn(const QString& className, QWidget* parent) {
    if (className == "TableView") return new TableView(parent);
    if (className == "HelpBrowser") return new HelpBrowser(parent);
    if (className == "Notebook") return new Notebook(parent);
    if (className == "ChartView") return new ChartView(parent);
    if (className == "SquareField") return new SquareField(parent);
    if (className == "Tree") return new Tree(parent);
    return nullptr;
  }
};

// One for the process: its first use reads all plugins.
PanelLoader& loader() {
  static PanelLoader instance;
  return instance;
}

}  // namespace

QWidget* loadPanelFile(const Display& display, const QString& name, QWidget* parent, QString& problem) {
  const QString path = display.find(name + ".ui");
  if (path.isEmpty()) {
    problem = "There is no file " + name + ".ui in " + display.searchPath().join(", ") + '.';
    return nullptr;
  }
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    problem = path + ": " + file.errorString();
    return nullptr;
  }
  loader().unknown.clear();
  QWidget* const window = loader().load(&file, parent);
  if (window != nullptr && loader().unknown.isEmpty()) return window;
  problem = path + ": " +
            (loader().unknown.isEmpty() ? "the file is damaged" : "the class " + loader().unknown + " isn't known");
  delete window;
  return nullptr;
}

}  // namespace tarvex
