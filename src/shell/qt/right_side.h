// The right side: working pages above, options and other ways to program below, each a tab bar with its pages. An area
// that is folded shows its tab bar only.
#pragma once

#include <QSplitter>
#include <array>

#include "shell/qt/maker.h"
#include "shell/qt/page_stack.h"

namespace kvr::window {

class RightSide : public QSplitter {
 public:
  // `corner`: buttons at the end of the upper tabs.
  RightSide(const Maker& maker, std::initializer_list<QWidget*> corner);
  // The area that the focus is in; the upper one while it is elsewhere.
  shell::Area areaOf(const QWidget* focus) const;

 protected:
  bool event(QEvent* event) override;

 private:
  struct Half {
    QWidget* whole = nullptr;
    QTabBar* tabs = nullptr;
    PageStack* pages = nullptr;
  };
  Half make(const Maker& maker, shell::Area area, QWidget* whole, std::initializer_list<QWidget*> corner);
  Half& half(shell::Area area) { return halves_[area == shell::Area::Upper ? 0 : 1]; }
  QWidget* tallButton(const Maker& maker, shell::Area area);
  void listen(const Maker& maker, shell::Area area, QTabBar& tabs);
  void follow();
  void fold(shell::Area area);
  shell::AreasRoom& room_;
  std::array<Half, 2> halves_;
  QList<int> shared_;  // the heights, as they were when both were last shown
  platform::Signal::Token token_;
};

}  // namespace kvr::window
