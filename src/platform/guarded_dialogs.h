// Message boxes and dialogs under the one guard (activity.h), so that no run, watcher or second dialog starts while one
// of them is open. Rooms get their dialogs through one of these two; which of them depends on who asks.
#pragma once

#include <deque>
#include <string>

#include "platform/activity.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"

namespace kvr::platform {

// For sequences and for everything that a user starts: whoever shows a box holds the guard until it is answered. A
// sequence that holds the guard already just shows it.
class GuardedDialogs : public Dialogs {
 public:
  GuardedDialogs(Dialogs& dialogs, Activity& activity) : dialogs_(dialogs), activity_(activity) {}
  void message(const std::string& title, const std::string& text, BoxIcon icon) override;
  bool askYesNo(const std::string& title, const std::string& text) override;
  std::string openFile(const FileQuestion& question) override;
  std::string saveFile(const FileQuestion& question) override;
  void help(const std::string& title, const std::string& text) override { dialogs_.help(title, text); }
  void beep() override { dialogs_.beep(); }
  void setBusy(bool busy) override { dialogs_.setBusy(busy); }

 private:
  Dialogs& dialogs_;
  Activity& activity_;
};

// For a room that lives beside the sequences and never is one. While someone else holds the guard, a message waits
// until it is free, each text once; a question is answered No, or with no path, at once.
class WaitingDialogs : public GuardedDialogs {
 public:
  WaitingDialogs(EventLoop& loop, Dialogs& dialogs, Activity& activity);
  void message(const std::string& title, const std::string& text, BoxIcon icon) override;
  bool askYesNo(const std::string& title, const std::string& text) override;
  std::string openFile(const FileQuestion& question) override;
  std::string saveFile(const FileQuestion& question) override;

 private:
  struct Message {
    std::string title;
    std::string text;
    BoxIcon icon;
    bool operator==(const Message&) const = default;
  };
  void showWaiting();
  Activity& activity_;
  std::deque<Message> waiting_;
  Timer turn_;  // the guard is let go inside someone's last steps; the box comes after them
  Signal::Token token_;
};

}  // namespace kvr::platform
