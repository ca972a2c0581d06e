#include "shell/qt/bind_buttons.h"

#include <QButtonGroup>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionGroupBox>
#include <QStylePainter>
#include <algorithm>

#include "shell/qt/clear_marks.h"

namespace kvr::window {
namespace {

class LampButton : public QAbstractButton {
 public:
  LampButton() {
    setFocusPolicy(Qt::TabFocus);
    setCheckable(false);
  }
  QSize sizeHint() const override {
    const int side = fontMetrics().height();
    return {side, side};
  }
  void setOn(bool on) {
    on_ = on;
    update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal side = std::min(width(), height()) - 4.0;
    const QRectF round((width() - side) / 2, (height() - side) / 2, side, side);
    const QColor edge = hasFocus() ? palette().color(QPalette::Highlight) : edgeOf(palette());
    painter.setPen(QPen(edge, hasFocus() ? 2 : 1));
    painter.setBrush(on_ ? QColor(0x2e, 0xb8, 0x4a) : palette().color(QPalette::Button));
    painter.drawEllipse(round);
  }

 private:
  bool on_ = false;
};

// Draws its own edge: the usual style takes a picture for it, which has every image plugin loaded before the window's
// first paint.
class Group : public QGroupBox {
 protected:
  void paintEvent(QPaintEvent*) override {
    QStylePainter painter(this);
    QStyleOptionGroupBox option;
    initStyleOption(&option);
    // A caption may hold a path, whose end tells more than its middle.
    option.text =
        fontMetrics().elidedText(option.text, Qt::ElideMiddle, width() - fontMetrics().averageCharWidth() * 4);
    QRect edge = style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxFrame, this);
    const QRect caption = style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, this);
    if (!title().isEmpty()) edge.setTop(caption.bottom() + 2);
    drawEdge(painter, edge);
    option.subControls = QStyle::SC_GroupBoxLabel;
    painter.drawComplexControl(QStyle::CC_GroupBox, option);
  }

 private:
  // One pixel wide, the corners left out. Filled, not stroked: a stroke as large as this goes to threads of its own.
  void drawEdge(QPainter& painter, const QRect& edge) const {
    const QColor paper = palette().color(QPalette::Window);
    const QColor ink = palette().color(QPalette::WindowText);
    const auto between = [](int from, int to) { return (from * 4 + to) / 5; };
    const QColor line(between(paper.red(), ink.red()), between(paper.green(), ink.green()),
                      between(paper.blue(), ink.blue()));
    const int across = edge.width() - 2;
    const int down = edge.height() - 2;
    painter.fillRect(edge.left() + 1, edge.top(), across, 1, line);
    painter.fillRect(edge.left() + 1, edge.bottom(), across, 1, line);
    painter.fillRect(edge.left(), edge.top() + 1, 1, down, line);
    painter.fillRect(edge.right(), edge.top() + 1, 1, down, line);
  }
};

// Alone in a group that excludes nothing, so that Qt takes no choice away and still announces a radio button; the arrow
// keys go to the next widget.
class Choice : public QRadioButton {
 public:
  Choice() {
    auto* alone = new QButtonGroup(this);
    alone->setExclusive(false);
    alone->addButton(this);
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const int key = event->key();
    if (key == Qt::Key_Down || key == Qt::Key_Right)
      focusNextChild();
    else if (key == Qt::Key_Up || key == Qt::Key_Left)
      focusPreviousChild();
    else
      QRadioButton::keyPressEvent(event);
  }
};

// Its caption goes on in a next line where the place is too narrow.
class LongCheck : public QCheckBox {
 public:
  LongCheck() {
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
  }
  QSize minimumSizeHint() const override {
    return {std::min(sizeHint().width(), fontMetrics().averageCharWidth() * 30), sizeHint().height()};
  }
  int heightForWidth(int width) const override {
    const QRect place(textAt(), 0, width - textAt(), QWIDGETSIZE_MAX);
    return std::max(sizeHint().height(), fontMetrics().boundingRect(place, kWrapped, text()).height() + 2);
  }

 protected:
  bool hitButton(const QPoint& at) const override { return rect().contains(at); }
  void paintEvent(QPaintEvent* event) override {
    if (width() >= sizeHint().width()) return QCheckBox::paintEvent(event);
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text.clear();
    painter.drawControl(QStyle::CE_CheckBox, option);
    painter.drawItemText(rect().adjusted(textAt(), 0, 0, 0), kWrapped, palette(), isEnabled(), text(),
                         QPalette::WindowText);
  }

