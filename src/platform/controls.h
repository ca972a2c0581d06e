// The window's controls as plain objects: the program's state and its command surface. A window binds a widget to each;
// the virtual world drives them directly.
//
// Two ways to change one:
//  * code sets a property (`setText`, `setValue`, ...): the state changes, `changed` is emitted (for bindings and for
//    saving), no handler runs;
//  * a gesture of the user (`press`, `userSet`, `userPick`, ...): only when the control is enabled; the state changes,
//    `changed` is emitted, and then the handler (`onClick`, `onChange`) runs. Bindings post gestures through the event
//    loop.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/signal.h"

namespace kvr::platform {

class Control {
 public:
  static constexpr int kSingle = -1;
  explicit Control(std::string name, int index = kSingle) : name_(std::move(name)), index_(index) {}
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  const std::string& name() const { return name_; }
  int index() const { return index_; }
  bool enabled() const { return enabled_; }
  bool visible() const { return visible_; }
  const std::string& toolTip() const { return toolTip_; }
  void setEnabled(bool on) { update(enabled_, on); }
  void setVisible(bool on) { update(visible_, on); }
  void setToolTip(const std::string& text) { update(toolTip_, text); }
  // Properties by their name, as option rows and project keys reach them ("Caption", "Value", "Text", "ListIndex").
  // A property that the control lacks reads empty and ignores what is set.
  virtual std::string property(std::string_view) const { return {}; }
  virtual void setProperty(std::string_view, const std::string&) {}

  Signal changed;                      // any property but focus
  std::function<void()> focusRequest;  // set by the binding: this control takes the focus
  void setFocus() const {
    if (focusRequest) focusRequest();
  }

 protected:
  template <class T, class U>
  bool update(T& property, const U& value) {
    if (property == value) return false;
    property = value;
    changed.emit();
    return true;
  }

 private:
  std::string name_;
  int index_;
  bool enabled_ = true;
  bool visible_ = true;
  std::string toolTip_;
};

// A control with a caption that the user only reads: labels, frames.
class Label : public Control {
 public:
  using Control::Control;
  const std::string& caption() const { return caption_; }
  void setCaption(const std::string& text) { update(caption_, text); }
  std::string property(std::string_view name) const override;
  void setProperty(std::string_view name, const std::string& value) override;

 private:
  std::string caption_;
};
class Frame : public Label {
 public:
  using Label::Label;
};

// A lamp: one of a pair of pictures that lie on each other; `on` when the "open" picture is on top.
class Lamp : public Control {
 public:
  using Control::Control;
  bool on() const { return on_; }
  void setOn(bool on) { update(on_, on); }
  void press();
  std::function<void()> onClick;

 private:
  bool on_ = false;
};

class Button : public Label {
 public:
  using Label::Label;
  void press();  // by the user
  std::function<void()> onClick;
};

class CheckBox : public Label {
 public:
  using Label::Label;
  bool value() const { return value_; }
  void setValue(bool on) { update(value_, on); }
  void userSet(bool on);
  std::string property(std::string_view name) const override;  // "Value": "0" or "1"
  void setProperty(std::string_view name, const std::string& value) override;
  std::function<void()> onClick;

 private:
  bool value_ = false;
};

class OptionButton;
// Buttons that exclude each other: switching one on switches the others off.
class OptionGroup {
 public:
  void add(OptionButton& button);

 private:
  friend class OptionButton;
  std::vector<OptionButton*> buttons_;
};

class OptionButton : public Label {
 public:
  using Label::Label;
  bool value() const { return value_; }
  void setValue(bool on);
  void userChoose();
  std::string property(std::string_view name) const override;                  // "Value": "True" or "False"
  void setProperty(std::string_view name, const std::string& value) override;  // "True", "False", or a number
  const OptionGroup* group() const { return group_; }
  std::function<void()> onClick;

 private:
  friend class OptionGroup;
  OptionGroup* group_ = nullptr;
  bool value_ = false;
};

class TextBox : public Control {
 public:
  using Control::Control;
  const std::string& text() const { return text_; }
  std::string trimmed() const;
  void setText(const std::string& text);   // caret to the end
  void append(std::string_view text);      // at the end; caret to the end
  void appendLine(std::string_view text);  // a line break, then the text
  void clear() { setText({}); }
  std::size_t selStart() const { return selStart_; }
  std::size_t selLength() const { return selLength_; }
  void select(std::size_t start, std::size_t length);
  void userType(const std::string& text);  // the user's edit left this text in the box
  void userLeave();                        // the focus went elsewhere
  bool userKey(char32_t key);              // one typed character; true: a handler took it
  std::string property(std::string_view name) const override;
  void setProperty(std::string_view name, const std::string& value) override;

  Signal appended;  // in place of `changed` when text was added at the end; `lastAppended` tells what
  std::string lastAppended;
  std::function<void()> onChange;
  std::function<void()> onLeave;
  std::function<bool(char32_t)> onKeyPress;

