#include "stations/window/batch_charts.h"

#include <QBarSeries>
#include <QBarSet>
#include <QCategoryAxis>
#include <QChart>
#include <QChartView>
#include <QEvent>
#include <QHBoxLayout>
#include <QLegend>
#include <QStackedBarSeries>
#include <QValueAxis>

namespace kvr::tiles {
namespace {

constexpr qsizetype kMostLabels = 8;
constexpr qsizetype kLeastRoom = 8;  // bars: one alone is no wall

// "24 09:00" of an hour, "24 Nov" of a day.
QString labelOf(const std::string& hour) {
  static const char* const kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                        "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const QString text = QString::fromStdString(hour);
  const QString day = text.mid(8, 2);
  if (text.size() > 10) return text.mid(11, 2) + QStringLiteral(":00");
  return day + QLatin1Char(' ') + QString::fromLatin1(kMonths[std::clamp(text.mid(5, 2).toInt(), 1, 12) - 1]);
}

// Only so many of the bars have their name below them. Two of one name are told apart by what is not seen.
QCategoryAxis* axisOf(const QStringList& labels) {
  auto* axis = new QCategoryAxis;
  axis->setLabelsPosition(QCategoryAxis::AxisLabelsPositionOnValue);
  axis->setRange(-0.5, static_cast<qreal>(std::max(labels.size(), kLeastRoom)) - 0.5);
  const qsizetype every = std::max<qsizetype>(1, (labels.size() + kMostLabels - 1) / kMostLabels);
  for (qsizetype i = 0; i < labels.size(); i += every) axis->append(labels[i] + QString(i, QChar(0x200B)), qreal(i));
  axis->setGridLineVisible(false);
  return axis;
}

qsizetype largest(const QList<qreal>& sums) {
  qreal most = 1;
  for (const qreal sum : sums) most = std::max(most, sum);
  return static_cast<qsizetype>(most);
}

}  // namespace

class BatchCharts::Charts {
 public:
  Charts() {
    for (QChartView* view : {&over_, &seconds_}) {
      view->setRenderHint(QPainter::Antialiasing);
      view->setMinimumHeight(160);
      view->chart()->setMargins({4, 4, 4, 4});
      view->chart()->layout()->setContentsMargins(0, 0, 0, 0);
      view->chart()->setBackgroundRoundness(0);
    }
    over_.chart()->setTitle(QStringLiteral("PASS and FAIL over time"));
    seconds_.chart()->setTitle(QStringLiteral("Seconds a chip took"));
    over_.setAccessibleName(over_.chart()->title());
    seconds_.setAccessibleName(seconds_.chart()->title());
    seconds_.chart()->legend()->hide();
  }

  void drawTime(const std::vector<records::HourFigures>& bars) {
    auto* passed = new QBarSet(QStringLiteral("PASS"));
    auto* failed = new QBarSet(QStringLiteral("FAIL"));
    QStringList labels;
    QList<qreal> sums;
    for (const records::HourFigures& bar : bars) {
      *passed << static_cast<qreal>(bar.passed);
      *failed << static_cast<qreal>(bar.failed);
      sums << static_cast<qreal>(bar.passed + bar.failed);
      labels << labelOf(bar.hour);
    }
    passed->setBrush(QColor(0x4c, 0xb8, 0x6a));  // of another lightness, for those who see no red or green
    failed->setBrush(QColor(0xb7, 0x10, 0x10));
    for (QBarSet* set : {passed, failed}) set->setPen(Qt::NoPen);
    auto* series = new QStackedBarSeries;
    series->append(failed);  // below, where a few are seen beside many
    series->append(passed);
    fill(over_, series, labels, largest(sums));
  }
  void drawSeconds(const SecondsBars& bars) {
    auto* set = new QBarSet(QStringLiteral("chips"));
    QStringList labels;
    QList<qreal> runs;
    for (std::size_t i = 0; i < bars.runs.size(); ++i) {
      runs << static_cast<qreal>(bars.runs[i]);
      labels << QString::number(bars.first + static_cast<std::int64_t>(i) * bars.width) + QStringLiteral(" s");
    }
    set->append(runs);
    set->setBrush(QColor(0x3d, 0x8b, 0xd4));
    set->setPen(Qt::NoPen);
    auto* series = new QBarSeries;
    series->append(set);
    fill(seconds_, series, labels, largest(runs));
  }

  QChartView over_;
  QChartView seconds_;

 private:
  void fill(QChartView& view, QAbstractBarSeries* series, const QStringList& labels, qsizetype most) {
    QChart& chart = *view.chart();
    chart.removeAllSeries();
    for (QAbstractAxis* axis : chart.axes()) {
      chart.removeAxis(axis);
      delete axis;
    }
    series->setBarWidth(0.9);
    chart.addSeries(series);
    auto* across = axisOf(labels);
    auto* up = new QValueAxis;
    up->setRange(0, static_cast<qreal>(most));
    up->setTickCount(static_cast<int>(std::min<qsizetype>(most, 4)) + 1);
    up->setLabelFormat(QStringLiteral("%.0f"));
    up->applyNiceNumbers();
    chart.addAxis(across, Qt::AlignBottom);
    chart.addAxis(up, Qt::AlignLeft);
    series->attachAxis(across);
    series->attachAxis(up);
    paint(view, chart);
  }
  // In the window's own colours, light or dark.
  static void paint(const QChartView& view, QChart& chart) {
    const QPalette& colours = view.palette();
    const QColor ink = colours.color(QPalette::Text);
    QColor pale = ink;
    pale.setAlphaF(0.25F);
    chart.setBackgroundBrush(colours.color(QPalette::Base));
    chart.setTitleBrush(ink);
    chart.legend()->setLabelColor(ink);
    chart.legend()->setFont(view.font());
    QFont title = view.font();
    title.setBold(true);
    chart.setTitleFont(title);
    for (QAbstractAxis* axis : chart.axes()) {
      axis->setLabelsColor(ink);
      axis->setLabelsFont(view.font());
      axis->setLinePenColor(ink);
      axis->setGridLineColor(pale);
    }
  }
};

BatchCharts::BatchCharts() : charts_(std::make_unique<Charts>()) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(&charts_->over_, 1);
  row->addWidget(&charts_->seconds_, 1);
}

BatchCharts::~BatchCharts() = default;

void BatchCharts::show(const records::BatchFigures& figures) {
  figures_ = figures;
  draw();
}

void BatchCharts::draw() {
  charts_->drawTime(barsOverTime(figures_.hours));
  charts_->drawSeconds(barsOfSeconds(figures_.seconds));
}

void BatchCharts::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) draw();
}

}  // namespace kvr::tiles
