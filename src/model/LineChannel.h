#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

namespace tarvex {

// Text lines to another process and from it, over a pair of sockets. Neither a process that is gone nor one that hangs
// holds the caller: a transfer ends by its limit, and while it takes long the user is served about twice a second.
class LineChannel {
 public:
  enum class State { Open, Closed, TimedOut, Stopped };  // gone, too slow, not awaited by the user

  // `serve` gives false when the user wants to stop.
  explicit LineChannel(std::function<bool()> serve) : serve_(std::move(serve)) {}
  ~LineChannel() { close(); }
  LineChannel(const LineChannel&) = delete;
  LineChannel& operator=(const LineChannel&) = delete;

  // Makes the pair. The other process gets otherEnd() as its standard input and output; then closeOtherEnd() leaves it
  // to that process alone. False when the system gives no sockets.
  [[nodiscard]] bool open();
  int otherEnd() const { return otherEnd_; }
  void closeOtherEnd();
  void close();

  // Limits count from the call; zero is none. After a failure the channel stays in the state that tells why.
  [[nodiscard]] bool send(std::string_view text, std::chrono::milliseconds limit);
  [[nodiscard]] bool receive(std::string& line, std::chrono::milliseconds limit);
  State state() const { return state_; }

 private:
  using Clock = std::chrono::steady_clock;

  [[nodiscard]] bool waitFor(short events, Clock::time_point start, std::chrono::milliseconds limit);
  bool fail(State state);

  std::function<bool()> serve_;
  int fd_ = -1;
  int otherEnd_ = -1;
  State state_ = State::Closed;
  Clock::time_point served_;
  std::string buffer_;
  std::size_t used_ = 0;  // of the buffer
};

}  // namespace tarvex
