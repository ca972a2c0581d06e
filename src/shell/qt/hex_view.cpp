#include "shell/qt/hex_view.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QSignalBlocker>

namespace kvr::window {

using images::HexKey;
using images::HexSpot;

HexView::HexView(platform::EventLoop& loop, images::HexPane& pane, platform::ScrollBar& bar, const QString& name)
    : loop_(loop), pane_(pane), bar_(bar), geometry_(font()) {
  auto* scroll = verticalScrollBar();
  scroll->setObjectName(objectNameOf(bar));
  scroll->setAccessibleName(name + QStringLiteral(", scroll position"));
  binding_ = new Binding(loop, pane, *this, name, [this] { showModel(); });
  binding_->watch(bar_.changed, [this] { showModel(); });
  connect(scroll, &QScrollBar::valueChanged, this,
          [this](int value) { binding_->post([this, value] { bar_.userScroll(value); }); });
}

// Brings bars, picture and what assistive programs know in line with the model.
void HexView::showModel() {
  auto* scroll = verticalScrollBar();
  const QSignalBlocker quiet(scroll);
  scroll->setRange(0, std::max(bar_.maximum(), pane_.model.topLine()));
  scroll->setPageStep(pane_.model.pageLines());
  scroll->setValue(pane_.model.topLine());
  viewport()->update();
  tellCaret();
  Q_EMIT shown();
}

// A narrow view takes a somewhat smaller font before it scrolls sideways.
void HexView::fitFont() {
  QFont smaller = font();
  geometry_ = HexGeometry(smaller);
  for (const double scale : {0.95, 0.9, 0.85}) {
    if (geometry_.width() <= viewport()->width()) return;
    smaller.setPointSizeF(font().pointSizeF() * scale);
    geometry_ = HexGeometry(smaller);
  }
  if (geometry_.width() > viewport()->width()) geometry_ = HexGeometry(font());
}

void HexView::fit() {
  fitFont();
  const int lines = std::max(1, (viewport()->height() - geometry_.headHeight) / geometry_.lineHeight);
  pane_.model.setPageLines(lines);
  bar_.largeChange = lines;
  horizontalScrollBar()->setRange(0, std::max(0, geometry_.width() - viewport()->width()));
  horizontalScrollBar()->setPageStep(viewport()->width());
  horizontalScrollBar()->setSingleStep(geometry_.charWidth);
  showModel();
}

void HexView::tellCaret() {
  if (toldCaret_ == model().caret() || !QAccessible::isActive()) return;
  toldCaret_ = model().caret();
  QAccessibleTextCursorEvent event(this, textOffset(model(), toldCaret_));
  QAccessible::updateAccessibility(&event);
}

QRect HexView::cellRect(HexSpot spot) const {
  const int line = static_cast<int>((spot.address - model().firstAddress()) / 16);
  const int x = geometry_.digitX(static_cast<int>(spot.address % 16), spot.lowDigit) - horizontalScrollBar()->value();
  return {x, geometry_.rowY(line - model().topLine()), geometry_.charWidth, geometry_.lineHeight};
}

HexSpot HexView::spotAt(const QPoint& point) const {
  const int x = point.x() + horizontalScrollBar()->value();
  const int line = std::clamp(model().topLine() + geometry_.rowAt(point.y()), 0, std::max(0, model().lineCount() - 1));
  const std::int32_t address = model().firstAddress() + line * 16 + geometry_.columnAt(x);
  return {std::min(address, std::max(0, model().lastAddress())), geometry_.lowDigitAt(x)};
}

void HexView::copySelection() const {
  QApplication::clipboard()->setText(qtText(model().copyHex()));
}

void HexView::copyAs(images::CopyForm form) const {
  if (model().buffer() == nullptr) return;
  const std::int32_t caret = model().caret().address;
  const catalogue::AddressRange selected = model().selection();
  const catalogue::AddressRange span = selected.empty() ? catalogue::AddressRange{caret, caret} : selected;
  std::vector<std::uint8_t> bytes;
  for (std::int32_t at = span.first; at <= span.last; ++at) bytes.push_back(model().buffer()->at(at));
  QApplication::clipboard()->setText(qtText(images::copyText(bytes, form)));
}

void HexView::moveBy(std::function<void(images::HexViewModel&)> change) {
  binding_->post([this, change = std::move(change)] {
    change(pane_.model);
    pane_.userFound();
  });
}

void HexView::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  painter.setFont(geometry_.font);
  const int shift = horizontalScrollBar()->value();
  painter.translate(-shift, 0);
  const HexColours colours(palette());
  const HexPainting painting{geometry_, colours, model(), hasFocus(), isEnabled()};
  painting.draw(painter, event->rect().translated(shift, 0), viewport()->width() + shift);
}

void HexView::compare() {
  binding_->post([this] { pane_.userCompare(); });
}

void HexView::toDifference(bool forward) {
  moveBy([forward](images::HexViewModel& model) { model.toDifference(forward); });
}

