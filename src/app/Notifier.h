#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace tarvex {

// Tells whoever wants to know that something has changed. A listener is called when everything is consistent again; it
// may start the next change, and subscribe or leave.
template <class... News>
class Notifier {
 public:
  using Listener = std::function<void(News...)>;
  // Whoever holds it is told; it may outlive the notifier.
  using Subscription = std::shared_ptr<const Listener>;

  [[nodiscard]] Subscription subscribe(Listener listener) {
    auto subscription = std::make_shared<const Listener>(std::move(listener));
    listeners_.push_back(subscription);
    return subscription;
  }

  void tell(News... news) {
    std::erase_if(listeners_, [](const auto& listener) { return listener.expired(); });
    const auto present = listeners_;
    for (const auto& listener : present)
      if (const Subscription held = listener.lock()) (*held)(news...);
  }

 private:
  std::vector<std::weak_ptr<const Listener>> listeners_;  // in the order of their subscription
};

}  // namespace tarvex
