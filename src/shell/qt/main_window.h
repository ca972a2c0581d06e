// The one window: the left column with the steps of a download, on the right the working pages above and the options
// below.
#pragma once

#include <QPointer>
#include <QSplitter>
#include <QWidget>

#include "platform/handbook.h"
#include "shell/qt/maker.h"
#include "shell/qt/page_stack.h"
#include "shell/qt/qt_dialogs.h"

namespace kvr::window {

class MainWindow : public QWidget {
 public:
  // `form` has been loaded. `gone` runs when the window has closed and nothing of the form's work is under way.
  MainWindow(shell::MainForm& form, PortWatch& ports, QtDialogs& dialogs, platform::Handbook& handbook,
             std::function<void()> gone);
  ~MainWindow() override;

  // Puts the window where it was last time, if that is still on a screen.
  void restorePlace();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  QWidget* rightSide();
  void openHandbook();
  QWidget* handbookButton();
  void followShrink();
  void showStrip();
  void fitToColumn();
  void finish();
  Maker maker_;
  QtDialogs& dialogs_;
  platform::Handbook& handbook_;
  std::function<void()> gone_;
  QWidget* left_ = nullptr;
  QWidget* strip_ = nullptr;  // in place of the left column; made when it is first wanted
  QWidget* right_ = nullptr;
  QWidget* lower_ = nullptr;  // of the right side
  QSplitter* halves_ = nullptr;
  std::vector<platform::Signal::Token> tokens_;
  bool shrunk_ = false;
  QRect place_;          // the window's own, as it was at the last press
  bool fitted_ = false;  // the window's width is the one without the left column
  bool mayClose_ = false;
  int shrunkBy_ = 0;
};

}  // namespace kvr::window
