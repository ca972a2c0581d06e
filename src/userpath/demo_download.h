// Downloads through the demo routine that the chip's running program carries: no power cycle, no baud negotiation, one
// fixed line setting. A command at line settings of its own may make the program jump into the routine first.
#pragma once

#include <functional>

#include "engine/programming.h"
#include "images/serial_counters_room.h"
#include "platform/activity.h"
#include "platform/ui_lock.h"
#include "userpath/demo_line.h"
#include "userpath/userpath_panel.h"

namespace kvr::userpath {

struct DemoContext {
  engine::Conversation& conversation;
  engine::Programming& programming;
  platform::Activity& activity;
  platform::UiLock& lock;
  images::SerialCounters& counters;
};

class DemoDownload {
 public:
  DemoDownload(DemoContext context, UserPathPanel& panel);

  // One download, or one after the other until a failure or Stop. Nothing when some other sequence is under way.
  void demoRun(bool repeat);

  std::function<void()> releaseToolPort;  // the terminal gives the port up
  std::function<void()> stopOperation;    // what the button Stop does: the end of every run

 private:
  bool sendCommandFirst();
  bool round();
  bool demoConnect();
  bool demoReadModel();
  bool demoErase();
  void finishRound();
  bool advanceCounters();
  bool countDown();
  bool failNow(int beeps, const std::string& words);
  engine::Millis pollPace() const;
  engine::TargetLink& link() { return context_.conversation.link; }

  DemoContext context_;
  UserPathPanel& panel_;
  DemoLine line_;
  platform::Instant roundBegan_{0};
  bool countersArmed_ = false;
  bool stopTold_ = false;
};

}  // namespace kvr::userpath
