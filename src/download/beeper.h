// Series of beeps, 150 ms apart. They are queued: nobody waits for a sound.
#pragma once

#include "platform/dialogs.h"
#include "platform/event_loop.h"

namespace kvr::download {

class Beeper {
 public:
  static constexpr platform::Millis kGap{150};
  Beeper(platform::EventLoop& loop, platform::Dialogs& dialogs);
  void beeps(int count);

 private:
  void next();
  platform::Dialogs& dialogs_;
  platform::Timer gap_;
  int left_ = 0;
};

}  // namespace kvr::download
