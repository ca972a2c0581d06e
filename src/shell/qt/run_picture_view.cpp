#include "shell/qt/run_picture_view.h"

#include <QBuffer>
#include <QPainter>
#include <QPainterPath>
#include <QSvgGenerator>
#include <algorithm>

#include "shell/qt/binding.h"

namespace kvr::window {
namespace {

using download::RunPicture;
using platform::Micros;

constexpr int kLinesOfRun = 10;  // of text height, with the gap below it
constexpr int kLinesOfAxis = 2;

// Of middle lightness: they show on light and on dark paper.
QColor colourOf(engine::Stage stage) {
  switch (stage) {
    case engine::Stage::Identify:
      return {0x4c, 0x78, 0xa8};
    case engine::Stage::Baud:
      return {0xb2, 0x79, 0xa2};
    case engine::Stage::Erase:
      return {0xe0, 0x8a, 0x1e};
    case engine::Stage::Program:
      return {0x3f, 0x9a, 0x4f};
    case engine::Stage::Finish:
      return {0x9d, 0x75, 0x5d};
    case engine::Stage::Options:
      return {0x2a, 0x9d, 0xa5};
    default:
      return {0x88, 0x88, 0x88};
  }
}

// A retry points down at its moment; a loss is a cross.
QPainterPath markShape(bool loss, QPointF foot, qreal size) {
  QPainterPath path;
  const qreal half = size / 2;
  if (loss) {
    path.moveTo(foot + QPointF(-half, -size));
    path.lineTo(foot + QPointF(half, 0));
    path.moveTo(foot + QPointF(half, -size));
    path.lineTo(foot + QPointF(-half, 0));
    return path;
  }
  path.moveTo(foot);
  path.lineTo(foot + QPointF(-half, -size));
  path.lineTo(foot + QPointF(half, -size));
  path.closeSubpath();
  return path;
}

// "3 x block sent again"; the end of a failed run speaks for itself.
QString marksText(const RunPicture& run) {
  std::vector<std::pair<std::string, int>> counts;
  for (const auto& mark : run.marks) {
    if (mark.meaning == "end") continue;
    const auto known = std::find_if(counts.begin(), counts.end(), [&](auto& c) { return c.first == mark.meaning; });
    if (known == counts.end())
      counts.emplace_back(mark.meaning, 1);
    else
      ++known->second;
  }
  QStringList texts;
  for (const auto& [meaning, count] : counts) texts << QStringLiteral("%1 × %2").arg(count).arg(qtText(meaning));
  return texts.join(QStringLiteral(", "));
}

// What went wrong on the way, and why it ended.
QString troubleText(const RunPicture& run) {
  QStringList texts = {marksText(run), qtText(run.failure)};
  texts.removeAll(QString());
  return texts.join(QStringLiteral(". "));
}

QString textOf(const RunPicture& run) {
  return qtText(run.title) + QStringLiteral(": ") + qtText(run.figures) + QStringLiteral(". ") + troubleText(run);
}

QString axisText(Micros at) {
  return QString::number(std::chrono::duration<double>(at).count()) + QStringLiteral(" s");
}

}  // namespace

RunPictureView::RunPictureView() {
  setObjectName(QStringLiteral("runPicture"));
  setFocusPolicy(Qt::StrongFocus);  // so that a screen reader comes to it
}

void RunPictureView::show(std::vector<RunPicture> runs) {
  runs_ = std::move(runs);
  QStringList texts;
  for (const RunPicture& run : runs_) texts << textOf(run);
  setAccessibleName(QStringLiteral("Picture of the last runs"));
  setAccessibleDescription(texts.join(QStringLiteral(". ")));
  updateGeometry();
  update();
}

QSize RunPictureView::sizeHint() const {
  const int runs = std::max<int>(1, static_cast<int>(runs_.size()));
  return {line() * 46, margin() + (runs * kLinesOfRun + kLinesOfAxis) * line()};
}

QSize RunPictureView::minimumSizeHint() const {
  return {line() * 28, sizeHint().height()};
}

QImage RunPictureView::image() const {
  constexpr int kScale = 2;
  QImage picture(shown() * kScale, QImage::Format_RGB32);
  picture.setDevicePixelRatio(kScale);
  picture.fill(palette().color(QPalette::Window));
  QPainter painter(&picture);
  painter.setFont(font());
  draw(painter);
  return picture;
}

QByteArray RunPictureView::svg() const {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QSvgGenerator generator;
  generator.setOutputDevice(&buffer);
  generator.setTitle(accessibleDescription());
  generator.setResolution(logicalDpiX());
  generator.setSize(shown());
  generator.setViewBox(QRect(QPoint(), shown()));
  QPainter painter(&generator);
  painter.setFont(font());
  painter.fillRect(generator.viewBox(), palette().color(QPalette::Window));
  draw(painter);
  painter.end();
  return bytes;
}

void RunPictureView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  draw(painter);
}

