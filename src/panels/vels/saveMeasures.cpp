#include "panels/vels/saveMeasures.h"

#include "base/RememberedDirectories.h"
#include "base/TextWriter.h"
#include "toolkit/Dialogs.h"

namespace tarvex {

void saveMeasures(QWidget* parent, const std::function<void(TextWriter&)>& write) {
  const QString directory = QString::fromStdString(RememberedDirectories::get(RememberedDirectories::Prep));
  const auto chosen =
      Dialogs::current().chooseFile({"Save table", {{"*", "all files"}}, directory, FileChoice::Purpose::Save}, parent);
  if (!chosen) return;
  TextWriter out(chosen->path.toStdString());
  write(out);
  if (!out.commit())
    Dialogs::current().message(DialogKind::Error, "Error",
                               "I cannot save the file\n" + QString::fromStdString(out.problem()), parent);
}

}  // namespace tarvex
