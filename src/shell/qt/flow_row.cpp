#include "shell/qt/flow_row.h"

#include <QWidget>

namespace kvr::window {
namespace {

constexpr int kBetweenLines = 2;

// Hidden, or a label without words.
bool blank(const QLayoutItem& item) {
  return item.isEmpty() || item.sizeHint().width() <= 0;
}

}  // namespace

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
  QSize all(0, 0);
  for (const auto& item : items_) {
    if (blank(*item)) continue;
    const QSize size = item->sizeHint();
    all = {all.width() + size.width() + (all.isEmpty() ? 0 : spacing()), std::max(all.height(), size.height())};
  }
  return all;
}

void FlowRow::setGeometry(const QRect& place) {
  QLayout::setGeometry(place);
  layOut(place, true);
}

// Puts the items into their line; what is lower than it is in the middle of it.
void FlowRow::endLine(const std::vector<QLayoutItem*>& line, QRect place) const {
  int left = place.width() + spacing();
  for (const auto* item : line) left -= item->sizeHint().width() + spacing();
  for (auto* item : line) {
    QSize size = item->sizeHint();
    if (growing_ && item->widget() == growing_) size.rwidth() += std::max(left, 0);
    item->setGeometry(QRect({place.x(), place.y() + (place.height() - size.height()) / 2}, size));
    place.setLeft(place.x() + size.width() + spacing());
  }
}

// Line by line. The height that it takes.
int FlowRow::layOut(const QRect& place, bool move) const {
  std::vector<QLayoutItem*> line;
  int y = place.y();
  int lineHeight = 0;
  int x = place.x();
  const auto nextLine = [&] {
    const int start = y == place.y() ? 0 : indent_;
    if (move) endLine(line, {place.x() + start, y, place.width() - start, lineHeight});
    y += lineHeight + (line.empty() ? 0 : kBetweenLines);
    line.clear();
    lineHeight = 0;
    x = place.x() + indent_;
  };
  const bool captionAlone = indent_ > 0 && sizeHint().width() > place.width();
  for (const auto& item : items_) {
    if (blank(*item)) continue;
    const QSize size = item->sizeHint();
    const bool afterCaption = captionAlone && y == place.y() && line.size() == 1;
    const bool full = !line.empty() && x + size.width() > place.x() + place.width();
    if (afterCaption || full) nextLine();
    line.push_back(item.get());
    x += size.width() + spacing();
    lineHeight = std::max(lineHeight, size.height());
  }
  nextLine();
  return std::max(0, y - place.y() - kBetweenLines);
}

FlowRow* flow(std::initializer_list<QWidget*> widgets) {
  auto* layout = new FlowRow;
  for (auto* widget : widgets)
    if (widget) layout->addWidget(widget);
  return layout;
}

}  // namespace kvr::window
