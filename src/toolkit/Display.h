#pragma once

#include <QHash>
#include <QIcon>
#include <QPixmap>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

class QSettings;

namespace tarvex {

// What a panel can ask of the help: the page of a topic, the table of contents, the search for words.
enum class HelpCommand { Topic, Contents, Search };

// Where panels find their files: a list of directories, searched in the order in which they were appended. A name is
// relative to each of them and may leave it ("../bitmaps/task1.bmp").
class Display {
 public:
  void appendToSearchPath(const QString& directory);
  const QStringList& searchPath() const { return directories_; }

  // The first file of that name on the path; empty when there is none.
  QString find(const QString& name) const;

  // A name that ends in .bmp or .gif is served by the .svg or .png of the same stem when there is one. Empty when no
  // directory has a picture of the name, and when the file is none.
  QString findBitmap(const QString& name) const;
  // Drawings are as sharp as the screen, with "currentColor" as the colour of texts; of other pictures that with "@2x"
  // behind its stem is preferred on screens of more than one pixel a point.
  QPixmap bitmap(const QString& name) const;
  // For buttons and labels: drawings in "currentColor" take the colour of the application's texts, so that one set
  // serves light and dark, and are weak where a gadget is insensitive.
  QIcon icon(const QString& name) const;

  // Who shows the help. A panel's topic is the name of its file unless it says otherwise; F1 asks for it. Without a
  // viewer nothing is shown.
  using Help = std::function<void(HelpCommand command, const QString& topic)>;
  void setHelp(Help help) { help_ = std::move(help); }
  void showHelp(HelpCommand command, const QString& topic = {}) const {
    if (help_) help_(command, topic);
  }

  // The file in which panels keep what makes them the user's own: their place and size, the files of late. Without one
  // nothing is kept.
  void keepIn(const QString& path);
  QSettings* kept() const { return kept_.get(); }

 private:
  QStringList directories_;
  mutable QHash<QString, QIcon> icons_;  // that have been drawn, by file and colours
  std::shared_ptr<QSettings> kept_;
  Help help_;
};

}  // namespace tarvex
