#include "plots/libraryFailures.h"

#include <dlfcn.h>
#include <execinfo.h>
#include <glib.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/Temporaries.h"

namespace tarvex {

namespace {

const char* programName = "";

// The thread that ends the process; another one that fails meanwhile waits for that.
std::atomic<pid_t> endingThread = 0;

// Without memory from the heap. The text is the library's own and tells more to who knows it.
[[noreturn]] void end(const char* text) {
  pid_t before = 0;
  if (!endingThread.compare_exchange_strong(before, ::gettid())) {
    if (before == ::gettid()) ::_exit(EXIT_FAILURE);
    for (;;) ::pause();
  }
  constexpr std::size_t kLongest = 1024;
  std::array<char, kLongest> line{};
  std::snprintf(line.data(), line.size(), "%s: There is not enough memory to draw, or no thread to be had.\n%s\n",
                programName, text);
  static_cast<void>(::write(STDERR_FILENO, line.data(), std::strlen(line.data())) >= 0);
  Temporaries::deleteAllForEnd();
  ::_exit(EXIT_FAILURE);
}

GLogWriterOutput take(GLogLevelFlags level, const GLogField* fields, gsize count, gpointer) {
  const char* text = "";
  for (gsize i = 0; i < count; ++i)
    if (std::strcmp(fields[i].key, "MESSAGE") == 0) text = static_cast<const char*>(fields[i].value);
  // The second is cairo's word for it, of which its callers only warn.
  if ((level & G_LOG_LEVEL_ERROR) != 0 || std::strstr(text, "out of memory") != nullptr) end(text);
  return g_log_writer_default(level, fields, count, nullptr);
}

bool isOfFontSearch(void* code) {
  Dl_info info{};
  return ::dladdr(code, &info) != 0 && info.dli_fname != nullptr &&
         std::strstr(info.dli_fname, "fontconfig") != nullptr;
}

// A fault of anybody else's stays what it is: the instruction is met again, now without a handler.
extern "C" void onFault(int signalNumber) {
  constexpr int kFrames = 8;  // this one, the system's, and those of the fault
  std::array<void*, kFrames> frames{};
  const int count = ::backtrace(frames.data(), kFrames);
  if (std::any_of(frames.begin(), frames.begin() + count, isOfFontSearch)) end("The search for fonts failed.");
  std::signal(signalNumber, SIG_DFL);
}

}  // namespace

void endOnLibraryFailure(const char* program) {
  programName = program;
  void* frame = nullptr;
  static_cast<void>(::backtrace(&frame, 1));  // its first call takes memory
  std::signal(SIGSEGV, onFault);
  g_log_set_writer_func(take, nullptr, nullptr);
}

}  // namespace tarvex