 private:
  static constexpr int kWrapped = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap | Qt::TextShowMnemonic;
  int textAt() const {
    QStyleOptionButton option;
    initStyleOption(&option);
    return style()->subElementRect(QStyle::SE_CheckBoxContents, &option, this).left();
  }
};

void setTextOf(QAbstractButton& button, const QString& text) {
  if (button.text() != text) button.setText(text);
}

QCheckBox* bindCheckBox(QCheckBox* box, platform::EventLoop& loop, platform::CheckBox& control, char mnemonic,
                        const QString& name) {
  auto* binding = new Binding(loop, control, *box, name, [box, &control, mnemonic, name] {
    setTextOf(*box, buttonText(control.caption(), mnemonic));
    if (name.isEmpty()) box->setAccessibleName(qtText(control.caption()).simplified());
    if (box->isChecked() != control.value()) box->setChecked(control.value());
  });
  QObject::connect(box, &QCheckBox::clicked, binding,
                   [binding, &control](bool on) { binding->post([&control, on] { control.userSet(on); }); });
  return box;
}

}  // namespace

QPushButton* makeButton(platform::EventLoop& loop, platform::Button& control, char mnemonic, const QString& name) {
  auto* button = new QPushButton;
  button->setAutoDefault(false);
  auto* binding = new Binding(loop, control, *button, name, [button, &control, mnemonic, name] {
    setTextOf(*button, buttonText(control.caption(), mnemonic));
    if (name.isEmpty()) button->setAccessibleName(qtText(control.caption()).simplified());
  });
  QObject::connect(button, &QPushButton::clicked, binding,
                   [binding, &control] { binding->post([&control] { control.press(); }); });
  return button;
}

QCheckBox* makeCheckBox(platform::EventLoop& loop, platform::CheckBox& control, char mnemonic, const QString& name) {
  return bindCheckBox(new QCheckBox, loop, control, mnemonic, name);
}

QCheckBox* makeLongCheckBox(platform::EventLoop& loop, platform::CheckBox& control) {
  return bindCheckBox(new LongCheck, loop, control, 0, {});
}

// Which buttons exclude each other is the controls' business; the widget only shows it.
QRadioButton* makeOption(platform::EventLoop& loop, platform::OptionButton& control, const QString& name) {
  auto* option = new Choice;
  auto* binding = new Binding(loop, control, *option, name, [option, &control, name] {
    setTextOf(*option, buttonText(control.caption()));
    if (name.isEmpty())
      option->setAccessibleName(control.caption().empty() ? objectNameOf(control)
                                                          : qtText(control.caption()).simplified());
    if (option->isChecked() != control.value()) option->setChecked(control.value());
  });
  QObject::connect(option, &QRadioButton::clicked, binding,
                   [binding, &control] { binding->post([&control] { control.userChoose(); }); });
  return option;
}

// Made selectable only when the mouse is over it: a selectable label is a text document, which takes long to make and
// to measure.
void SelectableLabel::enterEvent(QEnterEvent* event) {
  setTextInteractionFlags(Qt::TextSelectableByMouse);
  QLabel::enterEvent(event);
}

QLabel* makeLabel(platform::EventLoop& loop, platform::Label& control, const QString& name) {
  auto* label = new SelectableLabel;
  label->setTextFormat(Qt::PlainText);
  label->setMaximumHeight(0);
  new Binding(loop, control, *label, name, [label, &control] {
    const QString text = qtText(control.caption()).trimmed();
    if (label->text() == text) return;
    label->setText(text);
    label->setMaximumHeight(text.isEmpty() ? 0 : QWIDGETSIZE_MAX);  // an empty line takes no room
  });
  return label;
}

QGroupBox* makeGroup(const QString& title) {
  auto* group = new Group;
  group->setTitle(title);
  return group;
}

QGroupBox* makeFrame(platform::EventLoop& loop, platform::Frame& control, const QString& name) {
  QGroupBox* frame = makeGroup();
  new Binding(loop, control, *frame, name, [frame, &control] {
    const QString text = buttonText(control.caption());
    if (frame->title() != text) frame->setTitle(text);
  });
  return frame;
}

QWidget* makeLamp(platform::EventLoop& loop, platform::Lamp& control, const QString& name) {
  auto* lamp = new LampButton;
  auto* binding = new Binding(loop, control, *lamp, name, [lamp, &control, name] {
    lamp->setOn(control.on());
    lamp->setAccessibleDescription(control.on() ? QStringLiteral("on") : QStringLiteral("off"));
  });
  QObject::connect(lamp, &QAbstractButton::clicked, binding,
                   [binding, &control] { binding->post([&control] { control.press(); }); });
  return lamp;
}

}  // namespace kvr::window
