#pragma once

#include <QHelpEngine>
#include <QString>
#include <QTemporaryDir>
#include <QUrl>
#include <memory>

namespace tarvex {

// The pages of the help. They lie as files NAME.html in one directory, each on the topic NAME, with their pictures, and
// compiled in one file beside them, which gives contents, index and full-text search. Where that file or what reads it
// is missing, the pages are still there.
class HelpCollection {
 public:
  // Everything that is derived from the compiled file lies below `cache`, in a directory of this version of the program
  // and this content of the file, as an index is never renewed; where that can't be written, in a temporary one.
  HelpCollection(const QString& directory, const QString& cache);

  // What is missing, and what would mend it; empty when nothing is.
  const QString& problem() const { return problem_; }
  // Contents, index and search; null where there is a problem.
  QHelpEngine* engine() const { return engine_.get(); }

  // The address of a topic's page, or of a part of it (NAME#PART); empty when there is none.
  QUrl page(const QString& topic) const;
  // What lies at an address; empty when nothing does.
  QByteArray read(const QUrl& url) const;

  static constexpr const char* kCompiled = "tarvex.qch";

 private:
  bool open(const QString& cache);
  bool openIn(const QString& directory);
  bool makeIn(const QString& directory);

  QString directory_;
  QString nameSpace_;
  QString problem_;
  std::unique_ptr<QTemporaryDir> temporary_;
  std::unique_ptr<QHelpEngine> engine_;
};

}  // namespace tarvex
