#include "toolkit/chartExport.h"

#include <QApplication>
#include <QClipboard>
#include <QFileInfo>
#include <QImage>
#include <QMimeData>
#include <QString>
#include <string>

#include "base/TextWriter.h"
#include "plots/Figure.h"
#include "plots/savePicture.h"
#include "toolkit/Dialogs.h"
#include "toolkit/chartText.h"

namespace tarvex {
namespace {

constexpr std::int64_t kMostCopiedFields = 1'000'000;  // beyond, a clipboard takes seconds and hundreds of megabytes
constexpr double kCopiedZoom = 2.0;                    // pixels a unit on the clipboard

bool failed(const QString& problem, QWidget* parent) {
  Dialogs::current().message(DialogKind::Error, "Error", "I cannot save the file\n" + problem, parent);
  return false;
}

bool saveTo(const QString& path, const Figure& figure, PictureFormat format, QWidget* parent) {
  std::string problem;
  return savePicture(path.toStdString(), figure, format, problem) || failed(QString::fromStdString(problem), parent);
}

}  // namespace

void copyFigure(const Figure& figure) {
  const std::string picture = renderPicture(figure, PictureFormat::Png, kCopiedZoom);
  const QImage image =
      QImage::fromData(reinterpret_cast<const uchar*>(picture.data()), static_cast<int>(picture.size()));
  if (!image.isNull()) QApplication::clipboard()->setImage(image);
}

bool exportPicture(const Figure& figure, QWidget* parent) {
  const FileChoice choice{"Save picture",
                          {{"*.svg", "Drawing"},
                           {"*.pdf", "Document"},
                           {"*.png", "Image"},
                           {"*.eps", "Encapsulated PostScript"},
                           {"*.ps", "PostScript"}},
                          {},
                          FileChoice::Purpose::Save,
                          "svg"};
  const auto chosen = Dialogs::current().chooseFile(choice, parent);
  if (!chosen) return false;
  const auto format = pictureFormatOf(chosen->path.toStdString());
  if (format) return saveTo(chosen->path, figure, *format, parent);
  return failed(chosen->path + ": a picture ends in .svg, .pdf, .png, .eps or .ps", parent);
}

bool dumpPostscript(const Figure& figure, QWidget* parent) {
  const FileChoice choice{
      "Postscript dump", {{"*.ps", "postscript's files"}, {"*", "all files"}}, {}, FileChoice::Purpose::Save, "ps"};
  const auto chosen = Dialogs::current().chooseFile(choice, parent);
  if (!chosen) return false;
  const auto format = pictureFormatOf(chosen->path.toStdString());
  return saveTo(chosen->path, figure, format.value_or(PictureFormat::Ps), parent);
}

void copyData(const Figure& figure, QWidget* parent) {
  const std::int64_t fields = figureDataFields(figure);
  if (fields <= kMostCopiedFields) return QApplication::clipboard()->setText(figureData(figure, '\t'));
  const QString question = groupedNumber(fields) + " values are too many to be copied. Save them to a file?";
  if (Dialogs::current().question("Copy data", question, "&Save to file", "Cancel", parent)) exportData(figure, parent);
}

bool exportData(const Figure& figure, QWidget* parent) {
  const FileChoice choice{"Save data",
                          {{"*.csv", "Table, comma separated"}, {"*.txt", "Table, tab separated"}},
                          {},
                          FileChoice::Purpose::Save,
                          "csv"};
  const auto chosen = Dialogs::current().chooseFile(choice, parent);
  if (!chosen) return false;
  const bool tabs = QFileInfo(chosen->path).suffix().toLower() == "txt";
  TextWriter out(chosen->path.toStdString());
  out << figureData(figure, tabs ? '\t' : ',').toStdString();
  return out.commit() || failed(QString::fromStdString(out.problem()), parent);
}

}  // namespace tarvex
