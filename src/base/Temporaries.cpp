#include "base/Temporaries.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <map>
#include <mutex>
#include <new>
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

// Never destroyed: the thread that ends the process may come while static objects already go. Takes nothing from the
// heap: that thread may come because there is no memory.
Announced& announced() {
  alignas(Announced) static std::array<std::byte, sizeof(Announced)> place;
  static auto* const all = new (place.data()) Announced;
  return *all;
}

// A directory is gone through on the heap. Where that has nothing left, it stays for the next process to delete.
void deleteWithoutMemory(const std::string& path) {
  std::error_code error;
  try {
    if (::unlink(path.c_str()) != 0) std::filesystem::remove_all(path, error);
  } catch (const std::bad_alloc&) {
  }
}

// Locks what was made and remembers it. False when the cleaner of another machine, which took it for a left-over in the
// moment before the lock, has it or had it. Where a file system keeps no locks the process's number alone protects it.
bool announce(const std::string& path, int lockHolder) {
  struct stat status {};
  const bool taken = (::flock(lockHolder, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) ||
                     (::fstat(lockHolder, &status) == 0 && status.st_nlink == 0);
  if (taken && lockHolder >= 0) ::close(lockHolder);
  if (!taken) announced().paths[path] = lockHolder;
  return !taken;
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

// Deletes what is this user's own and nobody holds: a process of another machine or container, whose number says
// nothing here, has a lock on what it made. The lock is kept meanwhile, so that whoever makes it sees what happens to
// it.
void deleteUnlessHeld(const std::filesystem::path& path) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return;
  struct stat status {};
  std::error_code ignored;
  if (::fstat(fd, &status) == 0 && status.st_uid == ::geteuid() && ::flock(fd, LOCK_EX | LOCK_NB) == 0)
    std::filesystem::remove_all(path, ignored);
  ::close(fd);
}

void deleteLeftOver(const std::string& directory) {
  std::error_code error;
  std::filesystem::directory_iterator entry(directory.empty() ? "." : directory, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    if (isOfDeadProcess(entry->path().filename().native())) deleteUnlessHeld(entry->path());
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
    if (announce(path, ::fcntl(fd, F_DUPFD_CLOEXEC, 0))) return fd;
    ::close(fd);
  }
  path.clear();
  return -1;
}

std::string Temporaries::createDirectory(const std::string& directory) {
  Announced& all = announced();
  const std::lock_guard lock(all.mutex);
  deleteLeftOver(directory);
  for (int i = 0; i < kMostNames; ++i) {
    std::string path = ownName(directory, "XXXXXX");
    if (::mkdtemp(path.data()) == nullptr) break;
    if (announce(path, ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))) return path;
  }
  return {};
}

void Temporaries::add(const std::string& path) {
  Announced& all = announced();
  const std::lock_guard lock(all.mutex);
  all.paths[path] = -1;
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
  for (const auto& [path, lockHolder] : all.paths) deleteWithoutMemory(path);
}

}  // namespace tarvex
