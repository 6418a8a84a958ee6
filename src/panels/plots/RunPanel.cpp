#include "panels/plots/RunPanel.h"

#include <QKeySequence>
#include <QLabel>

#include "app/RunController.h"
#include "panels/prep/choosePrepFile.h"
#include "panels/vels/ResultDesk.h"
#include "sampling/SampleSelection.h"
#include "toolkit/Dialogs.h"
#include "toolkit/allow.h"
#include "toolkit/chartText.h"

namespace tarvex {

RunPanel::RunPanel(ResultDesk& desk, std::shared_ptr<Selection> selection, const QString& file, const QString& name,
                   const QString& title)
    : Panel(desk.display(), file, name, title, desk.parent()), desk_(desk), selection_(std::move(selection)) {}

bool RunPanel::isPast() const {
  return !desk_.isPresent(*selection_);
}

void RunPanel::start(std::vector<PanelCallback> callbacks) {
  for (PanelCallback& callback : std::vector<PanelCallback>{{"complement", [this] { selection_->complement(); }},
                                                            {"allRuns", [this] { selection_->clear(); }},
                                                            {"saveRuns", [this] { saveRuns(); }},
                                                            {"save", [this] { saveSample(); }}})
    callbacks.push_back(std::move(callback));
  registerCallbacks(std::move(callbacks));
  bindKey(QKeySequence(Qt::Key_Escape), [this] { hide(); });
  bindKey(QKeySequence::Save, [this] { saveSample(); });
  if (implements("saveImg")) bindKey(QKeySequence(Qt::CTRL | Qt::Key_E), [this] { call("saveImg"); });
  selectionSubscription_ = selection_->subscribe([this] { follow(); });
  subscription_ = desk_.controller().subscribe([this](Changes) { follow(); });
  follow();
}

void RunPanel::follow() {
  const std::int32_t runs = table().runs;
  const std::int32_t kept = selection_->keptCount();
  gadget<QLabel>("MlKept")->setText(groupedNumber(kept) + " of " + groupedNumber(runs) +
                                    (runs == 1 ? " run" : " runs"));
  const QString all = kept == runs ? "All runs are kept." : QString();
  allow(*gadget<QWidget>("BAllRuns"), all);
  allow(*gadget<QWidget>("BComplement"), runs == 0 ? "There are no runs." : QString());
  // A sample is saved of the sample in hand alone.
  const bool otherSample = selection_->sample() != desk_.controller().project().sampleMark();
  allow(*gadget<QWidget>("BSave"),
        otherSample ? "These runs are of an earlier sample: they can be saved as a table only." : QString());
  say({});
  showSelection();
}

void RunPanel::say(const QString& text) {
  const QString past = isPast() ? "Sample or results have changed since: these are the earlier ones." : QString();
  gadget<QLabel>("MlMessage")->setText(text.isEmpty() ? past : text);
}

void RunPanel::saveSample() {
  const auto chosen =
      choosePrepFile("Save selected samples", FileChoice::Purpose::Save, {{"*.sam", "sample files"}}, "sam", window());
  if (!chosen || desk_.controller().saveSelectedSample(*selection_, chosen->path.toStdString()) != Outcome::Done)
    return;
  Dialogs::current().message(DialogKind::Information, "Save selected samples",
                             QString::fromStdString(savedRunsText(table().runs, selection_->keptCount())), window());
}

void RunPanel::saveRuns() {
  const auto chosen = choosePrepFile("Save selected runs", FileChoice::Purpose::Save,
                                     {{"*.csv", "comma-separated values"}}, "csv", window());
  // What fails has been said.
  if (chosen) static_cast<void>(desk_.controller().saveSelectedTable(*selection_, chosen->path.toStdString()));
}

}  // namespace tarvex
