// The link between one control and its widget, both ways: the control's changes are shown at once, what the user
// does is posted to the event loop as a gesture. Knows nothing of what any control means. The files bind_*.h make and
// bind one kind of widget each.
#pragma once

#include <QObject>
#include <QString>
#include <QWidget>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/controls.h"
#include "platform/event_loop.h"

namespace kvr::window {

// Lives as a child of its widget and ends with it; the control must outlive the widget.
class Binding : public QObject {
 public:
  // Names the widget, shows enabled, visible and tool tip, and lets the control take the focus. `show` brings the rest
  // of the control's state into the widget; it must not run any gesture.
  Binding(platform::EventLoop& loop, platform::Control& control, QWidget& widget, const QString& accessibleName,
          std::function<void()> show);

  // Queues what the user did. While gestures wait their turn the widget keeps what the user sees; from the last one on
  // it shows the control's state, also while that gesture has a message box open.
  void post(std::function<void()> gesture);
  // Calls `handler` on the signal for as long as the widget lives.
  void watch(platform::Signal& signal, std::function<void()> handler);

 private:
  void showAll();
  void showCommon();
  platform::EventLoop& loop_;
  platform::Control& control_;
  QWidget& widget_;
  std::function<void()> show_;
  std::vector<platform::Signal::Token> tokens_;
  int pending_ = 0;
  bool enabled_ = true;
  bool visible_ = true;
  std::string tip_;  // a control that never had one leaves the widget its own
};

QString qtText(const std::string& text);
// "textMsg", or "FrameX_3" for an element of an array.
QString objectNameOf(const platform::Control& control);
// A caption as buttons take it: an ampersand is shown as one, and one in front of the first `mnemonic` (if the
// caption has that letter) makes it the key that presses the button with Alt.
QString buttonText(const std::string& caption, char mnemonic = 0);

}  // namespace kvr::window
