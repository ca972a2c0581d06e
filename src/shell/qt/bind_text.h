// Text boxes: one line, or a pane that grows by appending.
#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>

#include "shell/qt/binding.h"

namespace kvr::window {

QLineEdit* makeLine(platform::EventLoop& loop, platform::TextBox& control, const QString& name);
// For reading; what is appended is appended, and the end stays in sight.
QPlainTextEdit* makePane(platform::EventLoop& loop, platform::TextBox& control, const QString& name);

// A button in the line that empties it, made with the first letter: its picture costs the window's start several
// milliseconds.
void addClearButton(QLineEdit& line);
// Calls `left` when the keyboard focus leaves the widget.
void onFocusLeft(QWidget& widget, std::function<void()> left);

}  // namespace kvr::window
