// Questions as windows of their own. They are opened, never executed: the waiting is done by the program's own loop, so
// bytes and timers go on meanwhile. A dialog whose window is closed, or which `closeAll` ends, answers No or nothing.
#pragma once

#include <QDialog>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <vector>

#include "platform/dialogs.h"
#include "platform/event_loop.h"

namespace kvr::window {

class QtDialogs : public platform::Dialogs {
 public:
  explicit QtDialogs(platform::EventLoop& loop) : loop_(loop) {}
  ~QtDialogs() override { closeAll(); }
  void setParent(QWidget* window) { window_ = window; }
  // Ends every open question; the window is going to close.
  void closeAll();
  std::function<void()> openHandbook;  // the button below a help text
  // The same for good: questions that come later are answered No at once.
  void refuse();

  void message(const std::string& title, const std::string& text,
               platform::BoxIcon icon = platform::BoxIcon::Information) override;
  bool askYesNo(const std::string& title, const std::string& text) override;
  void help(const std::string& title, const std::string& text) override;
  std::string openFile(const platform::FileQuestion& question) override;
  std::string saveFile(const platform::FileQuestion& question) override;
  void beep() override;
  void setBusy(bool busy) override;

 private:
  int run(QDialog& dialog);  // QDialog's result
  std::string askFile(const platform::FileQuestion& question, bool save);
  platform::EventLoop& loop_;
  QPointer<QWidget> window_;
  std::vector<QDialog*> open_;
  int closings_ = 0;
  bool busy_ = false;
  bool refusing_ = false;
};

// "(*.hex, *.bin)|*.hex;*.bin|All Files (*.*)|*.*" in Qt's form, one filter an element.
QStringList nameFiltersOf(const std::string& filter);

}  // namespace kvr::window
