#include "shell/qt/hex_view.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QToolButton>
#include <algorithm>

#include "platform/qt/qt_loop.h"
#include "shell/qt/hex_accessible.h"
#include "tests/images/images_bench.h"
#include "tests/support/engine_bench.h"

namespace kvr::window {
namespace {

using images::HexSpot;

struct HexViewTest : ::testing::Test, images::ImagesBenchOn<platform::QtLoop> {
  HexViewTest() : ImagesBenchOn("Ivy-HF0S") {
    files.put("/fw.bin", support::randomBytes(1, 0xF000));
    room.loader.load("/fw.bin", images::ImageKind::Code);
    room.panel.vscFile[0].userScroll(0);
    page.reset(makeHexPage(loop, pane, room.panel.vscFile[0], QStringLiteral("Code image")));
    view = page->findChild<HexView*>(QStringLiteral("txtBuffer2"));
    page->resize(700, 500);
    page->show();
    page->activateWindow();
    view->setFocus();
    settle();
  }
  void settle() {
    while (loop.dispatchReady()) continue;
    QApplication::processEvents();
    while (loop.dispatchReady()) continue;
  }
  void key(int keyCode, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const QString& text = {}) {
    QKeyEvent press(QEvent::KeyPress, keyCode, modifiers, text);
    QApplication::sendEvent(QApplication::focusWidget() == nullptr ? view : QApplication::focusWidget(), &press);
    settle();
  }
  void type(const QString& text) {
    for (const QChar c : text) key(0, Qt::NoModifier, QString(c));
  }
  void mouse(QEvent::Type kind, HexSpot spot) {
    const QPointF at = view->cellRect(spot).center();
    QMouseEvent event(kind, at, view->viewport()->mapToGlobal(at),
                      kind == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view->viewport(), &event);
    settle();
  }

