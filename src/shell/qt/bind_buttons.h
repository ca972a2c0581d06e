// Buttons, check boxes, option buttons, labels, frames and lamps.
#pragma once

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include "shell/qt/binding.h"

namespace kvr::window {

QPushButton* makeButton(platform::EventLoop& loop, platform::Button& control, char mnemonic = 0,
                        const QString& name = {});
QCheckBox* makeCheckBox(platform::EventLoop& loop, platform::CheckBox& control, char mnemonic = 0,
                        const QString& name = {});
// With a caption that goes on in a next line where the place is too narrow.
QCheckBox* makeLongCheckBox(platform::EventLoop& loop, platform::CheckBox& control);
QRadioButton* makeOption(platform::EventLoop& loop, platform::OptionButton& control, const QString& name = {});
// A label whose text can be selected with the mouse.
class SelectableLabel : public QLabel {
 public:
  using QLabel::QLabel;

 protected:
  void enterEvent(QEnterEvent* event) override;
};
QLabel* makeLabel(platform::EventLoop& loop, platform::Label& control, const QString& name = {});
QGroupBox* makeGroup(const QString& title = {});
QGroupBox* makeFrame(platform::EventLoop& loop, platform::Frame& control, const QString& name = {});
// A small round light, green when on. Pressing it is a gesture.
QWidget* makeLamp(platform::EventLoop& loop, platform::Lamp& control, const QString& name);

}  // namespace kvr::window