// Undo, redo and what belongs to the second file.
bool HexView::changes(const QKeyEvent& event) {
  const bool control = event.modifiers() == Qt::ControlModifier;
  const bool redo = event.matches(QKeySequence::Redo) || (control && event.key() == Qt::Key_Y) ||
                    (event.key() == Qt::Key_Z && event.modifiers() == (Qt::ControlModifier | Qt::ShiftModifier));
  if (redo || event.matches(QKeySequence::Undo))
    binding_->post([this, redo] { pane_.userUndo(redo); });
  else if (control && event.key() == Qt::Key_D)
    compare();
  else if (event.key() == Qt::Key_F8)
    toDifference((event.modifiers() & Qt::ShiftModifier) == 0);
  else
    return false;
  return true;
}

bool HexView::command(QKeyEvent* event) {
  if (changes(*event)) return true;
  if (event->matches(QKeySequence::Copy))
    copySelection();
  else if (event->matches(QKeySequence::SelectAll))
    moveBy([](images::HexViewModel& model) { model.selectSpan({model.firstAddress(), model.lastAddress()}); });
  else if (event->matches(QKeySequence::Find))
    Q_EMIT findWanted();
  else if (event->key() == Qt::Key_G && event->modifiers() == Qt::ControlModifier)
    Q_EMIT goToWanted();
  else if (event->key() == Qt::Key_F3)
    Q_EMIT findAgain((event->modifiers() & Qt::ShiftModifier) == 0);
  else
    return false;
  return true;
}

void HexView::keyPressEvent(QKeyEvent* event) {
  if (command(event)) return;
  const bool control = (event->modifiers() & Qt::ControlModifier) != 0;
  const bool selecting = (event->modifiers() & Qt::ShiftModifier) != 0;
  std::optional<HexKey> key;
  switch (event->key()) {
    case Qt::Key_Left:
      key = HexKey::Left;
      break;
    case Qt::Key_Right:
      key = HexKey::Right;
      break;
    case Qt::Key_Up:
      key = HexKey::Up;
      break;
    case Qt::Key_Down:
      key = HexKey::Down;
      break;
    case Qt::Key_PageUp:
      key = HexKey::PageUp;
      break;
    case Qt::Key_PageDown:
      key = HexKey::PageDown;
      break;
    case Qt::Key_Home:
      key = control ? HexKey::First : HexKey::LineStart;
      break;
    case Qt::Key_End:
      key = control ? HexKey::Last : HexKey::LineEnd;
      break;
    default:
      break;
  }
  if (key) {
    binding_->post([this, key = *key, selecting] { pane_.userKey(key, selecting); });
    return;
  }
  const bool plain = (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) == 0;
  if (!plain || event->text().size() != 1 || !event->text().at(0).isLetterOrNumber()) {
    QAbstractScrollArea::keyPressEvent(event);  // such as Tab and the window's shortcuts
    return;
  }
  const char32_t typed = event->text().at(0).unicode();
  binding_->post([this, typed] { pane_.userType(typed); });
}

void HexView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const HexSpot spot = spotAt(event->position().toPoint());
  const bool selecting = (event->modifiers() & Qt::ShiftModifier) != 0;
  binding_->post([this, spot, selecting] { pane_.userClick(spot, selecting); });
}

void HexView::mouseMoveEvent(QMouseEvent* event) {
  if ((event->buttons() & Qt::LeftButton) == 0) return;
  const HexSpot spot = spotAt(event->position().toPoint());
  if (spot.address == model().caret().address) return;
  binding_->post([this, spot] { pane_.userClick(spot, true); });
}

void HexView::contextMenuEvent(QContextMenuEvent* event) {
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (const bool again : {false, true}) {
    auto* action = menu->addAction(again ? QStringLiteral("Redo") : QStringLiteral("Undo"), this,
                                   [this, again] { binding_->post([this, again] { pane_.userUndo(again); }); });
    action->setShortcut(again ? QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z) : QKeySequence::Undo);
    action->setEnabled(pane_.offersUndo(again));
  }
  menu->addSeparator();
  menu->addAction(QStringLiteral("Copy as hexadecimal"), this, [this] { copySelection(); });
  menu->addAction(QStringLiteral("Copy as C array"), this, [this] { copyAs(images::CopyForm::CArray); });
  menu->addAction(QStringLiteral("Copy as text"), this, [this] { copyAs(images::CopyForm::Text); });
  menu->addAction(QStringLiteral("Find..."), this, [this] { Q_EMIT findWanted(); });
  menu->addAction(QStringLiteral("Go to address..."), this, [this] { Q_EMIT goToWanted(); });
  menu->addSeparator();
  menu->addAction(QStringLiteral("Compare with a file..."), this, [this] { compare(); });
  menu->popup(event->globalPos());
}

void HexView::scrollContentsBy(int, int) {
  viewport()->update();
}

QSize HexView::sizeHint() const {
  return {geometry_.width() + verticalScrollBar()->sizeHint().width() + 2 * frameWidth(),
          geometry_.rowY(16) + 2 * frameWidth()};
}

}  // namespace kvr::window
