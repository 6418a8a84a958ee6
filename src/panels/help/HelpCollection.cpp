#include "panels/help/HelpCollection.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QSqlDatabase>

namespace tarvex {
namespace {

constexpr const char* kCollection = "/tarvex.qhc";
constexpr int kStampLength = 16;
constexpr int kDaysKept = 30;  // of a directory that an older program may still use

QByteArray contentOf(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Of version and content, and of the place, which a collection holds too.
QString stampedName(const QString& compiled) {
  const QByteArray all = compiled.toUtf8() + '\n' + contentOf(compiled);
  return "help-" + QCoreApplication::applicationVersion() + '-' +
         QCryptographicHash::hash(all, QCryptographicHash::Sha256).toHex().left(kStampLength);
}

// A cache of what was installed before is of no use any more.
void removeOld(const QString& cache, const QString& inUse) {
  const QDateTime oldest = QDateTime::currentDateTime().addDays(-kDaysKept);
  for (const QFileInfo& old : QDir(cache).entryInfoList({"help-*"}, QDir::Dirs))
    if (old.fileName() != inUse && old.lastModified() < oldest) QDir(old.filePath()).removeRecursively();
}

}  // namespace

HelpCollection::HelpCollection(const QString& directory, const QString& cache) : directory_(directory) {
  if (!open(cache)) engine_.reset();
}

bool HelpCollection::open(const QString& cache) {
  const QString compiled = directory_ + '/' + kCompiled;
  if (!QFile::exists(compiled))
    problem_ = compiled + " is missing.";
  else if (!QSqlDatabase::isDriverAvailable("QSQLITE"))
    problem_ = "Qt's SQLite plugin is missing (package libqt6sql6-sqlite).";
  else if (nameSpace_ = QHelpEngineCore::namespaceName(compiled); nameSpace_.isEmpty())
    problem_ = compiled + " is damaged.";
  if (!problem_.isEmpty()) return false;

  const QString name = stampedName(compiled);
  const QString kept = cache + '/' + name;
  if (QDir().mkpath(cache)) removeOld(cache, name);
  if (openIn(kept)) return true;
  // Made aside and moved, so that another program that starts now finds all of it or nothing.
  QTemporaryDir fresh(cache + "/new-XXXXXX");
  if (fresh.isValid() && makeIn(fresh.path())) {
    QDir(kept).removeRecursively();
    if (QDir().rename(fresh.path(), kept)) fresh.setAutoRemove(false);
    if (openIn(kept)) return true;
  }
  temporary_ = std::make_unique<QTemporaryDir>();
  if (temporary_->isValid() && makeIn(temporary_->path()) && openIn(temporary_->path())) return true;
  if (problem_.isEmpty()) problem_ = "Neither " + cache + " nor the temporary directory can be written.";
  return false;
}

bool HelpCollection::makeIn(const QString& directory) {
  QHelpEngineCore maker(directory + kCollection);
  maker.setReadOnly(false);
  if (maker.setupData() && maker.registerDocumentation(directory_ + '/' + kCompiled)) return true;
  problem_ = maker.error();
  return false;
}

bool HelpCollection::openIn(const QString& directory) {
  if (!QFile::exists(directory + kCollection)) return false;
  engine_ = std::make_unique<QHelpEngine>(directory + kCollection);
  engine_->setReadOnly(false);  // the index of words is made later
  engine_->setUsesFilterEngine(true);
  if (engine_->setupData() && engine_->registeredDocumentations().contains(nameSpace_)) {
    problem_.clear();
    return true;
  }
  engine_.reset();
  return false;
}

QUrl HelpCollection::page(const QString& topic) const {
  const QString file = topic.section('#', 0, 0) + ".html";
  const QString path = directory_ + '/' + file;
  QUrl url("qthelp://" + nameSpace_ + "/doc/" + file);
  if (engine_ == nullptr || engine_->fileData(url).isEmpty())
    url = QFile::exists(path) ? QUrl::fromLocalFile(path) : QUrl();
  if (url.isValid() && topic.contains('#')) url.setFragment(topic.section('#', 1));
  return url;
}

QByteArray HelpCollection::read(const QUrl& url) const {
  if (url.isLocalFile()) return contentOf(url.toLocalFile());
  const QByteArray compiled = engine_ != nullptr ? engine_->fileData(url) : QByteArray();
  return compiled.isEmpty() ? contentOf(directory_ + '/' + url.fileName()) : compiled;
}

}  // namespace tarvex
