// What the user does in the receive pane: keys, selecting, the menu.
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>
#include <cctype>
#include <map>

#include "comtool/key_bytes.h"
#include "comtool/text_cells.h"
#include "shell/qt/terminal_view.h"

namespace kvr::window {

// Every character is a gesture of its own, as a key is.
void TerminalView::typed(const QString& text) {
  for (const char32_t key : text.toUcs4()) loop_.post([&pane = pane_, key] { pane.userKey(key); });
}

void TerminalView::send(std::string_view bytes) {
  loop_.post([&pane = pane_, keys = std::string(bytes)] { pane.userKeyBytes(keys); });
}

// A key that is typed here is meant for the device: no letter with Alt, and no shortcut of the window, takes it away.
// Function keys are not sent and stay the window's own, such as F1 for the handbook.
bool TerminalView::event(QEvent* event) {
  if (event->type() != QEvent::ShortcutOverride) return TextArea::event(event);
  const int key = static_cast<QKeyEvent*>(event)->key();
  event->setAccepted(key < Qt::Key_F1 || key > Qt::Key_F35);
  return true;
}

// Tab is a key like any other while keys are sent; Shift+Tab and Ctrl+Tab always lead out of the pane.
bool TerminalView::focusNextPrevChild(bool next) {
  return !(next && pane_.takesKeys()) && TextArea::focusNextPrevChild(next);
}

void TerminalView::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Tab && (event->modifiers() & Qt::ControlModifier)) {
    TextArea::focusNextPrevChild(true);
    return;
  }
  if (editedByKey(*event)) return;
  if (pane_.takesKeys() && sentByKey(*event)) return;
  if (scrolledByKey(*event)) return;
  if (event->text().isEmpty() || (event->modifiers() & Qt::AltModifier)) return event->ignore();
  typed(event->text());
}

// Copying goes first while something is selected; otherwise Ctrl+C is a key that is sent like any other.
bool TerminalView::editedByKey(QKeyEvent& event) {
  const bool shifted = event.modifiers() == (Qt::ControlModifier | Qt::ShiftModifier);
  const bool inserts = event.key() == Qt::Key_Insert && event.modifiers() == Qt::ShiftModifier;
  if ((event.matches(QKeySequence::Copy) && !pane_.selection().empty()) || (shifted && event.key() == Qt::Key_C))
    copy();
  else if (shifted && event.key() == Qt::Key_A)
    selectAll();
  else if (inserts || (shifted && event.key() == Qt::Key_V))
    paste();
  else
    return false;
  return true;
}

// With Shift or Ctrl the arrow keys and their like scroll, as the page keys always do.
bool TerminalView::sentByKey(QKeyEvent& event) {
  using comtool::Key;
  static const std::map<int, Key> kKeys{{Qt::Key_Tab, Key::Tab},       {Qt::Key_Escape, Key::Escape},
                                        {Qt::Key_Up, Key::Up},         {Qt::Key_Down, Key::Down},
                                        {Qt::Key_Left, Key::Left},     {Qt::Key_Right, Key::Right},
                                        {Qt::Key_Home, Key::Home},     {Qt::Key_End, Key::End},
                                        {Qt::Key_Insert, Key::Insert}, {Qt::Key_Delete, Key::Delete}};
  const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
  const auto found = kKeys.find(event.key());
  if (found != kKeys.end() && modifiers == Qt::NoModifier) return send(comtool::bytesOf(found->second)), true;
  const bool control = (modifiers & ~Qt::ShiftModifier) == Qt::ControlModifier;
  const int character = control ? comtool::controlCharacter(static_cast<char32_t>(event.key())) : -1;
  if (character >= 0) return send(std::string(1, static_cast<char>(character))), true;
  if (modifiers != Qt::AltModifier || event.text().isEmpty()) return false;
  send(comtool::bytesOf(Key::Escape));  // the way in which a terminal sends Alt with a key
  typed(event.text());
  return true;
}

bool TerminalView::scrolledByKey(QKeyEvent& event) {
  QScrollBar& bar = *verticalScrollBar();
  switch (event.key()) {
    case Qt::Key_Up:
      bar.setValue(bar.value() - 1);
      return true;
    case Qt::Key_Down:
      bar.setValue(bar.value() + 1);
      return true;
    case Qt::Key_PageUp:
      bar.setValue(bar.value() - visibleRows());
      return true;
    case Qt::Key_PageDown:
      bar.setValue(bar.value() + visibleRows());
      return true;
    case Qt::Key_Home:
      bar.setValue(bar.minimum());
      return true;
    case Qt::Key_End:
      bar.setValue(bar.maximum());
      return true;
    default:
      return false;
  }
}

void TerminalView::inputMethodEvent(QInputMethodEvent* event) {
  typed(event->commitString());
}

TerminalView::Position TerminalView::positionAt(QPoint point) const {
  const auto& text = pane_.content();
  const int line = firstRow() + (point.y() < 0 ? -1 : point.y() / rowHeight_);
  if (line < 0 || text.rowCount() == 0) return text.begin();
  if (static_cast<std::size_t>(line) >= text.rowCount()) return text.end();
  const auto& row = text.row(static_cast<std::size_t>(line));
  return row.start + comtool::offsetAt(row.shown(), static_cast<int>(std::max(0.0, point.x() / cellWidth_ + 0.5)));
}

// The mouse may leave the view while it selects: the view goes along.
void TerminalView::selectTo(Position position) {
  pane_.select(pane_.anchor(), position);
}

void TerminalView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const Position position = positionAt(event->pos());
  if (event->modifiers() & Qt::ShiftModifier)
    selectTo(position);
  else
    pane_.select(position, position);
}

void TerminalView::mouseMoveEvent(QMouseEvent* event) {
  if (!(event->buttons() & Qt::LeftButton)) return;
  QScrollBar& bar = *verticalScrollBar();
  if (event->pos().y() < 0) bar.setValue(bar.value() - 1);
  if (event->pos().y() >= viewport()->height()) bar.setValue(bar.value() + 1);
  selectTo(positionAt(event->pos()));
}

void TerminalView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) selectTo(positionAt(event->pos()));
}

// The word under the mouse.
void TerminalView::mouseDoubleClickEvent(QMouseEvent* event) {
  const auto& text = pane_.content();
  if (text.rowCount() == 0) return;
  const Position position = positionAt(event->pos());
  const auto& row = text.row(text.rowAt(position));
  const auto shown = row.shown();
  const auto isWord = [&](std::size_t at) {
    const auto c = static_cast<unsigned char>(shown[at]);
    return std::isalnum(c) || c == '_' || c >= 0x80;
  };
  std::size_t from = std::min<std::size_t>(position - row.start, shown.size());
  std::size_t to = from;
  while (from > 0 && isWord(from - 1)) --from;
  while (to < shown.size() && isWord(to)) ++to;
  pane_.select(row.start + from, row.start + to);
}

void TerminalView::contextMenuEvent(QContextMenuEvent* event) {
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  auto* copies = menu->addAction(QStringLiteral("&Copy"));
  copies->setEnabled(!pane_.selection().empty());
  connect(copies, &QAction::triggered, this, [this] { copy(); });
  auto* pastes = menu->addAction(QStringLiteral("&Paste"));
  connect(pastes, &QAction::triggered, this, [this] { paste(); });
  connect(menu->addAction(QStringLiteral("Select &all")), &QAction::triggered, this, [this] { selectAll(); });
  menu->popup(event->globalPos());
}

}  // namespace kvr::window
