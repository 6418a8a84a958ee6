#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>
#include <map>
#include <utility>
#include <vector>

class QEventLoop;
class QKeySequence;
class QWidget;

namespace tarvex {

class Display;

// A callback that a panel implements: the name by which its file knows it, and what it does.
struct PanelCallback {
  const char* name;
  std::function<void()> run;
};

// A window that is described by a file. The file <name>.ui on the display's search path says which gadgets the panel
// has, each under its name; a gadget with the dynamic property "callback" calls the callback of that name, and one with
// "doubleCallback" does so when a row of it is double-clicked; "dragCallbacks" are three, apart by blanks, for the
// start, the course and the end of a drag from a tree; the property "bitmap" names its picture. A panel
// registers what it implements in one table; a callback that it doesn't implement prints a line that says so.
//
// A file or a gadget that is missing is no crash: the panel's code then works on a stand-in, and where the panel would
// be shown stands a message that names what is missing.
class Panel : public QObject {
 public:
  // `parent` is the window that it belongs to; may be null. `name` names the panel in messages and is kept as the
  // window's object name.
  Panel(const Display& display, const QString& file, const QString& name, const QString& title,
        QWidget* parent = nullptr);
  ~Panel() override;

  const QString& name() const { return name_; }
  QWidget* window() const { return window_; }
  const Display& display() const { return display_; }
  void setTitle(const QString& title);

  // The gadget of that name and type; never null, see above. Valid as long as the panel.
  template <class Gadget>
  Gadget* gadget(const char* gadgetName) {
    QObject* const found = findGadget(gadgetName);
    Gadget* const typed = qobject_cast<Gadget*>(found);
    return typed != nullptr ? typed : standIn<Gadget>(gadgetName, found != nullptr);
  }

  // Calls a callback as a click on its gadget would.
  void call(const QString& callbackName);
  bool implements(const QString& callbackName) const { return callbacks_.count(callbackName) > 0; }

  // False, after a message, when file or gadgets are missing.
  bool show();
  void hide();
  // The topic that F1 asks for: the panel's own page. A panel whose page depends on its state says so.
  virtual QString helpTopic() const { return file_; }
  // In the middle of its parent or the screen; a panel that has a place of its own stays there.
  void centre();
  bool hasPlace() const { return placed_; }
  bool isVisible() const;
  // Shows the panel and waits until it ends itself; false for one that could not be shown. Meanwhile its parent and
  // all that belongs to that can't be used; a window without a parent, such as the help, can.
  bool runModal();
  // What the accepting callback set before it ended the panel.
  bool accepted() const { return accepted_; }

  // What is missing, each named; empty when all is there.
  QStringList problems() const { return problems_; }

 protected:
  // The panel's table of callbacks; called once, in the constructor, after the gadgets were fetched.
  void registerCallbacks(std::vector<PanelCallback> table);
  void bindKey(const QKeySequence& key, std::function<void()> run);
  // One more problem, as of a page of a notebook that can't be loaded.
  void missing(const QString& what);
  // Ends a modal panel and hides it.
  void end(bool accept);
  // The user closes the window: false keeps it open. Without a say of the panel's own it ends without acceptance.
  virtual bool closing();

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QObject* findGadget(const char* gadgetName) const;
  void restorePlace();
  void keepPlace() const;
  void connectGadgets();
  void enter();
  void bindHelp();
  void showBitmaps();
  template <class Gadget>
  Gadget* standIn(const char* gadgetName, bool otherType) {
    missing(QString(otherType ? "gadget %1 is of another kind than %2" : "gadget %1 (%2) is missing")
                .arg(gadgetName, Gadget::staticMetaObject.className()));
    return new Gadget(hiddenParent());
  }
  QWidget* hiddenParent();

  const Display& display_;
  QString file_;
  QString name_;
  QWidget* window_ = nullptr;
  QWidget* hidden_ = nullptr;  // parent of stand-ins
  QEventLoop* loop_ = nullptr;
  bool accepted_ = false;
  bool placed_ = false;  // where the user last had it, which no centring changes
  QStringList problems_;
  std::map<QString, std::function<void()>> callbacks_;
};

}  // namespace tarvex
