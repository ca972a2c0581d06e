#include "shell/qt/model_box.h"

#include <QApplication>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace kvr::window {
namespace {

constexpr int kKeyRole = Qt::UserRole;

// Opens the popup for a click and for the first typed letter.
class OpenFilter : public QObject {
 public:
  OpenFilter(QLineEdit& box, shell::MainForm& form, ModelPopup& popup)
      : QObject(&box), box_(box), form_(form), popup_(popup) {
    box.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (!box_.isEnabled()) return false;
    if (event->type() == QEvent::MouseButtonPress) return open();
    if (event->type() != QEvent::KeyPress) return false;
    auto& key = *static_cast<QKeyEvent*>(event);
    const bool opens = key.key() == Qt::Key_Down || key.key() == Qt::Key_F4 || key.key() == Qt::Key_Space;
    if (opens) return open();
    const bool types = !key.text().isEmpty() && key.text()[0].isPrint() &&
                       !(key.modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    if (!types && !popup_.isVisible()) return false;
    if (!types && key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter && key.key() != Qt::Key_Escape)
      return false;
    open();
    popup_.typeAhead(key);
    return true;
  }

 private:
  bool open() {
    form_.world.loop.post([this] { form_.main.Command3.press(); });
    return true;
  }
  QLineEdit& box_;
  shell::MainForm& form_;
  ModelPopup& popup_;
};

}  // namespace

ModelPopup::ModelPopup(shell::MainForm& form, QWidget& window, QWidget& anchor)
    : QFrame(&window), form_(form), anchor_(anchor), search_(new QLineEdit), tree_(new QTreeWidget) {
  setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
  setAutoFillBackground(true);
  setObjectName(QStringLiteral("modelPopup"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(2, 2, 2, 2);
  layout->setSpacing(2);
  search_->setObjectName(QStringLiteral("modelSearch"));
  search_->setAccessibleName(QStringLiteral("Type a part of the model's name"));
  search_->setPlaceholderText(QStringLiteral("type a part of the name"));
  addClearButton(*search_);
  layout->addWidget(search_);
  tree_->setHeaderHidden(true);
  tree_->setUniformRowHeights(true);
  layout->addWidget(tree_);
  search_->installEventFilter(this);
  tree_->installEventFilter(this);
  QObject::connect(search_, &QLineEdit::textChanged, this, [this](const QString& text) { filter(text); });
  QObject::connect(tree_, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) { choose(item); });
  auto* binding = new Binding(form.world.loop, form.main.TreeViewDevice, *tree_, QStringLiteral("Models by series"),
                              [this] { showTree(); });
  binding->setParent(this);
  form.main.TreeViewDevice.focusRequest = [this] { search_->setFocus(); };
  hide();
}

// The popup shows when the tree is visible; inside it the tree itself always shows.
void ModelPopup::showTree() {
  const bool on = form_.main.TreeViewDevice.visible();
  tree_->setVisible(true);
  if (on == shown_) return;
  shown_ = on;
  if (!on) {
    const bool hadFocus = isAncestorOf(QApplication::focusWidget());
    hide();
    const QSignalBlocker quiet(*search_);
    search_->clear();
    if (hadFocus) anchor_.setFocus();
    return;
  }
  fill();
  filter(search_->text());
  const QPoint corner = anchor_.mapTo(parentWidget(), QPoint(0, 0));
  const int height = std::min(parentWidget()->height() - corner.y() - 4, fontMetrics().height() * 26);
  setGeometry(corner.x(), corner.y(), std::max(anchor_.width(), fontMetrics().averageCharWidth() * 36),
              std::max(height, 120));
  show();
  raise();
}

void ModelPopup::fill() {
  if (tree_->topLevelItemCount() > 0) return;
  QHash<QString, QTreeWidgetItem*> series;
  for (const auto& node : form_.main.TreeViewDevice.nodes()) {
    auto* item = new QTreeWidgetItem({qtText(node.text)});
    item->setData(0, kKeyRole, qtText(node.key));
    if (node.parent.empty()) {
      tree_->addTopLevelItem(item);
      series.insert(qtText(node.key), item);
    } else if (auto* parent = series.value(qtText(node.parent))) {
      parent->addChild(item);
    }
  }
}

void ModelPopup::filter(const QString& text) {
  const QString wanted = text.trimmed();
  const QString selected = qtText(form_.main.TreeViewDevice.selectedKey());
  QTreeWidgetItem* current = nullptr;
  for (int i = 0; i < tree_->topLevelItemCount(); ++i) {
    auto* series = tree_->topLevelItem(i);
    bool any = false;
    bool holdsSelected = false;
    for (int j = 0; j < series->childCount(); ++j) {
      auto* item = series->child(j);
      const bool match = item->text(0).contains(wanted, Qt::CaseInsensitive);
      item->setHidden(!match);
      any = any || match;
      if (item->data(0, kKeyRole).toString() != selected) continue;
      holdsSelected = true;
      if (match) current = item;
    }
    series->setHidden(!any);
    series->setExpanded(wanted.isEmpty() ? holdsSelected : any);
  }
  if (!wanted.isEmpty()) current = firstMatch();
  tree_->setCurrentItem(current);
  if (current) tree_->scrollToItem(current);
}

// An exact name before names that only contain what was typed.
QTreeWidgetItem* ModelPopup::firstMatch() const {
  QTreeWidgetItem* first = nullptr;
  for (int i = 0; i < tree_->topLevelItemCount(); ++i)
    for (int j = 0; j < tree_->topLevelItem(i)->childCount(); ++j) {
      auto* item = tree_->topLevelItem(i)->child(j);
      if (item->isHidden()) continue;
      if (item->text(0).compare(search_->text().trimmed(), Qt::CaseInsensitive) == 0) return item;
      if (!first) first = item;
    }
  return first;
}

void ModelPopup::choose(QTreeWidgetItem* item) {
  if (!item) return;
  if (item->childCount() > 0) item->setExpanded(!item->isExpanded());
  const std::string key = item->data(0, kKeyRole).toString().toStdString();
  form_.world.loop.post([this, key] { form_.main.TreeViewDevice.userPick(key); });
}

void ModelPopup::hideSoon() {
  form_.world.loop.post([this] { form_.picker.hideDeviceTree(); });
}

void ModelPopup::typeAhead(QKeyEvent& key) {
  if (stepInto(key.key())) return;
  fill();
  search_->setText(search_->text() + key.text());
}

// Keys that mean the same in the search box, in the tree and ahead of both.
bool ModelPopup::stepInto(int key) {
  if (key == Qt::Key_Escape)
    hideSoon();
  else if (key == Qt::Key_Return || key == Qt::Key_Enter)
    choose(tree_->currentItem());
  else
    return false;
  return true;
}

bool ModelPopup::eventFilter(QObject* object, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    auto& key = *static_cast<QKeyEvent*>(event);
    if (stepInto(key.key())) return true;
    const bool moves = key.key() == Qt::Key_Down || key.key() == Qt::Key_Up || key.key() == Qt::Key_PageDown ||
                       key.key() == Qt::Key_PageUp;
    if (object == search_ && moves) return QApplication::sendEvent(tree_, event);
  }
  if (event->type() == QEvent::FocusOut) {
    const auto* next = QApplication::focusWidget();
    if (isVisible() && next && next != this && !isAncestorOf(next)) hideSoon();
  }
  return QFrame::eventFilter(object, event);
}

QLineEdit* makeModelBox(shell::MainForm& form, QWidget& window) {
  auto* box = new QLineEdit;
  box->setReadOnly(true);
  new Binding(form.world.loop, form.main.txtDevice, *box, QStringLiteral("Model of the microcontroller"), [box, &form] {
    if (box->text() != qtText(form.main.txtDevice.text())) box->setText(qtText(form.main.txtDevice.text()));
  });
  auto* popup = new ModelPopup(form, window, *box);
  new OpenFilter(*box, form, *popup);
  return box;
}

}  // namespace kvr::window
