#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <chrono>
#include <functional>

#include "app/Changes.h"
#include "base/Progress.h"
#include "panels/main/SafeCopy.h"

class QWidget;

namespace tarvex {

class RunController;

// Sees to it that nothing is lost: while the project has changes that aren't saved, a copy of it at most a minute old
// is on the disk, and what a program left that died is offered. It also tells when two programs work on one project.
class ProjectGuard {
 public:
  // `tell` shows a line that stops nobody's work; `recovered` shows the project that was recovered. Unnamed projects
  // have their copies in the controller's main directory.
  ProjectGuard(RunController& controller, QWidget* parent, std::function<void(const QString&)> tell,
               std::function<void()> recovered);
  ~ProjectGuard();
  ProjectGuard(const ProjectGuard&) = delete;
  ProjectGuard& operator=(const ProjectGuard&) = delete;

  // Before a project is loaded: false when another program has it and the user leaves it to that one.
  bool mayOpen(const QString& project);
  // What was left of the project in hand by a program that died: recovered or put aside, as the user says.
  void offerRecovery();
  // The copy is written if there is something to keep that it doesn't have yet. Not while the project is in work.
  void saveNow();
  // Around a save: one that failed leaves the project without the mark of unsaved changes, and so the copy stays, also
  // after the end, until a save succeeds or another change is kept.
  void beginSave();
  void endSave(bool saved);
  // The program ends: no copy remains, since the user has saved or given up; or it does.
  void leave(bool keepCopy);

 private:
  using Milliseconds = std::chrono::milliseconds;

  void save(const Progress& progress);
  void follow(Changes changes);
  void followName();
  void plan();
  void onTimer();

  RunController& controller_;
  QWidget* parent_;
  std::function<void(const QString&)> tell_;
  std::function<void()> recovered_;
  SafeCopy copy_;
  QString name_;        // of the project that is guarded; empty for one without
  bool dirty_ = false;  // the copy is older than the project
  Milliseconds pause_;  // without a change, after which a copy is made
  bool told_ = false;   // the user, that no copy can be written
  bool saving_ = false;
  bool unsaved_ = false;  // the last save failed, and nothing has changed since
  bool left_ = false;
  QString opening_;  // the project that is being opened, with what was left of it
  ChangeNotifier::Subscription subscription_;
  QElapsedTimer since_;  // the first change that the copy doesn't have
  QTimer timer_;
};

}  // namespace tarvex
