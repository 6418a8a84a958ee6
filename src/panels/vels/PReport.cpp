#include "panels/vels/PReport.h"

#include <pwd.h>
#include <unistd.h>

#include <QFileInfo>
#include <QKeySequence>
#include <QLineEdit>

#include "app/RunController.h"
#include "app/saveReport.h"
#include "panels/vels/ResultDesk.h"
#include "panels/vels/chooseResultsFile.h"

namespace tarvex {
namespace {

// Who is at work, as the machine knows it.
QString userName() {
  const passwd* const account = getpwuid(getuid());
  if (account == nullptr) return {};
  const QString full = QString::fromLocal8Bit(account->pw_gecos).section(',', 0, 0);
  return full.isEmpty() ? QString::fromLocal8Bit(account->pw_name) : full;
}

// As the last report of the session had it.
QString& lastAuthor() {
  static QString author = userName();
  return author;
}

}  // namespace

PReport::PReport(ResultDesk& desk, const ReportWords& words, QWidget* parent)
    : Panel(desk.display(), "PReport", "Report", "Report of the study", parent), desk_(desk) {
  gadget<QLineEdit>("TTitle")->setText(QString::fromStdString(words.title));
  gadget<QLineEdit>("TAuthor")->setText(QString::fromStdString(words.author));
  gadget<QLineEdit>("TDate")->setText(QString::fromStdString(words.date));
  registerCallbacks({{"save", [this] { save(); }}, {"cancel", [this] { end(false); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
  gadget<QLineEdit>("TTitle")->setFocus();
}

ReportWords PReport::words() {
  const auto text = [this](const char* name) { return gadget<QLineEdit>(name)->text().trimmed().toStdString(); };
  return {text("TTitle"), text("TAuthor"), text("TDate")};
}

void PReport::save() {
  const auto chosen =
      chooseResultsFile("Save report", {{"*.html", "pages for a browser"}, {"*.pdf", "PDF files"}}, "html", window());
  if (!chosen) return;
  const ReportWords above = words();
  if (saveReport(desk_.controller(), chosen->path.toStdString(), above) != Outcome::Done) return;
  lastAuthor() = QString::fromStdString(above.author);
  written_ = chosen->path;
  end(true);
}

QString makeReport(ResultDesk& desk, QWidget* parent) {
  const std::string& file = desk.controller().project().fileName;
  const QString name = file == ProjectConfiguration::kNoFile
                           ? QString("Report")
                           : QFileInfo(QString::fromStdString(file)).completeBaseName();
  PReport panel(desk, {name.toStdString(), lastAuthor().toStdString(), today()}, parent);
  panel.centre();
  static_cast<void>(panel.runModal());  // where its file is missing, that has been said
  return panel.written().isEmpty() ? QString() : "Written: " + panel.written();
}

}  // namespace tarvex
