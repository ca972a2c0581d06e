#include "stations/window/tile_view.h"

#include <QAccessible>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

#include "stations/window/texts.h"

namespace kvr::tiles {
namespace {

constexpr qreal kNameScale = 1.4;  // its digits are what a user types

QString countsText(const stations::Counts& counts) {
  QString line = QStringLiteral("%1 PASS").arg(counts.passed);
  if (counts.inPart > 0) line += QStringLiteral("  %1 in part").arg(counts.inPart);
  return line + QStringLiteral("  %1 FAIL").arg(counts.failed);
}

QString remarkOf(const stations::Tile& tile) {
  return tile.adapterGone ? QStringLiteral("ADAPTER GONE")
         : tile.chipLeft  ? QStringLiteral("CHIP NOT PROGRAMMED")
                          : QString();
}

QString wordsText(const stations::Tile& tile) {
  QString line = tile.words == tile.lastFailure ? QString() : text(tile.words);
  if (tile.fraction >= 0) line += QStringLiteral(" %1 %").arg(static_cast<int>(tile.fraction * 100));
  if (tile.number.empty()) return line;
  return QStringLiteral("No. ") + text(tile.number) + (line.isEmpty() ? QString() : QStringLiteral("  ") + line);
}

}  // namespace

TileView::TileView(int number)
    : number_(number),
      name_(new ElidedLabel),
      port_(new QPushButton),
      ports_(new QMenu(this)),
      run_(new QPushButton),
      more_(new QToolButton),
      sign_(new TileSign),
      progress_(new QProgressBar),
      words_(new ElidedLabel),
      counts_(new ElidedLabel(Qt::AlignRight)),
      failure_(new ElidedLabel) {
  setObjectName(QStringLiteral("tile_%1").arg(number));
  setFocusPolicy(Qt::StrongFocus);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(8, 6, 8, 6);
  column->setSpacing(4);
  column->addLayout(header());
  column->addWidget(sign_, 1);
  progress_->setTextVisible(false);
  progress_->setFixedHeight(8);
  progress_->setRange(0, 1000);
  column->addWidget(progress_);
  auto* line = new QHBoxLayout;
  line->addWidget(words_, 1);
  line->addWidget(counts_, 1);
  column->addLayout(line);
  failure_->setMinimumHeight(1);  // gives way first, where tiles are low: its tip has it still
  column->addWidget(failure_);
}

QLayout* TileView::header() {
  QFont face = font();
  face.setBold(true);
  face.setPointSizeF(face.pointSizeF() * kNameScale);
  name_->setFont(face);
  port_->setObjectName(QStringLiteral("port_%1").arg(number_));
  port_->setMenu(ports_);
  port_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  run_->setObjectName(QStringLiteral("run_%1").arg(number_));
  run_->setMaximumWidth(run_->fontMetrics().horizontalAdvance(QStringLiteral("Start")) * 2);
  more_->setObjectName(QStringLiteral("more_%1").arg(number_));
  more_->setText(QStringLiteral("⋯"));
  more_->setAccessibleName(QStringLiteral("More"));
  more_->setPopupMode(QToolButton::InstantPopup);
  more_->setMenu(moreMenu());
  for (QWidget* button : {static_cast<QWidget*>(port_), static_cast<QWidget*>(run_), static_cast<QWidget*>(more_)})
    button->setFocusPolicy(Qt::TabFocus);  // a click leaves the digits with the tiles
  connect(ports_, &QMenu::aboutToShow, this, [this] { fillPorts(); });
  connect(run_, &QPushButton::clicked, this, [this] { running_ ? onStop() : onStart(); });
  auto* row = new QHBoxLayout;
  row->setSpacing(4);
  row->addWidget(name_, 2);
  row->addWidget(port_, 5);
  row->addWidget(run_);
  row->addWidget(more_);
  return row;
}

QMenu* TileView::moreMenu() {
  auto* menu = new QMenu(this);
  rename_ = menu->addAction(QStringLiteral("Rename..."));
  auto* clear = menu->addAction(QStringLiteral("Clear the counts"));
  remove_ = menu->addAction(QStringLiteral("Remove the station"));
  connect(rename_, &QAction::triggered, this, [this] { onRename(); });
  connect(clear, &QAction::triggered, this, [this] { onClear(); });
  connect(remove_, &QAction::triggered, this, [this] { onRemove(); });
  return menu;
}

void TileView::fillPorts() {
  ports_->clear();
  for (const stations::Adapter& adapter : adapters()) {
    const QString user = takenBy(adapter);
    auto* action = ports_->addAction(text(adapter.text) +
                                     (user.isEmpty() ? QString() : QStringLiteral("  (station %1)").arg(user)));
    action->setEnabled(user.isEmpty());
    connect(action, &QAction::triggered, this, [this, adapter] { onPort(adapter); });
  }
  if (ports_->isEmpty()) ports_->addAction(QStringLiteral("No adapter is plugged in"))->setEnabled(false);
}

void TileView::show(const stations::Tile& tile) {
  running_ = tile.running;
  name_->setText(QStringLiteral("%1").arg(number_) +
                 (tile.name == std::to_string(number_) ? QString() : QStringLiteral("  ") + text(tile.name)));
  portText_ = tile.port.empty() ? QStringLiteral("Choose a port") : text(tile.port);
  followPort();
  for (QAction* action : {rename_, remove_}) action->setEnabled(!running_);
  port_->setEnabled(!running_);
  run_->setText(running_ ? QStringLiteral("Stop") : QStringLiteral("Start"));
  sign_->show(tile.sign, tile.last, remarkOf(tile));
  progress_->setValue(tile.fraction < 0 ? 0 : static_cast<int>(tile.fraction * 1000));
  words_->setText(wordsText(tile));
  counts_->setText(countsText(tile.counts));
  counts_->setMaximumWidth(counts_->fontMetrics().horizontalAdvance(countsText(tile.counts)) +
                           2);  // the words get the rest
  failure_->setText(tile.lastFailure.empty() ? QString() : QStringLiteral("Last failure: ") + text(tile.lastFailure));
  setAccessibleName(QStringLiteral("Station ") + text(tile.name));
  setAccessibleDescription(text(stations::lineOf(tile)));
}

void TileView::followPort() {
  const int room = port_->width() - port_->fontMetrics().height() * 2;
  port_->setText(port_->fontMetrics().elidedText(portText_, Qt::ElideRight, std::max(room, 0)));
  port_->setToolTip(portText_);
  port_->setAccessibleName(QStringLiteral("Port: ") + portText_);
}

void TileView::resizeEvent(QResizeEvent* event) {
  QFrame::resizeEvent(event);
  followPort();
}

void TileView::setChosen(bool chosen) {
  chosen_ = chosen;
  if (chosen) setFocus();
  update();
}

void TileView::mousePressEvent(QMouseEvent* event) {
  QFrame::mousePressEvent(event);
  onChosen();
}

void TileView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor edge = palette().color(chosen_ ? QPalette::Highlight : QPalette::Mid);
  painter.setPen(QPen(edge, chosen_ ? 3 : 1));
  painter.setBrush(palette().color(QPalette::Base));
  painter.drawRoundedRect(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5), 6, 6);
}

}  // namespace kvr::tiles
