#include "panels/main/SafeCopy.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace tarvex {
namespace {

constexpr int kMostUnnamed = 20;  // programs at work at a time
constexpr const char* kCopySuffix = ".autosave";
constexpr const char* kLockSuffix = ".lock";

QString stemOf(const QString& project) {
  const QFileInfo file(project);
  return QDir(file.absolutePath()).filePath('.' + file.fileName());
}

// Never stale by its age: an analysis may stay open for weeks.
std::unique_ptr<QLockFile> lockAt(const QString& stem) {
  auto lock = std::make_unique<QLockFile>(stem + kLockSuffix);
  lock->setStaleLockTime(0);
  return lock;
}

}  // namespace

QString SafeCopy::copyOf(const QString& project) {
  return stemOf(project) + kCopySuffix;
}

bool SafeCopy::lockStem(const QString& stem) {
  std::unique_ptr<QLockFile> lock = lockAt(stem);
  if (!lock->tryLock(0)) return false;
  lock_ = std::move(lock);
  path_ = stem + kCopySuffix;
  return true;
}

bool SafeCopy::claim(const QString& project) {
  release();
  if (!project.isEmpty()) return lockStem(stemOf(project));
  for (int i = 1; i <= kMostUnnamed; ++i)
    if (lockStem(QDir(unnamed_).filePath(QString(".unnamed-%1").arg(i)))) return true;
  return false;
}

QString SafeCopy::holder(const QString& project) {
  const std::unique_ptr<QLockFile> lock = lockAt(stemOf(project));
  if (lock->tryLock(0) || lock->error() != QLockFile::LockFailedError) return {};
  qint64 process = 0;
  QString host;
  QString program;
  if (!lock->getLockInfo(&process, &host, &program)) return "another program";
  return QString("process %1 on %2").arg(process).arg(host);
}

bool SafeCopy::exists() const {
  return isHeld() && QFile::exists(path_);
}

void SafeCopy::remove() const {
  if (exists()) QFile::remove(path_);
}

QString SafeCopy::putAside() const {
  QString aside;
  for (int i = 1; aside.isEmpty() || QFile::exists(aside); ++i) aside = path_ + QString("-%1.psc").arg(i);
  return QFile::rename(path_, aside) ? aside : QString();
}

void SafeCopy::release() {
  lock_.reset();
  path_.clear();
}

}  // namespace tarvex
