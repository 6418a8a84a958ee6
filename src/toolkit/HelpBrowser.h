#pragma once

#include <QByteArray>
#include <QStringList>
#include <QTextBrowser>
#include <QUrl>
#include <functional>

namespace tarvex {

// Shows pages of the help, with the way back and forward of a browser. Texts have the colours of the panels, light or
// dark; a page's own style sheet sets sizes and distances alone.
class HelpBrowser : public QTextBrowser {
  Q_OBJECT

 public:
  explicit HelpBrowser(QWidget* parent = nullptr);

  // Where pages, pictures and style sheets come from. Nothing read: there is none, which a page says in words.
  void setReader(std::function<QByteArray(const QUrl&)> read) { read_ = std::move(read); }

  // Selects the next place of the text, whatever its case, and goes round at the end. False when there is none.
  bool findNext(const QString& text, QTextDocument::FindFlags direction = {});
  // The first place at or behind where the selection begins: for a text that is being typed.
  bool findHere(const QString& text);
  // Marks every word that begins with one of these.
  void markWords(const QStringList& words);
  // Letters larger (above 0) or smaller by so many points, within what can be read; 0: as at the start.
  void zoom(int points);

 protected:
  QVariant loadResource(int type, const QUrl& name) override;
  void changeEvent(QEvent* event) override;

 private:
  void setColours();
  QVariant picture(const QUrl& name) const;

  std::function<QByteArray(const QUrl&)> read_ = [](const QUrl&) { return QByteArray(); };
  double usualSize_;  // of letters, in points
};

}  // namespace tarvex
