// Widgets side by side that go on in a next line where the place is too narrow for all of them.
#pragma once

#include <QLayout>
#include <initializer_list>
#include <memory>
#include <vector>

namespace kvr::window {

class FlowRow : public QLayout {
 public:
  // With `indent` the first widget is a caption: when the others do not all fit after it, they go on below it, that far
  // from the left edge.
  explicit FlowRow(int indent = 0);
  void grow(QWidget* widget) { growing_ = widget; }  // takes what its line leaves
  void clear();                                      // lets the widgets go; they stay where they are in the window

  void addItem(QLayoutItem* item) override;
  int count() const override { return static_cast<int>(items_.size()); }
  QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;
  Qt::Orientations expandingDirections() const override { return {}; }
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override { return layOut({0, 0, width, 0}, false); }
  QSize minimumSize() const override;
  QSize sizeHint() const override;
  void setGeometry(const QRect& place) override;

 private:
  int layOut(const QRect& place, bool move) const;
  void endLine(const std::vector<QLayoutItem*>& line, QRect place) const;
  int indent_;
  QWidget* growing_ = nullptr;
  std::vector<std::unique_ptr<QLayoutItem>> items_;
};

// A null pointer is passed over, so that rows can be written alike (see `row`).
FlowRow* flow(std::initializer_list<QWidget*> widgets);

}  // namespace kvr::window
