// The line below the message pane, and its history behind a button.
#pragma once

#include "platform/dialogs.h"
#include "platform/wall_clock.h"
#include "shell/main_panel.h"
#include "shell/notices.h"

namespace kvr::shell {

class NoticeRoom {
 public:
  NoticeRoom(MainPanel& panel, platform::Dialogs& dialogs, const platform::WallClock& clock);

  void say(const std::string& text);
  // From now on says what the label says; an empty caption and one that begins with `passing`, which is no news, are
  // passed over.
  void follow(const platform::Label& label, const std::string& passing = {});

 private:
  void portSays();
  MainPanel& panel_;
  const platform::WallClock& clock_;
  Notices notices_;
  int port_ = -1;
  std::vector<platform::Signal::Token> tokens_;
};

}  // namespace kvr::shell
