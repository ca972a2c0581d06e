#include "platform/guarded_dialogs.h"

#include <algorithm>

namespace kvr::platform {

void GuardedDialogs::message(const std::string& title, const std::string& text, BoxIcon icon) {
  const auto held = activity_.begin();
  dialogs_.message(title, text, icon);
}

bool GuardedDialogs::askYesNo(const std::string& title, const std::string& text) {
  const auto held = activity_.begin();
  return dialogs_.askYesNo(title, text);
}

std::string GuardedDialogs::openFile(const FileQuestion& question) {
  const auto held = activity_.begin();
  return dialogs_.openFile(question);
}

std::string GuardedDialogs::saveFile(const FileQuestion& question) {
  const auto held = activity_.begin();
  return dialogs_.saveFile(question);
}

WaitingDialogs::WaitingDialogs(EventLoop& loop, Dialogs& dialogs, Activity& activity)
    : GuardedDialogs(dialogs, activity), activity_(activity), turn_(loop, [this] { showWaiting(); }) {
  turn_.setInterval(Millis(0));
  token_ = activity_.changed.watch([this] {
    if (!activity_.busy() && !waiting_.empty()) turn_.start();
  });
}

void WaitingDialogs::message(const std::string& title, const std::string& text, BoxIcon icon) {
  if (!activity_.busy()) return GuardedDialogs::message(title, text, icon);
  const Message message{title, text, icon};
  if (std::find(waiting_.begin(), waiting_.end(), message) == waiting_.end()) waiting_.push_back(message);
}

void WaitingDialogs::showWaiting() {
  if (activity_.busy() || waiting_.empty()) return;
  const Message next = waiting_.front();
  waiting_.pop_front();
  GuardedDialogs::message(next.title, next.text, next.icon);
}

bool WaitingDialogs::askYesNo(const std::string& title, const std::string& text) {
  return !activity_.busy() && GuardedDialogs::askYesNo(title, text);
}

std::string WaitingDialogs::openFile(const FileQuestion& question) {
  return activity_.busy() ? std::string() : GuardedDialogs::openFile(question);
}

std::string WaitingDialogs::saveFile(const FileQuestion& question) {
  return activity_.busy() ? std::string() : GuardedDialogs::saveFile(question);
}

}  // namespace kvr::platform
