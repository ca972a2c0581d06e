// Standard input of the process.
#pragma once

#include <functional>

namespace kvr::cli {

class Input {
 public:
  virtual ~Input() = default;
  // Reads what comes and drops it; calls `handler` once, in its own turn, when nothing can come any more.
  virtual void watchEnd(std::function<void()> handler) = 0;
};

}  // namespace kvr::cli
