#include "sheet/Office.h"

#include <fcntl.h>
#include <langinfo.h>
#include <poll.h>
#include <rtl/digest.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <cppuhelper/bootstrap.hxx>
#include <rtl/bootstrap.hxx>

#include <cctype>
#include <clocale>
#include <com/sun/star/bridge/XUnoUrlResolver.hpp>
#include <com/sun/star/connection/NoConnectException.hpp>
#include <com/sun/star/lang/XMultiComponentFactory.hpp>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

namespace tarvex::office {

namespace {

using com::sun::star::uno::Reference;
using com::sun::star::uno::UNO_QUERY_THROW;

const std::string kProgramDirectory = TARVEX_OFFICE_PROGRAM;
constexpr const char* kHex = "0123456789abcdef";
constexpr int kSlice = 10;        // milliseconds between two looks
constexpr int kStepOfWait = 200;  // while the user works
constexpr int kEndLimit = 5000;   // for a termination that was asked for

// No tip of the day, no welcome and no macro in front of a profile that is used once.
constexpr const char* kSettings = R"(<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry">
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="FirstRun" oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="ShowTipOfTheDay" oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Security/Scripting"><prop oor:name="DisableMacrosExecution" oor:op="fuse"><value>true</value></prop></item>
<item oor:path="/org.openoffice.Setup/Product"><prop oor:name="ooSetupLastVersion" oor:op="fuse"><value>99.9</value></prop></item>
</oor:items>
)";

// Paths and texts are UTF-8, whatever the locale says of it.
void useUtf8() {
  std::setlocale(LC_ALL, "");
  if (std::string(nl_langinfo(CODESET)) != "UTF-8") ::setenv("LC_ALL", "C.UTF-8", 1);
}

// The name of the pipe by which instances with the same profile would find each other holds this.
std::string hashOf(const rtl::OUString& text) {
  sal_uInt8 bytes[RTL_DIGEST_LENGTH_MD5];
  rtl_digest_MD5(text.getStr(), static_cast<sal_uInt32>(text.getLength()) * sizeof(sal_Unicode), bytes, sizeof bytes);
  std::string hash;
  for (const sal_uInt8 byte : bytes) {
    if (byte >= 16) hash += kHex[byte >> 4];
    hash += kHex[byte & 15];
  }
  return hash;
}

}  // namespace

std::string utf8(const rtl::OUString& text) {
  const rtl::OString bytes = rtl::OUStringToOString(text, RTL_TEXTENCODING_UTF8);
  return {bytes.getStr(), static_cast<std::size_t>(bytes.getLength())};
}

rtl::OUString fromUtf8(const std::string& text) {
  return {text.data(), static_cast<sal_Int32>(text.size()), RTL_TEXTENCODING_UTF8};
}

rtl::OUString fileUrl(const std::string& path) {
  std::string url = "file://";
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 128 && (std::isalnum(byte) || std::string_view("/-._~").find(c) != std::string_view::npos))
      url += c;
    else
      url.append({'%', kHex[byte >> 4], kHex[byte & 15]});
  }
  return fromUtf8(url);
}

void Office::start(bool visible) {
  if (::access((kProgramDirectory + "/soffice").c_str(), X_OK) != 0 ||
      ::access((kProgramDirectory + "/libsclo.so").c_str(), R_OK) != 0)
    throw Failure{"Workbooks need LibreOffice Calc: install the package libreoffice-calc."};
  useUtf8();
  writeSettings();
  writeBuild();
  visible_ = visible;
  spawn();
  connect();
}

// Of the user's pipes this one is ours alone, as the directory is.
std::string Office::pipeName() const {
  return directory_.substr(directory_.rfind('/') + 1);
}

std::vector<std::string> Office::pipes() const {
  const std::string place = ::access("/tmp", W_OK) == 0 ? "/tmp" : "/var/tmp";
  const std::string start = place + "/OSL_PIPE_" + std::to_string(::getuid()) + '_';
  return {start + pipeName(), start + "SingleOfficeIPC_" + hashOf(fileUrl(directory_ + "/profile"))};
}

void Office::writeSettings() const {
  std::error_code error;
  std::filesystem::create_directories(directory_ + "/profile/user", error);
  std::ofstream out(directory_ + "/profile/user/registrymodifications.xcu");
  out << kSettings;
  out.close();
  if (!out) throw Failure{"LibreOffice cannot be started: its profile cannot be written in " + directory_ + '.'};
}

