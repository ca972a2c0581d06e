// The one guard in front of every way in: while a sequence (a download, a board session, a demo run) is under way,
// nothing else starts one, whatever the gesture: a button, a dropped file, an opened project, the file watcher, a
// repeated send.
#pragma once

#include <utility>

#include "platform/signal.h"

namespace kvr::platform {

class Activity {
 public:
  // Held for as long as the sequence runs; let go in its one exit. False when something runs already: start nothing.
  class Running {
   public:
    explicit Running(Activity* activity) : activity_(activity) {
      if (activity_) activity_->set(true);
    }
    ~Running() {
      if (activity_) activity_->set(false);
    }
    Running(Running&& other) noexcept : activity_(std::exchange(other.activity_, nullptr)) {}
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    explicit operator bool() const { return activity_ != nullptr; }

   private:
    Activity* activity_;
  };

  [[nodiscard]] Running begin() { return Running(busy_ ? nullptr : this); }
  bool busy() const { return busy_; }
  Signal changed;

 private:
  void set(bool busy) {
    busy_ = busy;
    changed.emit();
  }
  bool busy_ = false;
};

}  // namespace kvr::platform
