// Tells observers that something has changed.
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace kvr::platform {

// Observers of a change. One rule: whoever watches keeps the token, and letting it go ends the watch. A handler may add
// observers (they hear of the next change), end any of them (they hear nothing more), or end the signal itself.
class Signal {
 public:
  using Token = std::shared_ptr<void>;
  [[nodiscard]] Token watch(std::function<void()> observer) const;
  // Only for an observer that lives as long as the signal: the signal keeps the token.
  void connect(std::function<void()> observer) { kept_.push_back(watch(std::move(observer))); }
  void emit() const;

 private:
  mutable std::vector<std::weak_ptr<std::function<void()>>> watched_;  // watching changes nothing that can be seen
  std::vector<Token> kept_;
};

}  // namespace kvr::platform