// A profile that bears the mark of another build, or none, has its extensions registered anew, after which LibreOffice
// starts a second time. This one has none: with the mark one start will do.
void Office::writeBuild() const {
  rtl::OUString build;
  if (!rtl::Bootstrap(fileUrl(kProgramDirectory + "/versionrc")).getFrom("buildid", build)) return;
  std::error_code error;
  std::filesystem::create_directories(directory_ + "/profile/user/extensions", error);
  std::ofstream(directory_ + "/profile/user/extensions/buildid") << utf8(build);  // without it both starts are done
}

void Office::spawn() {
  for (const char* name : {"TEMP", "TMP", "TMPDIR"}) ::setenv(name, directory_.c_str(), 1);
  std::vector<std::string> words = {kProgramDirectory + "/soffice",
                                    "-env:UserInstallation=" + utf8(fileUrl(directory_ + "/profile")),
                                    "--norestore",
                                    "--nologo",
                                    "--nodefault",
                                    "--nolockcheck",
                                    "--accept=pipe,name=" + pipeName() + ";urp;"};
  if (!visible_) words.emplace_back("--headless");
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);

  // It must not hold our pipes: the end of this program is seen by them.
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t all;
  sigfillset(&all);
  posix_spawnattr_setsigdefault(&attributes, &all);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
  const int error = posix_spawn(&pid_, arguments[0], &actions, &attributes, arguments.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  if (error == 0) return;
  pid_ = -1;
  throw Failure{"LibreOffice cannot be started: error " + std::to_string(error) + '.'};
}

void Office::connect() {
  using namespace com::sun::star;  // NOLINT(google-build-using-namespace): the interfaces live five levels deep
  rtl::Bootstrap::set("URE_MORE_TYPES", fileUrl(kProgramDirectory + "/types/offapi.rdb"));
  const Reference<uno::XComponentContext> local =
      cppu::defaultBootstrap_InitialComponentContext(fileUrl(kProgramDirectory + "/unorc"));
  const Reference<bridge::XUnoUrlResolver> resolver(
      local->getServiceManager()->createInstanceWithContext("com.sun.star.bridge.UnoUrlResolver", local),
      UNO_QUERY_THROW);
  const rtl::OUString url = fromUtf8("uno:pipe,name=" + pipeName() + ";urp;StarOffice.ComponentContext");
  for (;;) {
    try {
      const Reference<uno::XComponentContext> context(resolver->resolve(url), UNO_QUERY_THROW);
      desktop_ = context->getServiceManager()->createInstanceWithContext("com.sun.star.frame.Desktop", context);
      return;
    } catch (const connection::NoConnectException&) {
      if (!running()) throw Failure{"LibreOffice cannot be started: it ended at once. Is there a display?"};
      ::poll(nullptr, 0, kSlice);
    }
  }
}

// Its own children become ours when it dies before them, and are waited for as well.
bool Office::running() {
  pid_t ended = 0;
  while ((ended = ::waitpid(-1, nullptr, WNOHANG)) > 0)
    if (ended == pid_) pid_ = -1;
  return pid_ > 0;
}

void Office::waitForEnd() {
  while (running()) ::poll(nullptr, 0, kStepOfWait);
}

bool Office::waitFor(int milliseconds) {
  for (int waited = 0; running(); waited += kSlice) {
    if (waited >= milliseconds) return false;
    ::poll(nullptr, 0, kSlice);
  }
  return true;
}

bool Office::terminate() {
  try {
    const Reference<com::sun::star::frame::XDesktop> desktop(desktop_, com::sun::star::uno::UNO_QUERY);
    if (desktop.is() && running()) desktop->terminate();
  } catch (const com::sun::star::uno::Exception&) {
    // It is gone already, or will be.
  }
  return waitFor(desktop_.is() ? kEndLimit : 0);
}

void Office::end(bool isAwaited) {
  const bool ended = isAwaited && !visible_ ? !running() : terminate();
  desktop_.clear();
  std::error_code ignored;
  for (const std::string& pipe : pipes()) std::filesystem::remove(pipe, ignored);
  std::filesystem::remove_all(directory_, ignored);
  // It is of our group, and so are we.
  if (!ended) ::kill(0, SIGKILL);
}

}  // namespace tarvex::office
