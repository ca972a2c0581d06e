#include "shell/qt/flow_row.h"

#include <QWidget>

namespace kvr::window {

FlowRow::FlowRow(int indent) : indent_(indent) {
  setContentsMargins(0, 0, 0, 0);
  setSpacing(6);
}

void FlowRow::addItem(QLayoutItem* item) {
  items_.emplace_back(item);
  invalidate();
}

void FlowRow::clear() {
  items_.clear();
  invalidate();
}

QLayoutItem* FlowRow::itemAt(int index) const {
  return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* FlowRow::takeAt(int index) {
  if (index < 0 || index >= count()) return nullptr;
  QLayoutItem* item = items_[static_cast<std::size_t>(index)].release();
  items_.erase(items_.begin() + index);
  return item;
}

QSize FlowRow::minimumSize() const {
  QSize least;
  for (const auto& item : items_)
    if (!item->isEmpty())
      least = least.expandedTo(item->minimumSize() + QSize(item == items_.front() ? 0 : indent_, 0));
  return least;
}

QSize FlowRow::sizeHint() const {
  QSize all;
  for (const auto& item : items_) {
    if (item->isEmpty()) continue;
    const QSize size = item->sizeHint();
    all = {all.width() + size.width() + (all.isEmpty() ? 0 : spacing()), std::max(all.height(), size.height())};
  }
  return all;
}

void FlowRow::setGeometry(const QRect& place) {
  QLayout::setGeometry(place);
  layOut(place, true);
}

// Line by line; what is lower than its line is in the middle of it. The height that it takes.
int FlowRow::layOut(const QRect& place, bool move) const {
  std::vector<QLayoutItem*> line;
  int y = place.y();
  int lineHeight = 0;
  int x = place.x();
  const auto endLine = [&] {
    int at = y == place.y() ? place.x() : place.x() + indent_;
    for (auto* item : line) {
      const QSize size = item->sizeHint();
      if (move) item->setGeometry(QRect(QPoint(at, y + (lineHeight - size.height()) / 2), size));
      at += size.width() + spacing();
    }
    y += lineHeight;
    line.clear();
    lineHeight = 0;
    x = place.x() + indent_;
  };
  const bool captionAlone = indent_ > 0 && sizeHint().width() > place.width();
  for (const auto& item : items_) {
    if (item->isEmpty()) continue;
    const QSize size = item->sizeHint();
    const bool afterCaption = captionAlone && !line.empty() && line.back() == items_.front().get();
    const bool full = !line.empty() && x + size.width() > place.x() + place.width();
    if (afterCaption || full) endLine();
    line.push_back(item.get());
    x += size.width() + spacing();
    lineHeight = std::max(lineHeight, size.height());
  }
  endLine();
  return y - place.y();
}

FlowRow* flow(std::initializer_list<QWidget*> widgets) {
  auto* layout = new FlowRow;
  for (auto* widget : widgets)
    if (widget) layout->addWidget(widget);
  return layout;
}

}  // namespace kvr::window
