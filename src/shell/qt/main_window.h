// The one window: the left column with the steps of a download, on the right the working pages above and the options
// below.
#pragma once

#include <QPointer>
#include <QSplitter>
#include <QWidget>

#include "platform/handbook.h"
#include "shell/qt/maker.h"
#include "shell/qt/qt_dialogs.h"
#include "shell/qt/right_side.h"

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
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  QWidget* rightSide();
  void openHandbook();
  void toggleHeight();
  QWidget* handbookButton();
  void followShrink();
  void showStrip();
  void fit();
  QRect stripPlace(const QRect& narrow) const;
  void finish();
  Maker maker_;
  QtDialogs& dialogs_;
  platform::Handbook& handbook_;
  std::function<void()> gone_;
  QWidget* left_ = nullptr;
  QWidget* strip_ = nullptr;  // in place of the left column; made when it is first wanted
  QWidget* right_ = nullptr;
  RightSide* pages_ = nullptr;  // of the right side
  QWindow* screen_ = nullptr;   // tells of the screen that it is on
  QSplitter* halves_ = nullptr;
  bool dragged_ = false;  // the user has chosen the halves' widths
  std::vector<platform::Signal::Token> tokens_;
  // All of it; without the left column; only the strip.
  enum class Shape { Whole, Narrow, Strip };
  Shape wanted() const;
  Shape shape_ = Shape::Whole;   // that the window's parts have
  Shape fitted_ = Shape::Whole;  // that the window's place has
  QRect place_;                  // the window's own, as it was at the last press
  QRect narrow_;                 // to go back to from the strip
  QRect strip_place_;
  bool maximised_ = false;  // before it became a strip
  bool mayClose_ = false;
  int shrunkBy_ = 0;
};

}  // namespace kvr::window
