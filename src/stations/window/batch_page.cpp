#include "stations/window/batch_page.h"

#include <QDateTime>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPointer>
#include <QTimeZone>

#include "stations/window/export_runs.h"
#include "stations/window/texts.h"

namespace kvr::tiles {
namespace {

constexpr int kRefreshMs = 1500;

// The store counts in UTC; people look at their own clock.
std::string localHour(const std::string& hour) {
  QDateTime time = QDateTime::fromString(text(hour), QStringLiteral("yyyy-MM-ddTHH"));
  time.setTimeZone(QTimeZone::utc());
  return time.toLocalTime().toString(QStringLiteral("yyyy-MM-ddTHH")).toStdString();
}

// The hour of the store at which a local day begins.
std::string utcHourOf(const QDate& day) {
  return day.startOfDay().toUTC().toString(QStringLiteral("yyyy-MM-ddTHH")).toStdString();
}

records::RecordStore::TallyFilter filterOf(const QString& station, const QString& day) {
  const QDate date = QDate::fromString(day, Qt::ISODate);
  if (!date.isValid()) return {station.toStdString(), {}, {}};
  return {station.toStdString(), utcHourOf(date), utcHourOf(date.addDays(1))};
}

std::vector<std::string> localDays(const std::vector<std::string>& hours) {
  constexpr std::size_t kDayDigits = 10;
  std::vector<std::string> days;
  for (const std::string& hour : hours)
    if (const std::string day = localHour(hour).substr(0, kDayDigits); days.empty() || days.back() != day)
      days.push_back(day);
  return days;
}

QString localTime(const std::string& utc) {
  const QDateTime time = QDateTime::fromString(text(utc), Qt::ISODate);
  return time.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm"));
}

QString numbersText(const records::Doubt& doubt) {
  QStringList numbers;
  for (const std::int64_t number : doubt.numbers) numbers << QString::number(number);
  return numbers.isEmpty() ? QStringLiteral("chip %1").arg(doubt.ordinal + 1) : numbers.join(QLatin1Char('/'));
}

BatchPage::Content readContent(records::RecordStore& store, const std::string& wanted,
                               const records::RecordStore::TallyFilter& filter) {
  BatchPage::Content content;
  const auto batches = store.batches();
  content.fault = batches.fault;
  for (const records::Batch& batch : batches.value) {
    content.names.push_back(batch.name);
    if (batch.name == wanted || (wanted.empty() && content.names.size() == 1)) content.batch = batch;
  }
  const std::string& name = content.batch.name;
  if (name.empty() || !content.fault.none()) return content;
  auto extent = store.extent(name);
  auto tallies = store.tallies(name, filter);
  auto doubts = store.doubts(name);
  content.fault = !extent.ok() ? extent.fault : tallies.ok() ? doubts.fault : tallies.fault;
  content.stations = std::move(extent.value.stations);
  content.days = localDays(extent.value.hours);
  content.tallies = std::move(tallies.value);
  content.doubts = std::move(doubts.value);
  for (auto& tally : content.tallies)
    if (!tally.hour.empty()) tally.hour = localHour(tally.hour);
  return content;
}

QTableWidget* table(const QStringList& heads, const QString& name) {
  auto* made = new QTableWidget(0, static_cast<int>(heads.size()));
  made->setHorizontalHeaderLabels(heads);
  made->setAccessibleName(name);
  made->verticalHeader()->hide();
  made->setEditTriggers(QAbstractItemView::NoEditTriggers);
  made->setSelectionBehavior(QAbstractItemView::SelectRows);
  made->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  made->horizontalHeader()->setStretchLastSection(true);
  made->setMinimumHeight(90);
  return made;
}

void fill(QTableWidget& table, const std::vector<QStringList>& rows) {
  table.setRowCount(static_cast<int>(rows.size()));
  for (int row = 0; row < table.rowCount(); ++row)
    for (int column = 0; column < table.columnCount(); ++column)
      table.setItem(row, column, new QTableWidgetItem(rows[static_cast<std::size_t>(row)][column]));
}

// The choice stays, as long as it is still there.
void offer(QComboBox& box, const QString& all, const std::vector<std::string>& names) {
  const QString kept = box.currentText();
  const QSignalBlocker quiet(box);
  box.clear();
  if (!all.isEmpty()) box.addItem(all);
  for (const std::string& name : names) box.addItem(text(name));
  box.setCurrentIndex(std::max(0, box.findText(kept)));
}

QLabel* figure(const char* name) {
  auto* label = new QLabel;
  label->setObjectName(QString::fromLatin1(name));
  QFont face = label->font();
  face.setPointSizeF(face.pointSizeF() * 1.5);
  face.setBold(true);
  label->setFont(face);
  return label;
}

}  // namespace

BatchPage::BatchPage(Books& books)
    : books_(books),
      batch_(new QComboBox),
      station_(new QComboBox),
      day_(new QComboBox),
      done_(figure("batchDone")),
      yield_(figure("batchYield")),
      rate_(figure("batchRate")),
      message_(new QLabel),
      charts_(new BatchCharts),
      failures_(table({QStringLiteral("Chips"), QStringLiteral("Failures by message")}, QStringLiteral("Failures"))),
      doubts_(table({QStringLiteral("In doubt"), QStringLiteral("Station"), QStringLiteral("Since")},
                    QStringLiteral("Numbers in doubt"))),
      spent_(new QPushButton(QStringLiteral("S&pent: a good chip has it"))),
      free_(new QPushButton(QStringLiteral("&Free: no chip has it"))),
      export_(new QPushButton(QStringLiteral("E&xport as CSV..."))) {
  setObjectName(QStringLiteral("batchPage"));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addLayout(choices());
  auto* facts = new QHBoxLayout;
  for (QLabel* label : {done_, yield_, rate_}) facts->addWidget(label, 1);
  column->addLayout(facts);
  message_->setWordWrap(true);
  message_->hide();
  column->addWidget(message_);
  column->addWidget(charts_, 3);
  column->addLayout(tables(), 2);
  soon_.setSingleShot(true);
  soon_.setInterval(kRefreshMs);
  connect(&soon_, &QTimer::timeout, this, [this] { ask(chosen()); });
  connect(batch_, &QComboBox::activated, this, [this] { ask(chosen()); });
  for (QComboBox* box : {station_, day_}) connect(box, &QComboBox::activated, this, [this] { ask(chosen()); });
}

QLayout* BatchPage::choices() {
  auto* row = new QHBoxLayout;
  const auto captioned = [this, row](const char* caption, QComboBox* box, const char* name) {
    auto* label = new QLabel(QString::fromLatin1(caption));
    label->setBuddy(box);
    box->setObjectName(QString::fromLatin1(name));
    box->setMinimumContentsLength(8);
    if (box != batch_) box->setSizeAdjustPolicy(QComboBox::AdjustToContents);  // a day comes with its first run
    row->addWidget(label);
    row->addWidget(box);
  };
  auto* back = new QPushButton(QStringLiteral("&Tiles"));
  back->setObjectName(QStringLiteral("showTiles"));
  connect(back, &QPushButton::clicked, this, [this] { onBack(); });
  row->addWidget(back);
  captioned("&Batch", batch_, "batchShown");
  captioned("St&ation", station_, "batchStation");
  captioned("&Day", day_, "batchDay");
  row->addStretch(1);
  export_->setObjectName(QStringLiteral("exportRuns"));
  connect(export_, &QPushButton::clicked, this, [this] { exportRuns(); });
  row->addWidget(export_);
  return row;
}

QLayout* BatchPage::tables() {
  auto* right = new QVBoxLayout;
  right->addWidget(doubts_, 1);
  auto* buttons = new QHBoxLayout;
  spent_->setObjectName(QStringLiteral("doubtSpent"));
  free_->setObjectName(QStringLiteral("doubtFree"));
  doubts_->setObjectName(QStringLiteral("doubts"));
  connect(spent_, &QPushButton::clicked, this, [this] { settle(records::Settlement::Spent); });
  connect(free_, &QPushButton::clicked, this, [this] { settle(records::Settlement::Free); });
  const auto follow = [this] {
    for (QPushButton* button : {spent_, free_}) button->setEnabled(doubts_->currentRow() >= 0);
  };
  connect(doubts_, &QTableWidget::itemSelectionChanged, this, follow);
  follow();
  buttons->addWidget(spent_);
  buttons->addWidget(free_);
  right->addLayout(buttons);
  auto* row = new QHBoxLayout;
  failures_->setObjectName(QStringLiteral("failures"));
  row->addWidget(failures_, 1);
  row->addLayout(right, 1);
  return row;
}

void BatchPage::open(const QString& batch) {
  ask(batch.toStdString());
}

void BatchPage::refreshSoon() {
  if (!soon_.isActive()) soon_.start();
}

std::string BatchPage::chosen() const {
  return batch_->currentText().toStdString();
}

void BatchPage::ask(const std::string& batch) {
  const QPointer<BatchPage> self(this);
  const bool same = batch == content_.batch.name;  // another batch is shown whole
  const auto filter = filterOf(same ? stationChosen() : QString(), same ? dayChosen() : QString());
  books_.ask(
      [self, batch, filter](records::RecordStore& store) -> Books::Answer {
        auto content = std::make_shared<Content>(readContent(store, batch, filter));
        return [self, content] {
          if (self) self->take(std::move(*content));
        };
      },
      [self](const records::StoreFault& fault) {
        if (self) self->tell(text(fault.words));
      });
}

bool BatchPage::filtered() const {
  return station_->currentIndex() > 0 || day_->currentIndex() > 0;
}
QString BatchPage::stationChosen() const {
  return station_->currentIndex() > 0 ? station_->currentText() : QString();
}
QString BatchPage::dayChosen() const {
  return day_->currentIndex() > 0 ? day_->currentText() : QString();
}

void BatchPage::take(Content content) {
  if (content.batch.name != content_.batch.name)
    for (QComboBox* box : {station_, day_}) box->setCurrentIndex(0);
  content_ = std::move(content);
  offer(*batch_, {}, content_.names);
  batch_->setCurrentIndex(batch_->findText(text(content_.batch.name)));
  offer(*station_, QStringLiteral("All stations"), content_.stations);
  offer(*day_, QStringLiteral("All days"), content_.days);
  const QString none =
      content_.names.empty() ? QStringLiteral("There is no batch yet. `kvr batch new` makes one.") : QString();
  tell(content_.fault.none() ? none : text(content_.fault.words));
  showFigures();
  showDoubts();
}

void BatchPage::showFigures() {
  const records::BatchFigures figures = records::figuresOf(content_.tallies);
  const auto wanted = content_.batch.wanted;
  done_->setText(wanted && !filtered() ? QStringLiteral("%1 of %2 done").arg(figures.done()).arg(*wanted)
                                       : QStringLiteral("%1 done").arg(figures.done()));
  yield_->setText(QStringLiteral("Yield %1 %  (%2 FAIL)").arg(figures.yield() * 100, 0, 'f', 1).arg(figures.failed));
  rate_->setText(QStringLiteral("%1 chips an hour").arg(figures.chipsAnHour(), 0, 'f', 0));
  charts_->show(figures);
  std::vector<QStringList> rows;
  for (const records::CountOf& failure : figures.failures)
    rows.push_back({QString::number(failure.runs), text(failure.words)});
  fill(*failures_, rows);
  export_->setEnabled(!content_.batch.name.empty());
}

void BatchPage::showDoubts() {
  std::vector<QStringList> rows;
  for (const records::Doubt& doubt : content_.doubts)
    rows.push_back({numbersText(doubt), text(doubt.station), localTime(doubt.since)});
  fill(*doubts_, rows);
  doubts_->setCurrentCell(-1, -1);
}

void BatchPage::settle(records::Settlement how) {
  const auto row = static_cast<std::size_t>(doubts_->currentRow());
  if (row >= content_.doubts.size()) return;
  const records::Doubt doubt = content_.doubts[row];
  const QPointer<BatchPage> self(this);
  books_.ask(
      [self, doubt, how](records::RecordStore& store) -> Books::Answer {
        const records::StoreFault fault = store.settle(doubt.batch, doubt.ordinal, how);
        return [self, doubt, fault] {
          if (self) self->ask(doubt.batch);
          if (self && !fault.none()) self->tell(text(fault.words));
        };
      },
      [self](const records::StoreFault& fault) {
        if (self) self->tell(text(fault.words));
      });
}

void BatchPage::exportRuns() {
  const QString path = QFileDialog::getSaveFileName(this, QStringLiteral("Export the runs of the batch"),
                                                    text(content_.batch.name) + QStringLiteral(".csv"),
                                                    QStringLiteral("Tables (*.csv)"));
  if (path.isEmpty()) return;
  const RunFilter filter{content_.batch.name, stationChosen(), dayChosen()};
  const QPointer<BatchPage> self(this);
  books_.ask(
      [self, path, filter](records::RecordStore& store) -> Books::Answer {
        const QString said = writeRuns(store, filter, path);
        return [self, said] {
          if (self) self->tell(said);
        };
      },
      [self](const records::StoreFault& fault) {
        if (self) self->tell(text(fault.words));
      });
}

void BatchPage::tell(const QString& words) {
  message_->setText(words);
  message_->setVisible(!words.isEmpty());
}

}  // namespace kvr::tiles
