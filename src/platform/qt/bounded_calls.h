// Calls of the system that may never return, such as a look at a file on a share whose server is gone. Each is made by
// a helper thread that touches nothing but what the call brings; the program's own thread waits for it, but not for
// ever.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace kvr::platform {

class BoundedCalls {
 public:
  using Progress = std::atomic<std::size_t>;
  explicit BoundedCalls(std::chrono::milliseconds limit) : limit_(limit) {}

  // True: `work` is done. False: it has not returned, nor made progress, within the limit; whatever it brings later
  // must be its own (kept by a shared pointer). While a call for the same path has not returned, the next one is not
  // made.
  [[nodiscard]] bool run(const std::string& path, std::function<void(Progress&)> work);

 private:
  struct Call;
  std::chrono::milliseconds limit_;
  std::map<std::string, std::weak_ptr<Call>> stuck_;
};

}  // namespace kvr::platform
