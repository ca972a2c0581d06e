#include "shell/qt/bind_text.h"

#include <QEvent>
#include <QFocusEvent>
#include <QScrollBar>

namespace kvr::window {
namespace {

class LeaveFilter : public QObject {
 public:
  LeaveFilter(QWidget& widget, std::function<void()> left) : QObject(&widget), left_(std::move(left)) {
    widget.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* object, QEvent* event) override {
    // A menu or another program on top does not count.
    if (event->type() == QEvent::FocusOut) {
      const auto reason = static_cast<QFocusEvent*>(event)->reason();
      if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason) left_();
    }
    return QObject::eventFilter(object, event);
  }

 private:
  std::function<void()> left_;
};

// What the pane shows, so that only the difference goes into it.
struct PaneState {
  std::string shown;
};

void appendTo(QPlainTextEdit& pane, const QString& text) {
  QTextCursor end(pane.document());
  end.movePosition(QTextCursor::End);
  end.insertText(text);
}

void showEnd(QPlainTextEdit& pane) {
  pane.moveCursor(QTextCursor::End);
  pane.ensureCursorVisible();
  pane.verticalScrollBar()->setValue(pane.verticalScrollBar()->maximum());  // the last line may peep in before
}

// Whoever sees the end of the text sees it in a window of another size, too.
class EndPane : public QPlainTextEdit {
 protected:
  void resizeEvent(QResizeEvent* event) override {
    auto* bar = verticalScrollBar();
    const bool atEnd = bar->value() == bar->maximum();
    QPlainTextEdit::resizeEvent(event);
    if (atEnd) bar->setValue(bar->maximum());
  }
};

}  // namespace

void addClearButton(QLineEdit& line) {
  QObject::connect(&line, &QLineEdit::textChanged, &line, [&line] { line.setClearButtonEnabled(true); });
}

void onFocusLeft(QWidget& widget, std::function<void()> left) {
  new LeaveFilter(widget, std::move(left));
}

QLineEdit* makeLine(platform::EventLoop& loop, platform::TextBox& control, const QString& name) {
  auto* line = new QLineEdit;
  line->setDragEnabled(false);  // a drag is a loop of its own, in which no run would go on
  auto* binding = new Binding(loop, control, *line, name, [line, &control] {
    const QString text = qtText(control.text());
    if (line->text() == text) return;
    const int caret = line->cursorPosition();
    line->setText(text);
    // A box that is too narrow shows the head of its text: the end may be no more than blanks.
    line->setCursorPosition(line->hasFocus() ? std::min(caret, static_cast<int>(text.size())) : 0);
  });
  QObject::connect(line, &QLineEdit::textEdited, binding, [binding, &control](const QString& text) {
    binding->post([&control, typed = text.toStdString()] { control.userType(typed); });
  });
  onFocusLeft(*line, [line, binding, &control] {
    line->setCursorPosition(0);
    binding->post([&control] { control.userLeave(); });
  });
  return line;
}

QPlainTextEdit* makePane(platform::EventLoop& loop, platform::TextBox& control, const QString& name) {
  auto* pane = new EndPane;
  pane->setReadOnly(true);
  pane->setUndoRedoEnabled(false);
  pane->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  auto state = std::make_shared<PaneState>();
  auto* binding = new Binding(loop, control, *pane, name, [pane, &control, state] {
    if (state->shown == control.text()) return;
    state->shown = control.text();
    pane->setPlainText(qtText(state->shown));
    showEnd(*pane);
  });
  binding->watch(control.appended, [pane, &control, state] {
    state->shown += control.lastAppended;
    appendTo(*pane, qtText(control.lastAppended));
    showEnd(*pane);
  });
  return pane;
}

}  // namespace kvr::window
