#include "panels/main/ProjectGuard.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QFileInfo>
#include <algorithm>
#include <utility>

#include "app/RunController.h"
#include "toolkit/Application.h"
#include "toolkit/Dialogs.h"

namespace tarvex {
namespace {

using namespace std::chrono_literals;

// A copy is made when the user pauses, and all the same while he doesn't: it is never a minute old.
constexpr auto kPause = 2000ms;
constexpr auto kLatest = 30000ms;
// Nothing else is served while a copy is written: one that takes long waits for a pause that is this many times longer.
constexpr int kPausePerCopy = 20;

QString nameOf(const RunController& controller) {
  const std::string& name = controller.project().fileName;
  return name == ProjectConfiguration::kNoFile ? QString() : QString::fromStdString(name);
}

}  // namespace

ProjectGuard::ProjectGuard(RunController& controller, QWidget* parent, std::function<void(const QString&)> tell,
                           std::function<void()> recovered)
    : controller_(controller),
      parent_(parent),
      tell_(std::move(tell)),
      recovered_(std::move(recovered)),
      copy_(QString::fromStdString(controller.mainDirectory())),
      pause_(kPause) {
  static_cast<void>(copy_.claim({}));  // where that can't be, the first copy that is due tells
  subscription_ = controller_.subscribe([this](Changes changes) { follow(changes); });
  timer_.setSingleShot(true);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { onTimer(); });
}

ProjectGuard::~ProjectGuard() = default;

bool ProjectGuard::mayOpen(const QString& project) {
  opening_ = QFileInfo(project).absoluteFilePath();
  const QString holder = opening_ == name_ ? QString() : SafeCopy::holder(project);
  return holder.isEmpty() ||
         Dialogs::current().question("Warning",
                                     project + "\nis open in another Tarvex: " + holder +
                                         ".\nOf what both save, only what is saved last remains. Open it?",
                                     "^Yes", "^No", parent_);
}

void ProjectGuard::follow(Changes changes) {
  for (const Change change : {Change::Prep, Change::Model, Change::Results, Change::Measures})
    dirty_ = dirty_ || changes.contains(change);
  if (controller_.busy()) return;
  if (nameOf(controller_) != name_) followName();
  if (controller_.modified()) unsaved_ = false;
  if (!controller_.modified() && !saving_ && !unsaved_ && copy_.exists()) copy_.remove();
  plan();
}

void ProjectGuard::beginSave() {
  saving_ = controller_.modified();
}

void ProjectGuard::endSave(bool saved) {
  if (!std::exchange(saving_, false) || controller_.modified()) return;
  unsaved_ = !saved;
  if (saved) return copy_.remove();
  std::string problem;  // has been told: the disk is that of the save
  if (dirty_ && copy_.isHeld()) dirty_ = !controller_.saveCopy(copy_.path().toStdString(), problem);
}

void ProjectGuard::plan() {
  if (!dirty_ || !controller_.modified()) return timer_.stop();
  if (!timer_.isActive()) since_.start();
  timer_.start(std::clamp(kLatest - Milliseconds(since_.elapsed()), 0ms, pause_));
}

void ProjectGuard::onTimer() {
  saveNow();
  if (!dirty_ || !controller_.modified()) return;
  since_.start();  // in work, or no copy could be made
  timer_.start(kLatest);
}

void ProjectGuard::followName() {
  name_ = nameOf(controller_);
  if (!saving_) {
    copy_.remove();
    unsaved_ = false;
  }
  dirty_ = true;
  told_ = false;
  const QString holder = name_.isEmpty() ? QString() : SafeCopy::holder(name_);
  if (!copy_.claim(name_)) static_cast<void>(copy_.claim({}));  // as at the start
  if (std::exchange(opening_, {}) == name_) return offerRecovery();
  if (!holder.isEmpty())
    Dialogs::current().message(DialogKind::Warning, "Warning",
                               name_ + "\nis also open in another Tarvex: " + holder + '.', parent_);
  // Saved over a project of which a copy was left: another's changes, which aren't those in hand.
  if (copy_.exists()) static_cast<void>(copy_.putAside());
}

void ProjectGuard::offerRecovery() {
  if (!copy_.exists()) return;
  const QString what = name_.isEmpty() ? "a project without a name" : name_;
  const QString time = QFileInfo(copy_.path()).lastModified().toString("yyyy-MM-dd hh:mm");
  const bool recover =
      Dialogs::current().question("Tarvex",
                                  "Tarvex ended before the last changes were saved to\n" + what + ".\nA copy of " +
                                      time + " has them. Recover them? Otherwise the copy is kept under another name.",
                                  "^Yes", "^No", parent_);
  const std::string fileName = name_.isEmpty() ? ProjectConfiguration::kNoFile : name_.toStdString();
  // While the copy is loaded it counts as nobody's, so that the guard doesn't take it for one that has served.
  const ChangeNotifier::Subscription pause = std::exchange(subscription_, nullptr);
  const bool recovered = recover && controller_.recoverProject(copy_.path().toStdString(), fileName) == Outcome::Done;
  subscription_ = pause;
  dirty_ = false;
  if (recovered) return recovered_();
  if (const QString aside = copy_.putAside(); !aside.isEmpty()) tell_("The copy is kept as " + aside);
}

// The user goes on meanwhile, with all that leaves the project as it is.
void ProjectGuard::saveNow() {
  constexpr int kSlice = 20;  // milliseconds between two looks at the user's events
  QElapsedTimer served;
  served.start();
  save(Progress([&served](double) {
    if (served.elapsed() < kSlice) return true;
    Application::drainEvents();
    served.start();
    return true;
  }));
}

void ProjectGuard::save(const Progress& progress) {
  if (!dirty_ || !controller_.modified() || controller_.busy()) return;
  QElapsedTimer time;
  time.start();
  std::string problem = "no lock can be made beside the project or in the main directory";
  if (copy_.isHeld() && controller_.saveCopy(copy_.path().toStdString(), problem, progress)) {
    dirty_ = told_ = false;
    pause_ = std::clamp(kPausePerCopy * Milliseconds(time.elapsed()), kPause, kLatest);
    return;
  }
  if (!std::exchange(told_, true))
    tell_("No copy of unsaved changes can be kept: " + QString::fromStdString(problem).section('\n', -1));
}

void ProjectGuard::leave(bool keepCopy) {
  if (std::exchange(left_, true)) return;  // also from within its own last copy, which is told as work is
  timer_.stop();
  subscription_.reset();
  if (keepCopy)
    save({});
  else if (!unsaved_)
    copy_.remove();
  copy_.release();
}

}  // namespace tarvex
