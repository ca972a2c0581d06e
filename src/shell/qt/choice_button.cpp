#include "shell/qt/choice_button.h"

#include <QMenu>
#include <QToolButton>

namespace kvr::window {
namespace {

constexpr int kShownLetters = 70;

// "&1  ...folder/file.hex": the end of a path tells more than its start.
QString entry(int number, const MenuChoice& choice, const QFontMetrics& metrics) {
  const QString value = qtText(choice.value);
  const QString shown = metrics.elidedText(value, Qt::ElideLeft, metrics.averageCharWidth() * kShownLetters);
  return QStringLiteral("&%1  ").arg(number % 10) + buttonText(shown.toStdString()) + choice.remark;
}

void popUp(QWidget& button, platform::EventLoop& loop, platform::Control& control, const ChoiceMenu& choices) {
  auto* menu = new QMenu(&button);
  menu->setObjectName(QStringLiteral("recentMenu"));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->setToolTipsVisible(true);
  const auto list = choices.list();
  for (const MenuChoice& choice : list) {
    auto* action = menu->addAction(entry(static_cast<int>(menu->actions().size()) + 1, choice, menu->fontMetrics()));
    action->setEnabled(choice.usable);
    action->setToolTip(qtText(choice.value).toHtmlEscaped());
    QObject::connect(action, &QAction::triggered, menu, [&loop, &control, take = choices.take, value = choice.value] {
      loop.post([&control, take, value] {
        if (control.enabled()) take(value);
      });
    });
  }
  if (list.empty()) menu->addAction(choices.none)->setEnabled(false);
  menu->popup(button.mapToGlobal(QPoint(0, button.height())));
}

}  // namespace

QWidget* withChoices(const Maker& maker, QWidget* field, platform::Control& control, ChoiceMenu choices) {
  auto* arrow = new QToolButton;
  arrow->setObjectName(field->objectName() + QStringLiteral("_recent"));
  arrow->setArrowType(Qt::DownArrow);
  arrow->setAutoRaise(true);
  arrow->setFocusPolicy(Qt::TabFocus);
  arrow->setAccessibleName(choices.name);
  arrow->setToolTip(choices.name);
  arrow->setFixedWidth(arrow->fontMetrics().height());
  follow(arrow, control, [arrow, &control] { arrow->setEnabled(control.enabled()); });
  QObject::connect(arrow, &QToolButton::clicked, arrow,
                   [arrow, &loop = maker.loop(), &control, choices] { popUp(*arrow, loop, control, choices); });
  auto* both = together(field, arrow);
  both->layout()->setSpacing(0);
  return both;
}

}  // namespace kvr::window