void RunPictureView::draw(QPainter& painter) const {
  painter.setRenderHint(QPainter::Antialiasing);
  int top = margin() / 2;
  for (const RunPicture& run : runs_) {
    drawRun(painter, run, top);
    top += kLinesOfRun * line();
  }
  drawAxis(painter, top);
}

void RunPictureView::drawRun(QPainter& painter, const RunPicture& run, int top) const {
  const auto text = [&](const QString& words, int lines, bool bold) {
    QFont face = font();
    face.setBold(bold);
    painter.setFont(face);
    painter.setPen(palette().color(QPalette::WindowText));
    const QRect place(margin(), top + lines * line(), width() - 2 * margin(), line());
    painter.drawText(place, Qt::AlignVCenter, QFontMetrics(face).elidedText(words, Qt::ElideRight, place.width()));
  };
  text(qtText(run.title), 0, true);
  text(qtText(run.figures), 1, false);
  text(troubleText(run), 2, false);
  const QRect strip(margin(), top + 4 * line(), width() - 2 * margin(), 2 * line());
  drawBars(painter, run, strip);
  drawMarks(painter, run, strip);
  drawLegend(painter, run, {margin(), strip.bottom() + line() / 2});
}

void RunPictureView::drawBars(QPainter& painter, const RunPicture& run, const QRect& strip) const {
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette().color(QPalette::Base));
  painter.drawRect(strip);
  for (const RunPicture::Bar& bar : run.bars) {
    const int from = xOf(bar.from);
    const QRect place(from, strip.top(), std::max(1, xOf(bar.from + bar.length) - from), strip.height());
    painter.fillRect(place, colourOf(bar.stage));
    const QString name = qtText(bar.name);
    if (fontMetrics().horizontalAdvance(name) + line() > place.width()) continue;
    painter.setPen(qGray(colourOf(bar.stage).rgb()) > 115 ? Qt::black : Qt::white);  // the one that reads better
    painter.drawText(place, Qt::AlignCenter, name);
  }
}

void RunPictureView::drawMarks(QPainter& painter, const RunPicture& run, const QRect& strip) const {
  const QColor ink = palette().color(QPalette::WindowText);
  for (const RunPicture::Mark& mark : run.marks) {
    const QPointF foot(xOf(mark.at), strip.top() - 1);
    painter.setPen(QPen(ink, mark.loss ? 2.5 : 1));
    painter.setBrush(mark.loss ? QBrush(Qt::NoBrush) : QBrush(ink));
    painter.drawPath(markShape(mark.loss, foot, line() * 0.6));
  }
}

// Each stage with its colour and its seconds, in as many lines as it takes.
void RunPictureView::drawLegend(QPainter& painter, const RunPicture& run, QPoint at) const {
  const int start = at.x();
  painter.setFont(font());
  for (const RunPicture::Bar& bar : run.bars) {
    const QString words = qtText(bar.name + " " + download::secondsText(bar.length));
    const int wanted = line() + fontMetrics().horizontalAdvance(words);
    if (at.x() > start && at.x() + wanted > width() - margin()) at = {start, at.y() + line()};
    painter.fillRect(at.x(), at.y() + line() / 4, line() / 2, line() / 2, colourOf(bar.stage));
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRect(at.x() + line() * 3 / 4, at.y(), wanted, line()), Qt::AlignVCenter, words);
    at.rx() += wanted + line();
  }
}

void RunPictureView::drawAxis(QPainter& painter, int top) const {
  painter.setFont(font());
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawLine(margin(), top, width() - margin(), top);
  const Micros step = download::axisStep(longest());
  for (Micros at{0}; at <= longest(); at += step) {
    const int x = xOf(at);
    painter.drawLine(x, top, x, top + line() / 4);
    const QString words = axisText(at);
    const int wide = fontMetrics().horizontalAdvance(words);
    const int left = std::clamp(x - wide / 2, 0, std::max(0, width() - wide));
    painter.drawText(QRect(left, top + line() / 3, wide, line()), Qt::AlignVCenter, words);
  }
}

Micros RunPictureView::longest() const {
  Micros most(1000);
  for (const RunPicture& run : runs_) most = std::max(most, run.length);
  return most;
}

int RunPictureView::xOf(Micros time) const {
  const double share = static_cast<double>(time.count()) / static_cast<double>(longest().count());
  return margin() + static_cast<int>(share * (width() - 2 * margin()));
}

}  // namespace kvr::window
