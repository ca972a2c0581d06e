// Which controls take input now: the state of a run and of the operator's lock in one number that every room watches. A
// room enables its own controls when it changes; nobody reaches into another room's panel for it.
#pragma once

#include "platform/signal.h"

namespace kvr::platform {

class UiLock {
 public:
  static constexpr int kFree = 0;
  static constexpr int kBusy = 1;        // a run goes on
  static constexpr int kLocked = 2;      // the operator locked parameters and options; a run may start
  static constexpr int kBusyLocked = 3;  // a run goes on, and the options stay locked after it

  int state() const { return state_; }
  bool busy() const { return state_ == kBusy || state_ == kBusyLocked; }
  bool locked() const { return state_ == kLocked || state_ == kBusyLocked; }
  bool free() const { return state_ == kFree; }

  // Emits `changed` whether or not the state is new: rooms re-apply their rules, which a selection may have disturbed.
  // A number outside 0..3 is ignored.
  void set(int state) {
    if (state < kFree || state > kBusyLocked) return;
    state_ = state;
    changed.emit();
  }
  void toBusy() { set(locked() ? kBusyLocked : kBusy); }  // a run starts; repeated calls change nothing more
  void toFree() { set(locked() ? kLocked : kFree); }      // a run has ended

  Signal changed;

 private:
  int state_ = kFree;
};

}  // namespace kvr::platform
