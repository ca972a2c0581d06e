// Combo boxes, list boxes, tab strips, progress bars.
#pragma once

#include <QComboBox>
#include <QListWidget>
#include <QProgressBar>
#include <QTabBar>

#include "shell/qt/binding.h"

namespace kvr::window {

// A combo box that never shrinks below its usual size. Qt's own minimum would measure every entry a second time.
class ComboWidget : public QComboBox {
 public:
  QSize minimumSizeHint() const override { return sizeHint(); }
};

QComboBox* makeCombo(platform::EventLoop& loop, platform::ComboBox& control, const QString& name);
// Binds a box that was made elsewhere, such as one with a popup of its own.
void bindCombo(platform::EventLoop& loop, platform::ComboBox& control, QComboBox& box, const QString& name);
QListWidget* makeList(platform::EventLoop& loop, platform::ListBox& control, const QString& name);
QTabBar* makeTabs(platform::EventLoop& loop, platform::TabStrip& control, const QString& name);
QProgressBar* makeProgress(platform::EventLoop& loop, platform::ProgressBar& control, const QString& name);

}  // namespace kvr::window
