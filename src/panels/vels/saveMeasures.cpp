#include "panels/vels/saveMeasures.h"

#include "base/TextWriter.h"
#include "panels/prep/choosePrepFile.h"
#include "postproc/ResultExport.h"
#include "toolkit/Dialogs.h"

namespace tarvex {

QString saveMeasures(QWidget* parent, const std::function<void(TextWriter&)>& write) {
  const auto chosen = choosePrepFile("Save table", FileChoice::Purpose::Save, {}, "", parent);
  if (!chosen) return {};
  TextWriter out(chosen->path.toStdString());
  write(out);
  if (out.commit()) return "Written: " + chosen->path;
  Dialogs::current().message(DialogKind::Error, "Error", QString::fromStdString(withProblem(kCannotSave, out)), parent);
  return {};
}

}  // namespace tarvex
