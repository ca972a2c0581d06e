#include "platform/controls.h"

#include "platform/text.h"

namespace kvr::platform {
namespace {

bool isTrue(const std::string& value) {
  return upper(trim(value)) == "TRUE" || valueOf(value) != 0;
}

}  // namespace

Signal::Token Signal::watch(std::function<void()> observer) const {
  std::erase_if(watched_, [](const auto& weak) { return weak.expired(); });
  auto kept = std::make_shared<std::function<void()>>(std::move(observer));
  watched_.push_back(kept);
  return kept;
}

void Signal::emit() const {
  const auto observers = watched_;
  for (const auto& weak : observers)
    if (const auto observer = weak.lock()) (*observer)();
}

std::string Label::property(std::string_view name) const {
  return name == "Caption" ? caption_ : std::string();
}

void Label::setProperty(std::string_view name, const std::string& value) {
  if (name == "Caption") setCaption(value);
}

void Lamp::press() {
  if (enabled() && onClick) onClick();
}

void Button::press() {
  if (enabled() && onClick) onClick();
}

void CheckBox::userSet(bool on) {
  if (!enabled()) return;
  setValue(on);
  if (onClick) onClick();
}

std::string CheckBox::property(std::string_view name) const {
  return name == "Value" ? (value_ ? "1" : "0") : Label::property(name);
}

void CheckBox::setProperty(std::string_view name, const std::string& value) {
  if (name == "Value")
    setValue(isTrue(value));
  else
    Label::setProperty(name, value);
}

void OptionGroup::add(OptionButton& button) {
  button.group_ = this;
  buttons_.push_back(&button);
}

void OptionButton::setValue(bool on) {
  if (value_ == on) return;
  value_ = on;
  if (on && group_)
    for (auto* other : group_->buttons_)
      if (other != this) other->setValue(false);
  changed.emit();
}

void OptionButton::userChoose() {
  if (!enabled()) return;
  setValue(true);
  if (onClick) onClick();
}

std::string OptionButton::property(std::string_view name) const {
  return name == "Value" ? (value_ ? "True" : "False") : Label::property(name);
}

void OptionButton::setProperty(std::string_view name, const std::string& value) {
  if (name == "Value")
    setValue(isTrue(value));
  else
    Label::setProperty(name, value);
}

std::string TextBox::trimmed() const {
  return trim(text_);
}

void TextBox::setText(const std::string& text) {
  selStart_ = text.size();
  selLength_ = 0;
  update(text_, text);
}

void TextBox::append(std::string_view text) {
  if (text.empty()) return;
  text_ += text;
  selStart_ = text_.size();
  selLength_ = 0;
  lastAppended = text;
  appended.emit();
}

void TextBox::appendLine(std::string_view text) {
  append("\n" + std::string(text));
}

void TextBox::select(std::size_t start, std::size_t length) {
  start = std::min(start, text_.size());
  length = std::min(length, text_.size() - start);
  if (start == selStart_ && length == selLength_) return;
  selStart_ = start;
  selLength_ = length;
  changed.emit();
}

void TextBox::userType(const std::string& text) {
  if (!enabled()) return;
  setText(text);
  if (onChange) onChange();
}

void TextBox::userLeave() {
  if (onLeave) onLeave();
}

bool TextBox::userKey(char32_t key) {
  return enabled() && onKeyPress && onKeyPress(key);
}

std::string TextBox::property(std::string_view name) const {
  return name == "Text" ? text_ : std::string();
}

void TextBox::setProperty(std::string_view name, const std::string& value) {
  if (name == "Text") setText(value);
}

void ComboBox::setItems(std::vector<std::string> items) {
  if (items == items_) return;
  items_ = std::move(items);
  const auto found = std::find(items_.begin(), items_.end(), text_);
  index_ = found == items_.end() ? -1 : static_cast<int>(found - items_.begin());
  if (index_ < 0 && !editable_) text_.clear();
  changed.emit();
}

void ComboBox::setListIndex(int index) {
  if (index < 0 || index >= static_cast<int>(items_.size())) return;
  const std::string& text = items_[static_cast<std::size_t>(index)];
  if (index == index_ && text == text_) return;
  index_ = index;
  text_ = text;
  changed.emit();
}

void ComboBox::setText(const std::string& text) {
  const auto found = std::find(items_.begin(), items_.end(), text);
  if (found == items_.end() && !editable_) return;
  const int index = found == items_.end() ? -1 : static_cast<int>(found - items_.begin());
  if (index == index_ && text == text_) return;
  index_ = index;
  text_ = text;
  changed.emit();
}

std::string ComboBox::trimmed() const {
  return trim(text_);
}

void ComboBox::userPick(int index) {
  if (!enabled()) return;
  setListIndex(index);
  if (onClick) onClick();
}

void ComboBox::userType(const std::string& text) {
  if (!enabled() || !editable_) return;
  setText(text);
  if (onChange) onChange();
}

void ComboBox::userLeave() {
  if (onLeave) onLeave();
}

std::string ComboBox::property(std::string_view name) const {
  if (name == "Text") return text_;
  return name == "ListIndex" ? std::to_string(index_) : std::string();
}

void ComboBox::setProperty(std::string_view name, const std::string& value) {
  if (name == "Text") setText(value);
  if (name == "ListIndex") setListIndex(wholeOf(value));
}

void ProgressBar::setRange(int minimum, int maximum) {
  minimum_ = minimum;
  maximum_ = std::max(minimum, maximum);
  value_ = std::clamp(value_, minimum_, maximum_);
  changed.emit();
}

void ScrollBar::setRange(int minimum, int maximum) {
  maximum = std::max(minimum, maximum);
  if (minimum == minimum_ && maximum == maximum_) return;
  minimum_ = minimum;
  maximum_ = maximum;
  value_ = std::clamp(value_, minimum_, maximum_);
  changed.emit();
}

void ScrollBar::userScroll(int value) {
  if (!enabled()) return;
  const int before = value_;
  setValue(value);
  if (value_ != before && onChange) onChange();
}

void TabStrip::setCaption(std::string_view key, const std::string& caption) {
  for (auto& tab : tabs_)
    if (tab.key == key) update(tab.caption, caption);
}

std::string TabStrip::selectedKey() const {
  const auto index = static_cast<std::size_t>(selected_);
  return index < tabs_.size() ? tabs_[index].key : std::string();
}

void TabStrip::select(int index) {
  if (index < 0 || index >= static_cast<int>(tabs_.size())) return;
  if (tabs_[static_cast<std::size_t>(index)].available()) update(selected_, index);
}

void TabStrip::select(std::string_view key) {
  for (std::size_t i = 0; i < tabs_.size(); ++i)
    if (tabs_[i].key == key) select(static_cast<int>(i));
}

void TabStrip::userSelect(int index) {
  if (!enabled()) return;
  select(index);
  if (onClick) onClick();
}

void Tree::selectKey(const std::string& key) {
  const bool known = std::any_of(nodes_.begin(), nodes_.end(), [&](const Node& node) { return node.key == key; });
  update(selected_, known ? key : std::string());
}

void Tree::userPick(const std::string& key) {
  if (!enabled()) return;
  selectKey(key);
  if (onClick) onClick();
}

Control* ControlRegistry::find(std::string_view name, int index) const {
  for (auto* control : controls_)
    if (control->name() == name && control->index() == index) return control;
  return nullptr;
}

}  // namespace kvr::platform
