#include "shell/qt/bind_lists.h"

#include <QLineEdit>
#include <QSignalBlocker>
#include <QWheelEvent>

#include "shell/qt/bind_text.h"

namespace kvr::window {
namespace {

// A wheel that scrolls the page must not change the box it happens to pass over.
class WheelFilter : public QObject {
 public:
  explicit WheelFilter(QWidget& widget) : QObject(&widget) {
    widget.setFocusPolicy(Qt::StrongFocus);
    widget.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() != QEvent::Wheel || static_cast<QWidget*>(object)->hasFocus()) return false;
    event->ignore();
    return true;
  }
};

void showItems(QComboBox& box, const std::vector<std::string>& items) {
  bool same = box.count() == static_cast<int>(items.size());
  for (int i = 0; same && i < box.count(); ++i) same = box.itemText(i) == qtText(items[static_cast<std::size_t>(i)]);
  if (same) return;
  QStringList texts;
  for (const auto& item : items) texts << qtText(item);
  box.clear();
  box.addItems(texts);
}

void showCombo(QComboBox& box, const platform::ComboBox& control) {
  const QSignalBlocker quiet(box);
  if (box.isEditable() != control.editable()) {
    box.setEditable(control.editable());
    box.setInsertPolicy(QComboBox::NoInsert);
    box.setCompleter(nullptr);
  }
  showItems(box, control.items());
  if (!control.editable()) return box.setCurrentIndex(control.listIndex());
  const QString text = qtText(control.text());
  if (box.currentText() == text) return;  // as it was typed: any change of the index would move the caret
  box.setCurrentIndex(control.listIndex());
  if (box.currentText() != text) box.setEditText(text);
}

}  // namespace

void bindCombo(platform::EventLoop& loop, platform::ComboBox& control, QComboBox& box, const QString& name) {
  new WheelFilter(box);
  auto* binding = new Binding(loop, control, box, name, [&box, &control] { showCombo(box, control); });
  QObject::connect(&box, &QComboBox::activated, binding,
                   [binding, &control](int index) { binding->post([&control, index] { control.userPick(index); }); });
  if (!control.editable() || !box.lineEdit()) return;
  box.lineEdit()->setAccessibleName(name);
  box.lineEdit()->setDragEnabled(false);
  QObject::connect(box.lineEdit(), &QLineEdit::textEdited, binding, [binding, &control](const QString& text) {
    binding->post([&control, typed = text.toStdString()] { control.userType(typed); });
  });
  onFocusLeft(box, [binding, &control] { binding->post([&control] { control.userLeave(); }); });
}

QComboBox* makeCombo(platform::EventLoop& loop, platform::ComboBox& control, const QString& name) {
  auto* box = new ComboWidget;
  bindCombo(loop, control, *box, name);
  return box;
}

QListWidget* makeList(platform::EventLoop& loop, platform::ListBox& control, const QString& name) {
  auto* list = new QListWidget;
  list->setUniformItemSizes(true);
  list->setSelectionMode(QAbstractItemView::ExtendedSelection);
  new Binding(loop, control, *list, name, [list, &control] {
    const auto& rows = control.rows();
    const int count = static_cast<int>(rows.size());
    while (list->count() > count) delete list->takeItem(list->count() - 1);
    for (int i = 0; i < count; ++i) {
      const QString text = qtText(rows[static_cast<std::size_t>(i)]);
      if (i >= list->count())
        list->addItem(text);
      else if (list->item(i)->text() != text)
        list->item(i)->setText(text);
      const auto& selected = control.selected();
      list->item(i)->setSelected(static_cast<std::size_t>(i) < selected.size() &&
                                 selected[static_cast<std::size_t>(i)]);
    }
  });
  return list;
}

QTabBar* makeTabs(platform::EventLoop& loop, platform::TabStrip& control, const QString& name) {
  auto* bar = new QTabBar;
  bar->setUsesScrollButtons(true);
  bar->setExpanding(false);
  bar->setDrawBase(false);
  auto* binding = new Binding(loop, control, *bar, name, [bar, &control] {
    const QSignalBlocker quiet(*bar);
    const auto& tabs = control.tabs();
    while (bar->count() > static_cast<int>(tabs.size())) bar->removeTab(bar->count() - 1);
    for (std::size_t i = 0; i < tabs.size(); ++i) {
      const int index = static_cast<int>(i);
      const QString text = buttonText(tabs[i].caption);
      if (index >= bar->count()) bar->addTab(text);
      if (bar->tabText(index) != text) bar->setTabText(index, text);
      bar->setTabEnabled(index, tabs[i].available());
      bar->setTabToolTip(index,
                         tabs[i].available() ? QString() : QStringLiteral("Not available for the selected model"));
    }
    if (bar->currentIndex() != control.selected()) bar->setCurrentIndex(control.selected());
  });
  QObject::connect(bar, &QTabBar::currentChanged, binding,
                   [binding, &control](int index) { binding->post([&control, index] { control.userSelect(index); }); });
  return bar;
}

QProgressBar* makeProgress(platform::EventLoop& loop, platform::ProgressBar& control, const QString& name) {
  auto* bar = new QProgressBar;
  bar->setTextVisible(false);
  new Binding(loop, control, *bar, name, [bar, &control] {
    if (bar->minimum() != control.minimum() || bar->maximum() != control.maximum())
      bar->setRange(control.minimum(), control.maximum());
    if (bar->value() != control.value()) bar->setValue(control.value());
  });
  return bar;
}

}  // namespace kvr::window
