// The receive pane as a control: text that only grows at its end, or goes at its head, and a selection in it. A view
// draws it; keys that a user types into it go to the handler and not into the text.
#pragma once

#include "comtool/pane_text.h"
#include "platform/controls.h"

namespace kvr::comtool {

class ReceivePane : public platform::Control {
 public:
  using Control::Control;
  using Position = PaneText::Position;

  const PaneText& content() const { return text_; }
  std::size_t length() const { return text_.chars(); }  // characters
  std::string text() const { return text_.all(); }      // all of it: for saving and for tests, not for drawing

  void append(std::string_view text);  // emits `appended`, not `changed`
  void setText(std::string_view text);
  void clear() { setText({}); }
  void keepNewest(std::size_t chars);  // the oldest text goes
  void setWidth(int columns);          // the view tells how many columns it shows

  // What is selected, from `anchor` to `caret` in either order. Text that goes takes its part of the selection along.
  void select(Position anchor, Position caret);
  Position anchor() const { return anchor_; }
  Position caret() const { return caret_; }
  PaneText::Range selection() const;
  std::string selectedText() const { return text_.slice(selection()); }
  // Selects a range and asks the view to bring it into sight.
  void show(PaneText::Range range);

  bool userKey(char32_t key) { return enabled() && onKeyPress && onKeyPress(key); }  // true: it was sent
  // Keys that send bytes as they are, such as the arrows; true: they were sent.
  bool userKeyBytes(std::string_view bytes) { return enabled() && onKeyBytes && onKeyBytes(bytes); }
  bool userPaste(const std::string& text) { return enabled() && onPaste && onPaste(text); }  // true: it goes out
  bool takesKeys() const { return enabled() && sendsKeys && sendsKeys(); }                   // keys typed now are sent
  std::string property(std::string_view name) const override;                                // "Text"
  void setProperty(std::string_view name, const std::string& value) override;

  platform::Signal appended;
  std::function<bool(char32_t)> onKeyPress;
  std::function<bool(std::string_view)> onKeyBytes;
  std::function<bool(const std::string&)> onPaste;
  std::function<bool()> sendsKeys;
  std::function<void()> pasteRequest;           // set by the view: paste what the clipboard holds
  std::function<void(Position)> revealRequest;  // set by the view

 private:
  PaneText text_;
  Position anchor_ = 0;
  Position caret_ = 0;
};

}  // namespace kvr::comtool
