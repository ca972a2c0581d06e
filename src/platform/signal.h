// Tells observers that something has changed.
#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace kvr::platform {

// Observers of a change. An observer must live as long as the control or disconnect by letting its token go.
class Signal {
 public:
  using Token = std::shared_ptr<void>;
  void connect(std::function<void()> observer) { permanent_.push_back(std::move(observer)); }
  [[nodiscard]] Token watch(std::function<void()> observer);
  void emit() const;

 private:
  std::vector<std::function<void()>> permanent_;
  std::vector<std::weak_ptr<std::function<void()>>> watched_;
};

}  // namespace kvr::platform
