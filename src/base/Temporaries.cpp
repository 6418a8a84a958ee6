#include "base/Temporaries.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/file.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <map>
#include <mutex>
#include <string_view>

#include "base/SystemCalls.h"

namespace tarvex {
namespace {

constexpr std::string_view kPrefix = ".tarvex-";
constexpr int kMostNames = 1000;

std::atomic<bool> isCancelled = false;
static_assert(std::atomic<bool>::is_always_lock_free);

struct Announced {
  std::timed_mutex mutex;
  std::map<std::string, int> paths;  // each with a descriptor that holds its lock
  int lastNumber = 0;
};

// Never destroyed: the thread that ends the process may come while static objects already go.
Announced& announced() {
  static auto* const all = new Announced;
  return *all;
}

// Where a file system keeps no locks the process's number alone protects what was made.
void announce(const std::string& path, int lockHolder) {
  static_cast<void>(lockHolder >= 0 && ::flock(lockHolder, LOCK_EX | LOCK_NB) == 0);
  announced().paths[path] = lockHolder;
}

std::string ownName(const std::string& directory, const std::string& rest) {
  const std::string place = directory.empty() || directory.ends_with('/') ? directory : directory + '/';
  return place + std::string(kPrefix) + std::to_string(::getpid()) + '-' + rest;
}

// Whether the name is one of ours, of a process that this machine doesn't know any more.
bool isOfDeadProcess(std::string_view name) {
  if (!name.starts_with(kPrefix)) return false;
  name.remove_prefix(kPrefix.size());
  pid_t pid = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), pid);
  return error == std::errc() && pid > 0 && end != name.data() + name.size() && *end == '-' && ::kill(pid, 0) != 0 &&
         errno == ESRCH;
}

// A process of another machine or container, whose number says nothing here, holds a lock on what it made.
bool isLocked(const std::filesystem::path& path) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return true;
  const bool locked = ::flock(fd, LOCK_EX | LOCK_NB) != 0;
  ::close(fd);
  return locked;
}

void deleteLeftOver(const std::string& directory) {
  std::error_code error;
  std::filesystem::directory_iterator entry(directory.empty() ? "." : directory, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    std::error_code ignored;
    if (isOfDeadProcess(entry->path().filename().native()) && !isLocked(entry->path()))
      std::filesystem::remove_all(entry->path(), ignored);
  }
}

}  // namespace

int Temporaries::createFile(const std::string& directory, mode_t mode, std::string& path) {
  Announced& all = announced();
  const std::lock_guard lock(all.mutex);
  deleteLeftOver(directory);
  for (int i = 0; i < kMostNames; ++i) {
    path = ownName(directory, std::to_string(++all.lastNumber) + ".tmp");
    const int fd = SystemCalls::current().open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (fd < 0 && errno == EEXIST) continue;
    if (fd < 0) break;
    announce(path, ::fcntl(fd, F_DUPFD_CLOEXEC, 0));
    return fd;
  }
  path.clear();
  return -1;
}

std::string Temporaries::createDirectory(const std::string& directory) {
  Announced& all = announced();
  const std::lock_guard lock(all.mutex);
  deleteLeftOver(directory);
  std::string path = ownName(directory, "XXXXXX");
  if (::mkdtemp(path.data()) == nullptr) return {};
  announce(path, ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return path;
}

void Temporaries::add(const std::string& path) {
  Announced& all = announced();
  const std::lock_guard lock(all.mutex);
  announce(path, -1);
}

void Temporaries::forget(const std::string& path) {
  Announced& all = announced();
  const std::lock_guard lock(all.mutex);
  const auto found = all.paths.find(path);
  if (found == all.paths.end()) return;
  if (found->second >= 0) ::close(found->second);
  all.paths.erase(found);
}

void Temporaries::cancel(bool cancelled) {
  isCancelled.store(cancelled);
}

bool Temporaries::cancelled() {
  return isCancelled.load();
}

void Temporaries::deleteAllForEnd() {
  Announced& all = announced();
  // Held from now on; a holder that failed in the middle, or waits for a dead disk, is not waited for.
  constexpr std::chrono::milliseconds kPatience{200};
  static_cast<void>(all.mutex.try_lock_for(kPatience));
  std::error_code error;
  for (const auto& [path, lockHolder] : all.paths) std::filesystem::remove_all(path, error);
}

}  // namespace tarvex
