// The bars under a hexadecimal view: a pattern to find in hexadecimal or text, both ways, and an address to go to; and,
// while a second file is compared, what differs.
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>

#include "shell/qt/bind_text.h"
#include "shell/qt/hex_view.h"
#include "shell/qt/maker.h"

namespace kvr::window {
namespace {

struct FindBar {
  QLineEdit* pattern;
  QComboBox* kind;
  QToolButton* back;
  QToolButton* next;
  QLineEdit* address;
  QToolButton* compare;
  QLabel* note;
};

struct CompareBar {
  QWidget* row;
  QLabel* what;
  QToolButton* back;
  QToolButton* next;
  QToolButton* end;
};

QToolButton* arrow(Qt::ArrowType type, const QString& name, const QString& objectName) {
  auto* button = new QToolButton;
  button->setArrowType(type);
  button->setToolTip(name);
  button->setAccessibleName(name);
  button->setObjectName(objectName);
  return button;
}

QLineEdit* line(const QString& name, const QString& objectName, const QString& hint) {
  auto* edit = new QLineEdit;
  edit->setAccessibleName(name);
  edit->setObjectName(objectName);
  edit->setPlaceholderText(hint);
  addClearButton(*edit);
  edit->setDragEnabled(false);  // a drag is a loop of its own, in which no run would go on
  return edit;
}

FindBar makeBar(const QString& view, const QString& name) {
  FindBar bar{line(QStringLiteral("Find: ") + name, view + QStringLiteral("_find"), QStringLiteral("12 34 or text")),
              new QComboBox,
              arrow(Qt::UpArrow, QStringLiteral("Find previous (Shift+F3)"), view + QStringLiteral("_previous")),
              arrow(Qt::DownArrow, QStringLiteral("Find next (F3)"), view + QStringLiteral("_next")),
              line(QStringLiteral("Go to address: ") + name, view + QStringLiteral("_goto"), QStringLiteral("HEX")),
              new QToolButton,
              captionFor({})};
  bar.compare->setText(QStringLiteral("Compare..."));
  bar.compare->setToolTip(QStringLiteral("Compare with a file (Ctrl+D)"));
  bar.compare->setAccessibleName(QStringLiteral("Compare with a file: ") + name);
  bar.compare->setObjectName(view + QStringLiteral("_compare"));
  bar.kind->addItems({QStringLiteral("HEX"), QStringLiteral("Text")});
  bar.kind->setObjectName(view + QStringLiteral("_findKind"));
  bar.kind->setAccessibleName(QStringLiteral("What to find is hexadecimal or text"));
  bar.address->setMaximumWidth(bar.address->fontMetrics().horizontalAdvance(QLatin1Char('0')) * 14);
  bar.note->setObjectName(view + QStringLiteral("_findNote"));
  return bar;
}

QHBoxLayout* layOut(const FindBar& bar) {
  auto* row = new QHBoxLayout;
  row->setContentsMargins(0, 0, 0, 0);
  auto* find = captionFor(QStringLiteral("Find:"), bar.pattern);
  auto* go = captionFor(QStringLiteral("Go to:"), bar.address);
  row->addWidget(find);
  row->addWidget(bar.pattern, 1);
  for (QWidget* widget : {static_cast<QWidget*>(bar.kind), static_cast<QWidget*>(bar.back),
                          static_cast<QWidget*>(bar.next), static_cast<QWidget*>(bar.note), static_cast<QWidget*>(go),
                          static_cast<QWidget*>(bar.address), static_cast<QWidget*>(bar.compare)})
    row->addWidget(widget);
  return row;
}

CompareBar makeCompareBar(const QString& view) {
  CompareBar bar{new QWidget, captionFor({}),
                 arrow(Qt::UpArrow, QStringLiteral("Previous difference (Shift+F8)"), view + QStringLiteral("_less")),
                 arrow(Qt::DownArrow, QStringLiteral("Next difference (F8)"), view + QStringLiteral("_more")),
                 new QToolButton};
  bar.end->setText(QStringLiteral("Close"));
  bar.end->setAccessibleName(QStringLiteral("Close the comparison"));
  bar.end->setObjectName(view + QStringLiteral("_same"));
  bar.what->setObjectName(view + QStringLiteral("_differences"));
  bar.what->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);  // a long name makes no page wider
  auto* row = new QHBoxLayout(bar.row);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(bar.what, 1);
  for (QToolButton* button : {bar.back, bar.next, bar.end}) row->addWidget(button);
  bar.row->hide();
  return bar;
}

void connectCompareBar(HexView* view, const CompareBar& bar) {
  QObject::connect(bar.next, &QToolButton::clicked, view, [view] { view->toDifference(true); });
  QObject::connect(bar.back, &QToolButton::clicked, view, [view] { view->toDifference(false); });
  QObject::connect(bar.end, &QToolButton::clicked, view, [view] {
    view->moveBy([](images::HexViewModel& model) { model.endComparison(); });
    view->setFocus();
  });
  QObject::connect(view, &HexView::shown, bar.row, [view, bar] {
    const images::Comparison& comparison = view->model().comparison();
    bar.row->setVisible(comparison.on());
    bar.what->setText(qtText(comparison.text(view->model().caret().address)));
    bar.what->setToolTip(bar.what->text());
  });
}

void connectBar(HexView* view, const FindBar& bar) {
  const auto find = [view, bar](bool forward) {
    const auto pattern = images::findPattern(bar.pattern->text().toStdString(), bar.kind->currentIndex() == 1);
    if (pattern.empty()) {
      bar.note->setText(bar.pattern->text().isEmpty() ? QString() : QStringLiteral("no HEX"));
      return;
    }
    view->moveBy([pattern, forward, note = bar.note](images::HexViewModel& model) {
      note->setText(model.find(pattern, forward) ? QString() : QStringLiteral("not found"));
    });
  };
  const auto go = [view, bar] {
    view->moveBy([text = bar.address->text().toStdString(), bar](images::HexViewModel& model) {
      bar.note->setText(model.goTo(text) ? QString() : QStringLiteral("no such address"));
    });
    view->setFocus();
  };
  const auto enter = [](QLineEdit* edit) {
    edit->setFocus(Qt::ShortcutFocusReason);
    edit->selectAll();
  };
  QObject::connect(bar.pattern, &QLineEdit::returnPressed, view, [find] { find(true); });
  QObject::connect(bar.next, &QToolButton::clicked, view, [find] { find(true); });
  QObject::connect(bar.back, &QToolButton::clicked, view, [find] { find(false); });
  QObject::connect(bar.address, &QLineEdit::returnPressed, view, go);
  QObject::connect(bar.compare, &QToolButton::clicked, view, [view] { view->compare(); });
  QObject::connect(view, &HexView::findAgain, view, find);
  QObject::connect(view, &HexView::findWanted, bar.pattern, [enter, edit = bar.pattern] { enter(edit); });
  QObject::connect(view, &HexView::goToWanted, bar.address, [enter, edit = bar.address] { enter(edit); });
}

}  // namespace

QWidget* makeHexPage(platform::EventLoop& loop, images::HexPane& pane, platform::ScrollBar& bar, const QString& name) {
  auto* view = new HexView(loop, pane, bar, name);
  const FindBar find = makeBar(objectNameOf(pane), name);
  connectBar(view, find);
  const CompareBar compare = makeCompareBar(objectNameOf(pane));
  connectCompareBar(view, compare);
  auto* column = new QVBoxLayout;
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  column->addWidget(view, 1);
  column->addWidget(compare.row);
  column->addLayout(layOut(find));
  auto* page = new QWidget;
  page->setLayout(column);
  page->setFocusProxy(view);
  return page;
}

}  // namespace kvr::window
