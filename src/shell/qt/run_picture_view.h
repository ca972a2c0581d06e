// Draws runs one above the other on one scale of time: stages as bars, setbacks as marks, figures as text.
#pragma once

#include <QImage>
#include <QWidget>

#include "download/run_picture.h"

namespace kvr::window {

class RunPictureView : public QWidget {
 public:
  RunPictureView();
  void show(std::vector<download::RunPicture> runs);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  // The same picture in twice the resolution, on paper of the window's colour.
  QImage image() const;
  // And as SVG, with its texts as texts.
  QByteArray svg() const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QSize shown() const { return size().expandedTo(sizeHint()); }
  void draw(QPainter& painter) const;
  void drawRun(QPainter& painter, const download::RunPicture& run, int top) const;
  void drawBars(QPainter& painter, const download::RunPicture& run, const QRect& strip) const;
  void drawMarks(QPainter& painter, const download::RunPicture& run, const QRect& strip) const;
  void drawLegend(QPainter& painter, const download::RunPicture& run, QPoint at) const;
  void drawAxis(QPainter& painter, int top) const;
  int line() const { return fontMetrics().height(); }
  int margin() const { return line(); }
  int xOf(platform::Micros time) const;
  platform::Micros longest() const;
  std::vector<download::RunPicture> runs_;
};

}  // namespace kvr::window