 private:
  std::string text_;
  std::size_t selStart_ = 0;
  std::size_t selLength_ = 0;
};

// A list to pick from; an editable one takes free text, too. `text` follows the picked item.
class ComboBox : public Control {
 public:
  using Control::Control;
  const std::vector<std::string>& items() const { return items_; }
  void setItems(std::vector<std::string> items);  // keeps the text when an item has it, else picks nothing
  int listIndex() const { return index_; }
  void setListIndex(int index);  // no item has it (-1, too): nothing changes
  const std::string& text() const { return text_; }
  void setText(const std::string& text);  // picks the item of that text; without one only an editable box takes it
  std::string trimmed() const;
  bool editable() const { return editable_; }
  void setEditable(bool on) { update(editable_, on); }
  void userPick(int index);
  void userType(const std::string& text);
  void userLeave();
  std::string property(std::string_view name) const override;  // "Text", "ListIndex"
  void setProperty(std::string_view name, const std::string& value) override;
  std::function<void()> onClick;   // an item was picked
  std::function<void()> onChange;  // text was typed
  std::function<void()> onLeave;

 private:
  std::vector<std::string> items_;
  std::string text_;
  int index_ = -1;
  bool editable_ = false;
};

class ListBox : public Control {
 public:
  using Control::Control;
  const std::vector<std::string>& rows() const { return rows_; }
  void setRows(std::vector<std::string> rows) { update(rows_, std::move(rows)); }
  const std::vector<bool>& selected() const { return selected_; }  // may be shorter than the rows: not selected
  void setSelected(std::vector<bool> selected) { update(selected_, std::move(selected)); }

 private:
  std::vector<std::string> rows_;
  std::vector<bool> selected_;
};

class ProgressBar : public Control {
 public:
  using Control::Control;
  int minimum() const { return minimum_; }
  int maximum() const { return maximum_; }
  int value() const { return value_; }
  void setRange(int minimum, int maximum);
  void setValue(int value) { update(value_, std::clamp(value, minimum_, maximum_)); }

 private:
  int minimum_ = 0;
  int maximum_ = 100;
  int value_ = 0;
};

class ScrollBar : public Control {
 public:
  using Control::Control;
  int minimum() const { return minimum_; }
  int maximum() const { return maximum_; }
  int value() const { return value_; }
  int largeChange = 16;
  void setRange(int minimum, int maximum);  // a maximum below the minimum becomes the minimum
  void setValue(int value) { update(value_, std::clamp(value, minimum_, maximum_)); }
  void userScroll(int value);
  std::function<void()> onChange;

 private:
  int minimum_ = 0;
  int maximum_ = 64;
  int value_ = 0;
};

// Tabs with keys. A tab that reads "_no_" does not apply to the model and cannot be selected.
class TabStrip : public Control {
 public:
  struct Tab {
    std::string key;
    std::string caption;
    bool operator==(const Tab&) const = default;
    bool available() const { return caption != "_no_"; }
  };
  using Control::Control;
  const std::vector<Tab>& tabs() const { return tabs_; }
  void setTabs(std::vector<Tab> tabs) { update(tabs_, std::move(tabs)); }
  void setCaption(std::string_view key, const std::string& caption);  // an unknown key does nothing
  int selected() const { return selected_; }
  std::string selectedKey() const;
  void select(int index);  // by code; a tab that reads "_no_" stays unselected
  void select(std::string_view key);
  void userSelect(int index);
  std::function<void()> onClick;

 private:
  std::vector<Tab> tabs_;
  int selected_ = 0;
};

// A two-level tree: nodes with a key and a text below parents.
class Tree : public Control {
 public:
  struct Node {
    std::string key;
    std::string parent;  // empty: top level
    std::string text;
    bool operator==(const Node&) const = default;
  };
  using Control::Control;
  const std::vector<Node>& nodes() const { return nodes_; }
  void setNodes(std::vector<Node> nodes) { update(nodes_, std::move(nodes)); }
  const std::string& selectedKey() const { return selected_; }
  void selectKey(const std::string& key);  // a key that no node has selects nothing
  void userPick(const std::string& key);
  std::function<void()> onClick;

 private:
  std::vector<Node> nodes_;
  std::string selected_;
};

// Arrays of like controls that share a name: elements are numbered from 0.
template <class T, std::size_t N>
class ControlArray {
 public:
  explicit ControlArray(const std::string& name) {
    for (std::size_t i = 0; i < N; ++i) elements_.push_back(std::make_unique<T>(name, static_cast<int>(i)));
  }
  T& operator[](std::size_t index) { return *elements_.at(index); }
  const T& operator[](std::size_t index) const { return *elements_.at(index); }
  static constexpr std::size_t size() { return N; }

 private:
  std::vector<std::unique_ptr<T>> elements_;
};

// Every control of the window by name and index. The composition root fills it; it owns nothing.
class ControlRegistry {
 public:
  void add(Control& control) { controls_.push_back(&control); }
  template <class T, std::size_t N>
  void add(ControlArray<T, N>& array) {
    for (std::size_t i = 0; i < N; ++i) add(array[i]);
  }
  template <class... C>
  void addAll(C&... controls) {
    (add(controls), ...);
  }
  Control* find(std::string_view name, int index = Control::kSingle) const;
  template <class T>
  T* findAs(std::string_view name, int index = Control::kSingle) const {
    return dynamic_cast<T*>(find(name, index));
  }
  const std::vector<Control*>& all() const { return controls_; }

 private:
  std::vector<Control*> controls_;
};

}  // namespace kvr::platform