  images::HexPane& pane = room.panel.txtBuffer2;
  images::ImageBuffer& code = room.state.CodeBuffer;
  std::unique_ptr<QWidget> page;
  HexView* view = nullptr;
};

TEST_F(HexViewTest, AClickPutsTheCaretOnTheDigitTypingChangesItAndADragSelects) {
  mouse(QEvent::MouseButtonPress, {0x23, true});
  EXPECT_EQ(pane.model.caret(), (HexSpot{0x23, true}));
  dialogs.yesNo = {true};
  const int before = code.at(0x23);
  key(Qt::Key_7, Qt::NoModifier, QStringLiteral("7"));
  EXPECT_EQ(code.at(0x23), (before & 0xF0) | 7);
  EXPECT_EQ(pane.model.caret(), (HexSpot{0x24, false}));
  for (const int column : {0, 7, 8, 15})
    for (const bool low : {false, true}) {
      const HexSpot spot{0x40 + column, low};
      EXPECT_EQ(view->spotAt(view->cellRect(spot).center()), spot);
    }
  mouse(QEvent::MouseButtonPress, {0x10, false});
  mouse(QEvent::MouseMove, {0x25, false});
  EXPECT_EQ(pane.model.selection(), (catalogue::AddressRange{0x10, 0x25}));
  mouse(QEvent::MouseButtonPress, {0x30, false});
  EXPECT_TRUE(pane.model.selection().empty());
}

TEST_F(HexViewTest, KeysScrollAndTheBarFollows) {
  auto* bar = view->verticalScrollBar();
  key(Qt::Key_End, Qt::ControlModifier);
  EXPECT_EQ(pane.model.caret().address, 0xEFFF);
  EXPECT_EQ(bar->value(), pane.model.topLine());
  EXPECT_GT(bar->value(), 3000);
  bar->setValue(100);
  settle();
  EXPECT_EQ(pane.model.topLine(), 100);
  EXPECT_EQ(room.panel.vscFile[0].value(), 100);
  room.panel.vscFile[0].userScroll(7);
  EXPECT_EQ(bar->value(), 7);
}

TEST_F(HexViewTest, FindsGoesToAndCopiesFromTheKeyboard) {
  key(Qt::Key_F, Qt::ControlModifier);
  auto* find = page->findChild<QLineEdit*>(QStringLiteral("txtBuffer2_find"));
  EXPECT_EQ(QApplication::focusWidget(), find);
  type(QStringLiteral("not hex"));
  key(Qt::Key_Return);
  EXPECT_EQ(page->findChild<QLabel*>(QStringLiteral("txtBuffer2_findNote"))->text(), QStringLiteral("no HEX"));
  find->clear();
  type(QString::asprintf("%02X %02X %02X", code.at(0x1234), code.at(0x1235), code.at(0x1236)));
  key(Qt::Key_Return);
  ASSERT_FALSE(pane.model.selection().empty());
  const auto first = pane.model.selection();
  EXPECT_EQ(code.at(first.first), code.at(0x1234));
  view->copySelection();
  EXPECT_EQ(QApplication::clipboard()->text(), find->text());
  view->setFocus();
  key(Qt::Key_F3);
  key(Qt::Key_F3, Qt::ShiftModifier);
  EXPECT_EQ(pane.model.selection(), first);
  key(Qt::Key_G, Qt::ControlModifier);
  auto* go = page->findChild<QLineEdit*>(QStringLiteral("txtBuffer2_goto"));
  EXPECT_EQ(QApplication::focusWidget(), go);
  type(QStringLiteral("ABC0"));
  key(Qt::Key_Return);
  EXPECT_EQ(pane.model.caret().address, 0xABC0);
  EXPECT_TRUE(view->viewport()->rect().contains(view->cellRect({0xABC0, false})));
  EXPECT_EQ(QApplication::focusWidget(), view);
}

TEST_F(HexViewTest, UndoRedoAndDifferencesHaveKeysAndTheBarTellsThem) {
  platform::Bytes other(code.bytes().begin(), code.bytes().begin() + 0xF000);
  for (const std::size_t at : {0x100, 0x2000}) other[at] ^= 1;
  files.put("/b.bin", other);
  dialogs.paths = {"/b.bin"};
  auto* words = page->findChild<QLabel*>(QStringLiteral("txtBuffer2_differences"));
  EXPECT_FALSE(words->isVisible());
  key(Qt::Key_D, Qt::ControlModifier);
  EXPECT_TRUE(words->isVisible());
  key(Qt::Key_F8);
  key(Qt::Key_F8);
  EXPECT_EQ(pane.model.caret().address, 0x2000);
  key(Qt::Key_F8, Qt::ShiftModifier);
  EXPECT_EQ(words->text(), QString::asprintf("b.bin: 2 differences; %02X at 000100", other[0x100]));
  mouse(QEvent::MouseButtonPress, {0x100, true});
  dialogs.yesNo = {true};
  type(QString::asprintf("%X", other[0x100] & 15));
  EXPECT_TRUE(words->text().startsWith(QStringLiteral("b.bin: 1 difference"))) << words->text().toStdString();
  key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(code.at(0x100), other[0x100] ^ 1);
  key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(code.at(0x100), other[0x100]);
  page->findChild<QToolButton*>(QStringLiteral("txtBuffer2_same"))->click();
  settle();
  EXPECT_FALSE(words->isVisible());
}

TEST_F(HexViewTest, AssistiveProgramsReadLinesByteAndCaret) {
  auto* accessible = QAccessible::queryAccessibleInterface(view);
  ASSERT_NE(accessible, nullptr);
  EXPECT_EQ(accessible->role(), QAccessible::EditableText);
  mouse(QEvent::MouseButtonPress, {0x21, true});
  EXPECT_EQ(accessible->text(QAccessible::Value),
            QString::asprintf("Address 21, byte %02x, second digit", code.at(0x21)));
  auto* text = accessible->textInterface();
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text->cursorPosition(), 2 * kHexLineLength + 14);
  int start = 0;
  int end = 0;
  EXPECT_EQ(text->textAtOffset(text->cursorPosition(), QAccessible::LineBoundary, &start, &end),
            qtText(pane.model.line(2).hexText()) + QLatin1Char('\n'));
  EXPECT_EQ(end - start, kHexLineLength);
  EXPECT_EQ(text->characterCount(), 0xF00 * kHexLineLength - 1);
  EXPECT_EQ(text->text(5, 9), qtText(pane.model.line(0).hexText()).mid(5, 4));
  text->setCursorPosition(3 * kHexLineLength + 10);
  settle();
  EXPECT_EQ(pane.model.caret(), (HexSpot{0x30, false}));
}

}  // namespace
}  // namespace kvr::window
