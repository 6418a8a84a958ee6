#include "model/LineChannel.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>

#include <cerrno>
#include <utility>

#include "base/SystemCalls.h"

namespace tarvex {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kStep{500};  // between two services of the user
constexpr int kFirstFree = 3;       // below lie the standard descriptors, of which any may be missing
constexpr std::size_t kPart = 65536;

// The same descriptor above the standard ones.
int aboveStandard(int fd) {
  if (fd >= kFirstFree) return fd;
  const int moved = ::fcntl(fd, F_DUPFD_CLOEXEC, kFirstFree);
  SystemCalls::current().close(fd);
  return moved;
}

}  // namespace

bool LineChannel::open() {
  close();
  int ends[2] = {-1, -1};
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return false;
  fd_ = aboveStandard(ends[0]);
  otherEnd_ = aboveStandard(ends[1]);
  state_ = State::Open;
  served_ = Clock::now();
  if (fd_ < 0 || otherEnd_ < 0) close();
  return state_ == State::Open;
}

void LineChannel::closeOtherEnd() {
  if (otherEnd_ >= 0) SystemCalls::current().close(std::exchange(otherEnd_, -1));
}

void LineChannel::close() {
  closeOtherEnd();
  if (fd_ >= 0) SystemCalls::current().close(std::exchange(fd_, -1));
  buffer_.clear();
  used_ = 0;
  state_ = State::Closed;
}

bool LineChannel::fail(State state) {
  state_ = state;
  return false;
}

bool LineChannel::waitFor(short events, Clock::time_point start, milliseconds limit) {
  for (;;) {
    const auto now = Clock::now();
    if (now - served_ >= kStep) {
      served_ = now;
      if (!serve_()) return fail(State::Stopped);
    }
    pollfd ready{fd_, events, 0};
    const int found = ::poll(&ready, 1, static_cast<int>(kStep.count()));
    if (found > 0) return true;
    if (found < 0 && errno != EINTR) return fail(State::Closed);
    if (limit.count() > 0 && Clock::now() - start >= limit) return fail(State::TimedOut);
  }
}

bool LineChannel::send(std::string_view text, milliseconds limit) {
  const auto start = Clock::now();
  while (state_ == State::Open && !text.empty()) {
    const ssize_t sent = ::send(fd_, text.data(), text.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (sent >= 0)
      text.remove_prefix(static_cast<std::size_t>(sent));
    else if (errno == EAGAIN)
      static_cast<void>(waitFor(POLLOUT, start, limit));
    else if (errno != EINTR)
      fail(State::Closed);
  }
  return state_ == State::Open;
}

bool LineChannel::receive(std::string& line, milliseconds limit) {
  const auto start = Clock::now();
  std::size_t searched = used_;
  while (state_ == State::Open) {
    const std::size_t end = buffer_.find('\n', searched);
    if (end != std::string::npos) {
      line.assign(buffer_, used_, end - used_);
      used_ = end + 1;
      return true;
    }
    buffer_.erase(0, std::exchange(used_, 0));
    searched = buffer_.size();
    if (!waitFor(POLLIN, start, limit)) return false;
    buffer_.resize(searched + kPart);
    const ssize_t got = ::recv(fd_, buffer_.data() + searched, kPart, MSG_DONTWAIT);
    buffer_.resize(searched + static_cast<std::size_t>(got > 0 ? got : 0));
    if (got == 0 || (got < 0 && errno != EAGAIN && errno != EINTR)) return fail(State::Closed);
  }
  return false;
}

}  // namespace tarvex
