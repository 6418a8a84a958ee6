#include "app/Changes.h"

#include <utility>

namespace tarvex {

ChangeNotifier::Subscription ChangeNotifier::subscribe(Listener listener) {
  auto subscription = std::make_shared<const Listener>(std::move(listener));
  listeners_.push_back(subscription);
  return subscription;
}

void ChangeNotifier::tell(Changes changes) {
  if (changes.empty()) return;
  std::erase_if(listeners_, [](const auto& listener) { return listener.expired(); });
  const auto present = listeners_;
  for (const auto& listener : present)
    if (const Subscription held = listener.lock()) (*held)(changes);
}

}  // namespace tarvex
