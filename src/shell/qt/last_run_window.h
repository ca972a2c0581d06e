// The window with the picture of the last run, above the run that it is best compared with. It stays open beside the
// work and follows it.
#pragma once

#include <QDialog>

#include "shell/main_form.h"
#include "shell/qt/run_picture_view.h"

namespace kvr::window {

class LastRunWindow : public QDialog {
 public:
  LastRunWindow(shell::MainForm& form, QWidget* parent);

 private:
  void follow();
  void save();
  shell::MainForm& form_;
  RunPictureView* view_;
  platform::Signal::Token token_;
  platform::Signal::Token workToken_;
};

// Opens it, or brings it to the front.
void showLastRun(shell::MainForm& form, QWidget& parent);

}  // namespace kvr::window
