// Makes the widgets of a page from its controls, and puts them into rows.
#pragma once

#include <QBoxLayout>
#include <QFormLayout>
#include <QGridLayout>
#include <initializer_list>

#include "shell/main_form.h"
#include "shell/qt/bind_buttons.h"
#include "shell/qt/bind_lists.h"
#include "shell/qt/bind_text.h"
#include "shell/qt/port_box.h"

namespace kvr::window {

// What the pages need of the window that they are in.
struct Maker {
  shell::MainForm& form;
  PortWatch& ports;
  platform::EventLoop& loop() const { return form.world.loop; }

  QPushButton* button(platform::Button& control, char mnemonic = 0, const QString& name = {}) const {
    return makeButton(loop(), control, mnemonic, name);
  }
  QCheckBox* check(platform::CheckBox& control, char mnemonic = 0, const QString& name = {}) const {
    return makeCheckBox(loop(), control, mnemonic, name);
  }
  QCheckBox* longCheck(platform::CheckBox& control) const { return makeLongCheckBox(loop(), control); }
  QRadioButton* option(platform::OptionButton& control, const QString& name = {}) const {
    return makeOption(loop(), control, name);
  }
  QLabel* label(platform::Label& control) const { return makeLabel(loop(), control); }
  QLineEdit* line(platform::TextBox& control, const QString& name, int columns = 0) const;
  QComboBox* combo(platform::ComboBox& control, const QString& name) const { return makeCombo(loop(), control, name); }
  QComboBox* portBox(platform::ComboBox& control, const QString& name) const {
    return makePortBox(loop(), control, ports, name);
  }
};

// Widgets side by side; a null pointer is a stretch.
QHBoxLayout* row(std::initializer_list<QWidget*> widgets);
// A caption; with a widget, the letter after "&" moves the focus to it.
QLabel* captionFor(const QString& text, QWidget* widget = nullptr);
// A caption and its box as one, which no line break comes between.
QWidget* together(QWidget* caption, QWidget* box);
// A tool tip that shows a text as it is: Qt would take a file's name such as "<b>.hex" for markup.
void setPlainTip(QWidget& widget, const QString& text);
// A label of several lines that wraps.
QLabel* note(const QString& text);
// Runs `show` now and at every change of the control, as long as the widget lives.
void follow(QWidget* widget, platform::Control& control, const std::function<void()>& show);
// The page with its object name and the usual margins around `layout`.
QWidget* page(const char* name, QLayout* layout);
// A page that scrolls when its place is too small.
QWidget* scrolling(QWidget* inner);

}  // namespace kvr::window
