#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <memory>
#include <string>

#include "platform/virtual/virtual_loop.h"
#include "shell/qt/terminal_view.h"

namespace {
std::vector<QString> toldTexts;
}

// Off screen nobody asks for accessibility; this program stands in for the one who does.
bool QAccessible::isActive() {
  return true;
}
void QAccessible::updateAccessibility(QAccessibleEvent* event) {
  if (event->type() != QAccessible::TextInserted) return;
  auto* inserted = static_cast<QAccessibleTextInsertEvent*>(event);
  toldTexts.push_back(QString::number(inserted->changePosition()) + u'+' + inserted->textInserted());
}

namespace kvr::window {
namespace {

struct Pane {
  platform::VirtualLoop loop;
  comtool::ToolPanel panel;
  std::unique_ptr<TerminalView> view{makeTerminalView(loop, panel)};

  Pane() {
    view->resize(400, 300);
    view->show();
    QApplication::processEvents();
  }
  comtool::ReceivePane& pane() { return panel.texReceive; }
  void addLines(int count, int from = 0) {
    for (int i = from; i < from + count; ++i) pane().append("line " + std::to_string(i) + "\n");
  }
  void key(int code, const QString& text = {}, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QKeyEvent press(QEvent::KeyPress, code, modifiers, text);
    QApplication::sendEvent(view.get(), &press);
    loop.dispatchReady();
  }
  void mouse(QEvent::Type type, QPoint at) {
    const auto buttons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, QPointF(at), view->viewport()->mapToGlobal(QPointF(at)), button, buttons, Qt::NoModifier);
    QApplication::sendEvent(view->viewport(), &event);
  }
  std::string firstShown() const { return view->visibleText().section(QLatin1Char('\n'), 0, 0).toStdString(); }
};

TEST(TerminalView, FollowsTheEndUntilTheUserScrollsUpAndThenKeepsThePlaceUntilTheEndAgain) {
  Pane p;
  p.addLines(500);
  EXPECT_EQ(p.view->firstRow(), 500 - p.view->visibleRows());
  p.view->verticalScrollBar()->setValue(100);
  p.loop.dispatchReady();
  EXPECT_FALSE(p.panel.che_AutoScroll.value());
  p.addLines(10, 500);
  EXPECT_EQ(p.firstShown(), "line 100");
  p.pane().keepNewest(4000);  // old text goes
  p.view->resize(250, 200);
  QApplication::processEvents();
  EXPECT_EQ(p.firstShown(), "line 100");
  p.key(Qt::Key_End);
  EXPECT_TRUE(p.panel.che_AutoScroll.value());
  p.addLines(10, 510);
  EXPECT_EQ(p.view->verticalScrollBar()->value(), p.view->verticalScrollBar()->maximum());
  p.view->verticalScrollBar()->setValue(100);
  p.pane().keepNewest(100);
  EXPECT_GE(p.firstShown(), "line 500");
}

TEST(TerminalView, TypedKeysAreGesturesAndScrollKeysAreNot) {
  Pane p;
  std::u32string typed;
  p.pane().onKeyPress = [&](char32_t key) { return typed += key, true; };
  p.addLines(100);
  p.key(Qt::Key_A, QStringLiteral("a"));
  p.key(Qt::Key_Return, QStringLiteral("\r"));
  p.key(Qt::Key_PageUp);
  p.key(Qt::Key_C, QStringLiteral("\x03"), Qt::ControlModifier);
  p.key(Qt::Key_Shift);
  EXPECT_EQ(typed, (std::u32string{U'a', U'\r', 3}));
}

TEST(TerminalView, TheMouseSelectsAndTheKeysCopy) {
  Pane p;
  p.pane().append("alpha beta\ngamma");
  const int row = p.view->fontMetrics().lineSpacing();
  p.mouse(QEvent::MouseButtonPress, {0, row / 2});
  p.mouse(QEvent::MouseMove, {p.view->fontMetrics().horizontalAdvance(QStringLiteral("ga")), row + row / 2});
  EXPECT_EQ(p.view->selectedText().toStdString(), "alpha beta\nga");
  p.key(Qt::Key_C, QStringLiteral("\x03"), Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "alpha beta\nga");
  p.mouse(QEvent::MouseButtonDblClick, {p.view->fontMetrics().horizontalAdvance(QStringLiteral("alpha b")), row / 2});
  EXPECT_EQ(p.view->selectedText().toStdString(), "beta");
}

TEST(TerminalView, AssistiveProgramsReadTheWholePaneLineByLineAndHearWhatComes) {
  Pane p;
  auto* accessible = QAccessible::queryAccessibleInterface(p.view.get());
  ASSERT_NE(accessible, nullptr);
  EXPECT_EQ(accessible->role(), QAccessible::Terminal);
  auto* text = accessible->textInterface();
  ASSERT_NE(text, nullptr);
  toldTexts.clear();
  p.pane().append("\xF0\x9F\x98\x80 one\r\n");
  p.pane().append("two");
  EXPECT_EQ(toldTexts, (std::vector<QString>{QStringLiteral("0+\U0001F600 one\r\n"), QStringLiteral("8+two")}));
  EXPECT_EQ(text->characterCount(), 11);
  EXPECT_EQ(text->text(3, 9), QStringLiteral("one\r\nt"));
  int start = 0;
  int end = 0;
  EXPECT_EQ(text->textBeforeOffset(11, QAccessible::LineBoundary, &start, &end), QStringLiteral("\U0001F600 one\r\n"));
  EXPECT_EQ(std::pair(start, end), std::pair(0, 8));
  text->setSelection(0, 3, 6);
  EXPECT_EQ(p.view->selectedText(), QStringLiteral("one"));
  EXPECT_EQ(text->cursorPosition(), 6);
  text->removeSelection(0);
  EXPECT_EQ(text->selectionCount(), 0);
  for (const int offset : {0, 2, 4, 8, 10})
    EXPECT_EQ(text->offsetAtPoint(text->characterRect(offset).center()), offset);
  p.addLines(500);
  text->setCursorPosition(0);
  EXPECT_EQ(p.view->firstRow(), 0);
  EXPECT_EQ(text->textAtOffset(text->characterCount(), QAccessible::LineBoundary, &start, &end), QString());
}

TEST(TerminalView, OneEndlessLineOfEveryKindOfCharacterIsDrawn) {
  Pane p;
  std::string piece = "plain \t\xE6\xB8\xA9\xCC\x81\xF0\x9F\x98\x80\x7F";
  piece += '\0';
  for (int i = 0; i < 1000; ++i) p.pane().append(piece);
  const auto picture = [&] { return p.view->viewport()->grab().toImage(); };
  const QImage plain = picture();
  p.view->selectAll();
  EXPECT_NE(picture(), plain);
  p.pane().clear();
  EXPECT_NE(picture(), plain);
  EXPECT_EQ(p.view->visibleText(), QString());
}

}  // namespace
}  // namespace kvr::window
