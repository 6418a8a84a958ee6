#pragma once

#include <sys/types.h>

#include <com/sun/star/frame/XDesktop.hpp>
#include <string>
#include <vector>

namespace tarvex::office {

// What went wrong, in words for the user.
struct Failure {
  std::string text;
};

std::string utf8(const rtl::OUString& text);
rtl::OUString fromUtf8(const std::string& text);
// The URL of an absolute path.
rtl::OUString fileUrl(const std::string& path);

// A LibreOffice of our own: a process with its profile and its temporary files in one directory, so that it meets no
// other one of the user. At its end the directory and its pipes are gone.
class Office {
 public:
  explicit Office(std::string directory) : directory_(std::move(directory)) {}
  Office(const Office&) = delete;
  Office& operator=(const Office&) = delete;

  // Throws Failure.
  void start(bool visible);
  bool running();
  // The pipes that it makes, in the place where it makes all of them. One that is killed leaves them there.
  std::vector<std::string> pipes() const;
  // Until the user has closed it.
  void waitForEnd();
  // Ends it, whatever it does, and removes the directory; no workbook may be open. Where somebody waits for the end and
  // then removes what is left of the directory and the pipes, one without windows is killed, and this program with it:
  // its own end takes a third of a second.
  void end(bool isAwaited);

  com::sun::star::uno::Reference<com::sun::star::uno::XInterface> desktop() const { return desktop_; }

 private:
  std::string pipeName() const;
  void writeSettings() const;
  void writeBuild() const;
  void spawn();
  void connect();
  bool terminate();
  bool waitFor(int milliseconds);

  std::string directory_;
  bool visible_ = false;
  pid_t pid_ = -1;
  com::sun::star::uno::Reference<com::sun::star::uno::XInterface> desktop_;
};

}  // namespace tarvex::office
