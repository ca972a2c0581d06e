#include "shell/qt/right_side.h"

#include <QToolButton>

#include "shell/qt/pages/pages.h"

namespace kvr::window {

using shell::Area;

RightSide::RightSide(const Maker& maker, std::initializer_list<QWidget*> corner)
    : QSplitter(Qt::Vertical), room_(maker.form.areas) {
  setObjectName(QStringLiteral("rightSplitter"));
  setChildrenCollapsible(false);
  auto& frame = maker.form.main.FrameX[3];
  halves_ = {make(maker, Area::Upper, new QWidget, corner),
             make(maker, Area::Lower, makeFrame(maker.loop(), frame), {})};
  halves_[1].whole->layout()->setContentsMargins(4, 2, 4, 4);
  for (int i = 0; i < 2; ++i) setStretchFactor(i, 1);
  token_ = room_.changed.watch([this] { follow(); });
  follow();
}

RightSide::Half RightSide::make(const Maker& maker, Area area, QWidget* whole, std::initializer_list<QWidget*> corner) {
  auto& panel = maker.form.main;
  const bool upper = area == Area::Upper;
  auto& strip = upper ? panel.TabStrip2 : panel.TabStrip1;
  auto* column = new QVBoxLayout(whole);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  auto* tabs = makeTabs(maker.loop(), strip,
                        upper ? QStringLiteral("Buffers, terminal, project, registers")
                              : QStringLiteral("Options and other ways to program"));
  auto* head = row({tabs, tallButton(maker, area)});
  head->setStretch(0, 1);
  for (QWidget* button : corner) head->addWidget(button);
  column->addLayout(head);
  auto* pages = new PageStack(strip, upper ? upperPages(maker) : lowerPages(maker));
  column->addWidget(pages, 1);
  listen(maker, area, *tabs);
  addWidget(whole);
  return {whole, tabs, pages};
}

void RightSide::listen(const Maker& maker, Area area, QTabBar& tabs) {
  auto& loop = maker.loop();
  connect(&tabs, &QTabBar::tabBarClicked, this,
          [&loop, &room = room_, area] { loop.post([&room, area] { room.pressed(area); }); });
  connect(&tabs, &QTabBar::tabBarDoubleClicked, this,
          [&loop, &room = room_, area] { loop.post([&room, area] { room.doubleClicked(area); }); });
}

// Its arrow says where the edge between the areas goes.
QWidget* RightSide::tallButton(const Maker& maker, Area area) {
  auto& control = maker.form.main.comTall[area == Area::Upper ? 0 : 1];
  auto* button = new QToolButton;
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::TabFocus);
  auto* binding = new Binding(maker.loop(), control, *button, qtText(control.caption()), [this, button, area] {
    const bool alone = room_.heights() == shell::aloneOf(area);
    button->setArrowType((area == Area::Upper) == alone ? Qt::UpArrow : Qt::DownArrow);
  });
  connect(button, &QToolButton::clicked, binding,
          [binding, &control] { binding->post([&control] { control.press(); }); });
  return button;
}

Area RightSide::areaOf(const QWidget* focus) const {
  return focus && halves_[1].whole->isAncestorOf(focus) ? Area::Lower : Area::Upper;
}

void RightSide::follow() {
  const bool shown = !halves_[0].pages->isHidden() && !halves_[1].pages->isHidden();
  if (shown && room_.heights() != shell::Heights::Both) shared_ = sizes();
  for (const Area area : {Area::Upper, Area::Lower}) fold(area);
  handle(1)->setEnabled(room_.heights() == shell::Heights::Both);
  if (room_.heights() == shell::Heights::Both && !shared_.isEmpty()) setSizes(shared_);
}

// The focus must not be lost with a page.
void RightSide::fold(Area area) {
  const bool folded = room_.folded(area);
  Half& one = half(area);
  if (folded && one.pages->isAncestorOf(one.whole->window()->focusWidget())) one.tabs->setFocus();
  one.pages->fold(folded);
  one.whole->setMaximumHeight(QWIDGETSIZE_MAX);
  if (folded) one.whole->setMaximumHeight(one.whole->sizeHint().height());
}

// With another font a tab bar has another height.
bool RightSide::event(QEvent* event) {
  const bool taken = QSplitter::event(event);
  if (event->type() == QEvent::LayoutRequest)
    for (const Area area : {Area::Upper, Area::Lower})
      if (room_.folded(area)) half(area).whole->setMaximumHeight(half(area).whole->sizeHint().height());
  return taken;
}

}  // namespace kvr::window
