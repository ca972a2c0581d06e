#include "shell/qt/recent_button.h"

#include <QMenu>
#include <QToolButton>

namespace kvr::window {
namespace {

constexpr int kShownLetters = 70;

// "&1  ...folder/file.hex": the end of a path tells more than its start.
QString entry(int number, const images::RecentFile& file, const QFontMetrics& metrics) {
  const QString path = qtText(file.path);
  const QString shown = metrics.elidedText(path, Qt::ElideLeft, metrics.averageCharWidth() * kShownLetters);
  return QStringLiteral("&%1  ").arg(number % 10) + buttonText(shown.toStdString()) +
         (file.gone ? QStringLiteral("  (not there)") : QString());
}

void popUp(QWidget& button, platform::EventLoop& loop, platform::Button& control, const RecentMenu& recent) {
  auto* menu = new QMenu(&button);
  menu->setObjectName(QStringLiteral("recentMenu"));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->setToolTipsVisible(true);
  const auto files = recent.list();
  for (const auto& file : files) {
    auto* action = menu->addAction(entry(static_cast<int>(menu->actions().size()) + 1, file, menu->fontMetrics()));
    action->setEnabled(!file.gone);
    action->setToolTip(qtText(file.path).toHtmlEscaped());
    QObject::connect(action, &QAction::triggered, menu, [&loop, &control, open = recent.open, path = file.path] {
      loop.post([&control, open, path] { return control.enabled() && open(path); });
    });
  }
  if (files.empty()) menu->addAction(QStringLiteral("None yet"))->setEnabled(false);
  menu->popup(button.mapToGlobal(QPoint(0, button.height())));
}

}  // namespace

QWidget* withRecent(const Maker& maker, QPushButton* button, platform::Button& control, RecentMenu recent) {
  auto* arrow = new QToolButton;
  arrow->setObjectName(button->objectName() + QStringLiteral("_recent"));
  arrow->setArrowType(Qt::DownArrow);
  arrow->setAutoRaise(true);
  arrow->setFocusPolicy(Qt::TabFocus);
  arrow->setAccessibleName(recent.name);
  arrow->setToolTip(recent.name);
  arrow->setFixedWidth(arrow->fontMetrics().height());
  follow(arrow, control, [arrow, &control] { arrow->setEnabled(control.enabled()); });
  QObject::connect(arrow, &QToolButton::clicked, arrow,
                   [arrow, &loop = maker.loop(), &control, recent] { popUp(*arrow, loop, control, recent); });
  auto* both = together(button, arrow);
  both->layout()->setSpacing(0);
  return both;
}

}  // namespace kvr::window
