#include "toolkit/HelpBrowser.h"

#include <QEvent>
#include <QFileInfo>
#include <QPixmap>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextCursor>
#include <algorithm>

namespace tarvex {
namespace {

constexpr double kPageMargin = 16.0;
constexpr double kSmallest = 6.0;  // letters, in points
constexpr double kLargest = 32.0;

}  // namespace

HelpBrowser::HelpBrowser(QWidget* parent) : QTextBrowser(parent), usualSize_(font().pointSizeF()) {
  setOpenExternalLinks(false);
  document()->setDocumentMargin(kPageMargin);
  setColours();
}

void HelpBrowser::setColours() {
  const QPalette colours = palette();
  const QString weak = colours.color(QPalette::AlternateBase).name();
  const QString line = colours.color(QPalette::Mid).name();
  document()->setDefaultStyleSheet(QString("a { color: %1; } th, pre { background-color: %2; }"
                                           "td, th { border-color: %3; }")
                                       .arg(colours.color(QPalette::Link).name(), weak, line));
}

void HelpBrowser::changeEvent(QEvent* event) {
  QTextBrowser::changeEvent(event);
  if (event->type() != QEvent::PaletteChange) return;
  setColours();
  if (source().isEmpty()) return;
  const int place = verticalScrollBar()->value();
  reload();
  verticalScrollBar()->setValue(place);
}

QVariant HelpBrowser::picture(const QUrl& name) const {
  constexpr double kTwofold = 2.0;
  QPixmap picture;
  if (devicePixelRatioF() > 1.0) {
    QUrl twofold = name;
    const QFileInfo file(name.path());
    twofold.setPath(file.path() + '/' + file.completeBaseName() + "@2x." + file.suffix());
    if (picture.loadFromData(read_(twofold))) {
      picture.setDevicePixelRatio(kTwofold);
      return picture;
    }
  }
  return picture.loadFromData(read_(name)) ? QVariant(picture) : QVariant();
}

QVariant HelpBrowser::loadResource(int type, const QUrl& name) {
  const QUrl whole = name.isRelative() ? source().resolved(name) : name;
  if (type == QTextDocument::ImageResource) return picture(whole);
  QByteArray read = read_(whole);
  if (type != QTextDocument::HtmlResource) return read;
  if (read.isEmpty()) read = "<h1>This page is missing</h1><p>" + whole.toString().toHtmlEscaped().toUtf8() + "</p>";
  return QString::fromUtf8(read);
}

bool HelpBrowser::findNext(const QString& text, QTextDocument::FindFlags direction) {
  if (text.isEmpty()) return true;
  if (find(text, direction)) return true;
  const QTextCursor before = textCursor();
  QTextCursor end = before;
  end.movePosition(direction.testFlag(QTextDocument::FindBackward) ? QTextCursor::End : QTextCursor::Start);
  setTextCursor(end);
  if (find(text, direction)) return true;
  setTextCursor(before);
  return false;
}

bool HelpBrowser::findHere(const QString& text) {
  QTextCursor cursor = textCursor();
  cursor.setPosition(cursor.selectionStart());
  setTextCursor(cursor);
  return findNext(text);
}

void HelpBrowser::markWords(const QStringList& words) {
  QList<ExtraSelection> marks;
  for (const QString& word : words) {
    const QRegularExpression start(
        "\\b" + QRegularExpression::escape(word),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    QTextCursor found(document());
    while (!(found = document()->find(start, found)).isNull()) {
      ExtraSelection mark;
      mark.cursor = found;
      mark.format.setFontUnderline(true);
      mark.format.setUnderlineColor(palette().color(QPalette::Link));
      mark.format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
      marks.append(mark);
    }
  }
  setExtraSelections(marks);
}

void HelpBrowser::zoom(int points) {
  QFont letters = font();
  letters.setPointSizeF(points == 0 ? usualSize_ : std::clamp(letters.pointSizeF() + points, kSmallest, kLargest));
  setFont(letters);
}

}  // namespace tarvex
