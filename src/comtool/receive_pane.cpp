#include "comtool/receive_pane.h"

#include <algorithm>

namespace kvr::comtool {

void ReceivePane::append(std::string_view text) {
  if (text.empty()) return;
  text_.append(text);
  appended.emit();
}

void ReceivePane::setText(std::string_view text) {
  if (text.empty() && text_.chars() == 0) return;
  text_.clear();
  text_.append(text);
  anchor_ = caret_ = text_.end();
  changed.emit();
}

void ReceivePane::keepNewest(std::size_t chars) {
  if (text_.chars() <= chars) return;
  text_.keepNewest(chars);
  anchor_ = std::max(anchor_, text_.begin());
  caret_ = std::max(caret_, text_.begin());
  changed.emit();
}

void ReceivePane::setWidth(int columns) {
  if (columns == text_.width()) return;
  text_.setWidth(columns);
  changed.emit();
}

void ReceivePane::select(Position anchor, Position caret) {
  anchor = std::clamp(anchor, text_.begin(), text_.end());
  caret = std::clamp(caret, text_.begin(), text_.end());
  if (anchor == anchor_ && caret == caret_) return;
  anchor_ = anchor;
  caret_ = caret;
  changed.emit();
}

PaneText::Range ReceivePane::selection() const {
  return {std::min(anchor_, caret_), std::max(anchor_, caret_)};
}

void ReceivePane::show(PaneText::Range range) {
  select(range.from, range.to);
  if (revealRequest) revealRequest(range.from);
}

std::string ReceivePane::property(std::string_view name) const {
  return name == "Text" ? text() : std::string();
}

void ReceivePane::setProperty(std::string_view name, const std::string& value) {
  if (name == "Text") setText(value);
}

}  // namespace kvr::comtool
