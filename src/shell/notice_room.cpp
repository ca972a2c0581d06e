#include "shell/notice_room.h"

#include <utility>

namespace kvr::shell {

NoticeRoom::NoticeRoom(MainPanel& panel, platform::Dialogs& dialogs, const platform::WallClock& clock)
    : panel_(panel), clock_(clock) {
  panel_.comNotices.setVisible(false);
  panel_.comNotices.onClick = [this, &dialogs] { dialogs.help(panel_.comNotices.caption(), notices_.history()); };
  tokens_.push_back(panel_.portStatus.changed.watch([this] { portSays(); }));
}

void NoticeRoom::say(const std::string& text) {
  notices_.add(clock_.timeOfDay(), text);
  panel_.labNotice.setCaption(notices_.latest());
  panel_.labNotice.setToolTip(notices_.latest());
  panel_.comNotices.setVisible(true);
}

void NoticeRoom::follow(const platform::Label& label, const std::string& passing) {
  tokens_.push_back(label.changed.watch([this, &label, passing] {
    const std::string& caption = label.caption();
    if (!caption.empty() && (passing.empty() || !caption.starts_with(passing))) say(caption);
  }));
}

// What became of the port that is chosen; what another one is, the user has just asked for.
void NoticeRoom::portSays() {
  const int port = panel_.combCommPort.listIndex();
  const std::string& caption = panel_.portStatus.caption();
  if (std::exchange(port_, port) != port || caption.empty()) return;
  say(caption.starts_with("COM") ? caption : panel_.combCommPort.text() + ": " + caption);
}

}  // namespace kvr::shell
