// The user's wish to end what is under way. One flag for every kind of run: set by Stop, by the window's close and by a
// port that has gone; every wait looks at it.
#pragma once

#include <functional>

namespace kvr::engine {

class RunStop {
 public:
  bool requested() const { return requested_; }
  void request() {
    if (!requested_ && onRequest) onRequest();
    requested_ = true;
  }
  void clear() { requested_ = false; }  // a run starts

  std::function<void()> onRequest;  // for the trace; may stay empty

 private:
  bool requested_ = false;
};

}  // namespace kvr::engine
