#include "stations/window/stations_window.h"

#include <QCloseEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>
#include <cmath>
#include "stations/window/texts.h"

namespace kvr::tiles {
namespace {

constexpr int kSecondDigitMs = 1000;
constexpr int kLongestDelay = 3600;

// So that tiles are about twice as wide as high.
int columnsFor(std::size_t tiles) {
  return std::max(1, static_cast<int>(std::ceil(std::sqrt(static_cast<double>(tiles)))));
}

QPushButton* button(const char* caption, const char* name) {
  auto* made = new QPushButton(QString::fromUtf8(caption));
  made->setObjectName(QString::fromLatin1(name));
  made->setFocusPolicy(Qt::TabFocus);
  return made;
}

}  // namespace

StationsWindow::StationsWindow(Program& program)
    : program_(program),
      pages_(new QStackedWidget),
      floor_(new QWidget),
      project_(new ElidedLabel),
      batch_(new QComboBox),
      startAll_(button("&Start all", "startAll")),
      stopAll_(button("S&top all", "stopAll")),
      add_(button("&Add a station", "addStation")),
      message_(new QLabel) {
  setObjectName(QStringLiteral("stationsWindow"));
  setWindowTitle(QStringLiteral("KVR-ISP stations"));
  auto* tilesPage = new QWidget;
  auto* column = new QVBoxLayout(tilesPage);
  column->setContentsMargins(0, 0, 0, 0);
  column->addLayout(jobRow());
  column->addLayout(workRow());
  message_->setWordWrap(true);
  message_->setObjectName(QStringLiteral("message"));
  message_->hide();
  column->addWidget(message_);
  column->addWidget(floor_, 1);
  pages_->addWidget(tilesPage);
  auto* outer = new QVBoxLayout(this);
  outer->setContentsMargins(8, 8, 8, 8);
  outer->addWidget(pages_);
  shortcuts();
  program_.adapters.changed = [this] {
    program_.crew.adaptersChanged();
    followAll();
  };
  program_.crew.changed = [this](std::size_t index) { follow(index); };
  program_.crew.onVerdict = [this](std::size_t, signs::Sign sign) {
    if (program_.beeping) program_.beeps.play(sign);
    if (batchPage_) batchPage_->refreshSoon();
  };
  if (program_.crew.size() == 0) addStation();
  layTiles();
  followAll();
  resize(QSize(1180, 720).boundedTo(screen()->availableSize()));
}

StationsWindow::~StationsWindow() {
  program_.adapters.changed = nullptr;
  program_.crew.changed = nullptr;
  program_.crew.onVerdict = nullptr;
}

QLayout* StationsWindow::jobRow() {
  auto* open = button("&Project...", "openProject");
  connect(open, &QPushButton::clicked, this, [this] { chooseProject(); });
  project_->setObjectName(QStringLiteral("project"));
  auto* caption = new QLabel(QStringLiteral("&Batch"));
  caption->setBuddy(batch_);
  batch_->setObjectName(QStringLiteral("batch"));
  batch_->setMinimumContentsLength(14);
  batch_->setFocusPolicy(Qt::TabFocus);
  connect(batch_, &QComboBox::activated, this, [this](int index) {
    program_.crew.work.batch = index > 0 ? batch_->currentText().toStdString() : std::string();
    save();
  });
  offerBatches();
  auto* page = button("Batch pa&ge", "showBatch");
  connect(page, &QPushButton::clicked, this, [this] { showBatch().open(text(program_.crew.work.batch)); });
  auto* row = new QHBoxLayout;
  row->addWidget(open);
  row->addWidget(project_, 1);
  row->addWidget(caption);
  row->addWidget(batch_);
  row->addWidget(page);
  fixedAtWork_ = {open, batch_};
  return row;
}

QLayout* StationsWindow::workRow() {
  connect(startAll_, &QPushButton::clicked, this, [this] { startAll(); });
  connect(stopAll_, &QPushButton::clicked, this, [this] { program_.crew.stopAll(); });
  connect(add_, &QPushButton::clicked, this, [this] {
    addStation();
    layTiles();
    followAll();
    save();
  });
  auto* row = new QHBoxLayout;
  for (QPushButton* one : {startAll_, stopAll_, add_}) row->addWidget(one);
  const auto box = [&](const char* caption, const char* name, bool& value, const char* tip) {
    auto* made = new QCheckBox(QString::fromLatin1(caption));
    made->setObjectName(QString::fromLatin1(name));
    made->setToolTip(QString::fromLatin1(tip));
    made->setFocusPolicy(Qt::TabFocus);
    made->setChecked(value);
    connect(made, &QCheckBox::toggled, this, [this, &value](bool on) {
      value = on;
      save();
    });
    row->addWidget(made);
    return made;
  };
  row->addSpacing(16);
  fixedAtWork_.push_back(box("&Hands free", "handsFree", program_.crew.work.handsFree,
                             "A station waits for its next chip by itself, after one that failed, too"));
  box("Bee&ps", "beeps", program_.beeping, "One for PASS, two for PASS, PART LEFT OUT, three for FAIL");
  auto* delay = new QSpinBox;
  delay->setObjectName(QStringLiteral("delay"));
  delay->setRange(0, kLongestDelay);
  delay->setSuffix(QStringLiteral(" s"));
  delay->setValue(static_cast<int>(program_.crew.work.delaySeconds));
  delay->setFocusPolicy(Qt::ClickFocus);
  auto* caption = new QLabel(QStringLiteral("Time to &change a chip"));
  caption->setBuddy(delay);
  connect(delay, &QSpinBox::valueChanged, this, [this](int seconds) {
    program_.crew.work.delaySeconds = seconds;
    save();
  });
  fixedAtWork_.push_back(delay);
  row->addSpacing(16);
  row->addWidget(caption);
  row->addWidget(delay);
  row->addStretch(1);
  return row;
}

// Digits choose a tile, two of them in a second those from 10 on; Space starts or stops it.
void StationsWindow::shortcuts() {
  for (int digit = 0; digit <= 9; ++digit)
    connect(new QShortcut(QKeySequence(Qt::Key_0 + digit), this), &QShortcut::activated, this,
            [this, digit] { typed(digit); });
  connect(new QShortcut(QKeySequence(Qt::Key_Space), this), &QShortcut::activated, this, [this] { toggleChosen(); });
}

void StationsWindow::typed(int digit) {
  const int before = chosen_ + 1;
  const bool second = lastDigit_.isValid() && lastDigit_.elapsed() < kSecondDigitMs && before >= 1 && before <= 9 &&
                      before * 10 + digit <= static_cast<int>(tiles_.size());
  choose((second ? before * 10 + digit : digit) - 1);
  lastDigit_.start();
}

void StationsWindow::choose(int index) {
  if (index >= static_cast<int>(tiles_.size())) return;
  chosen_ = index;
  for (std::size_t i = 0; i < tiles_.size(); ++i) tiles_[i]->setChosen(static_cast<int>(i) == index);
}

void StationsWindow::toggleChosen() {
  if (chosen_ < 0) return;
  const auto index = static_cast<std::size_t>(chosen_);
  if (program_.crew.station(index).tile().running)
    program_.crew.station(index).stop();
  else
    start(index);
}

void StationsWindow::layTiles() {
  for (TileView* tile : tiles_) tile->deleteLater();
  tiles_.clear();
  chosen_ = -1;
  delete grid_;
  grid_ = new QGridLayout(floor_);
  grid_->setContentsMargins(0, 0, 0, 0);
  grid_->setSpacing(8);
  const int columns = columnsFor(program_.crew.size());
  for (std::size_t i = 0; i < program_.crew.size(); ++i) {
    auto* tile = new TileView(static_cast<int>(i) + 1);
    tiles_.push_back(tile);
    connectTile(i);
    const int row = static_cast<int>(i) / columns, column = static_cast<int>(i) % columns;
    grid_->addWidget(tile, row, column);
    grid_->setRowStretch(row, 1);
    grid_->setColumnStretch(column, 1);
  }
}

void StationsWindow::connectTile(std::size_t index) {
  TileView& tile = *tiles_[index];
  stations::Crew& crew = program_.crew;
  tile.onChosen = [this, index] { choose(static_cast<int>(index)); };
  tile.onStart = [this, index] { start(index); };
  tile.onStop = [&crew, index] { crew.station(index).stop(); };
  tile.onClear = [&crew, index] { crew.station(index).clear(); };
  tile.onRename = [this, index] { rename(index); };
  tile.onRemove = [this, index] { removeStation(index); };
  tile.adapters = [this] { return program_.adapters.list(); };
  tile.takenBy = [&crew, index](const stations::Adapter& adapter) {
    for (std::size_t i = 0; i < crew.size(); ++i)
      if (i != index && crew.place(i).adapter == adapter.identity) return text(crew.place(i).name);
    return QString();
  };
  tile.onPort = [this, index](const stations::Adapter& adapter) {
    if (!program_.crew.setAdapter(index, adapter.identity, adapter.text)) return;
    follow(index);
    save();
  };
}

void StationsWindow::follow(std::size_t index) {
  const auto& tile = program_.crew.station(index).tile();
  if (index < tiles_.size()) tiles_[index]->show(tile);
  bool any = false, all = true;
  for (std::size_t i = 0; i < program_.crew.size(); ++i) {
    const bool running = program_.crew.station(i).tile().running;
    any = any || running;
    all = all && running;
  }
  for (QWidget* widget : fixedAtWork_) widget->setEnabled(!any);
  startAll_->setEnabled(!all && !closing_);
  stopAll_->setEnabled(any);
  add_->setEnabled(program_.crew.size() < stations::Crew::kMost && !any);
  if (closing_ && !program_.crew.busy())
    QMetaObject::invokeMethod(
        this, [this] { close(); }, Qt::QueuedConnection);
}

void StationsWindow::followAll() {
  const QString path = text(program_.crew.work.project);
  project_->setText(path.isEmpty() ? QStringLiteral("No project: choose the one that all stations program")
                                   : QFileInfo(path).fileName() + QStringLiteral("   ") + path);
  for (std::size_t i = 0; i < tiles_.size(); ++i) {
    stations::Tile& tile = program_.crew.station(i).tile();
    if (!tile.running) tile.port = program_.adapters.textOf(program_.crew.place(i).adapter);
    follow(i);
  }
}

bool StationsWindow::mayStart() {
  const QString project = text(program_.crew.work.project);
  if (project.isEmpty()) tell(QStringLiteral("Choose a project first: all stations program the same job."));
  if (const auto twice = program_.crew.doubled())
    tell(QStringLiteral("The same adapter as another one has station ") + text(program_.crew.place(*twice).name));
  else if (!project.isEmpty())
    tell({});
  return message_->isHidden() && !closing_;
}

void StationsWindow::start(std::size_t index) {
  if (mayStart()) program_.crew.station(index).start(program_.crew.work);
}

void StationsWindow::startAll() {
  if (mayStart()) program_.crew.startAll();
}

// With the first adapter that no other station has.
void StationsWindow::addStation() {
  stations::Crew& crew = program_.crew;
  const std::string name = crew.freshName();
  stations::Adapter free;
  for (const stations::Adapter& adapter : program_.adapters.list()) {
    bool taken = false;
    for (std::size_t i = 0; i < crew.size(); ++i) taken = taken || crew.place(i).adapter == adapter.identity;
    if (taken || program_.adapters.deviceOf(adapter.identity).empty()) continue;
    free = adapter;
    break;
  }
  if (crew.add({name, free.identity})) crew.station(crew.size() - 1).tile().port = free.text;
}

// Later, since the tile whose menu asks for it goes.
void StationsWindow::removeStation(std::size_t index) {
  QMetaObject::invokeMethod(
      this,
      [this, index] {
        if (!program_.crew.remove(index)) return;
        layTiles();
        followAll();
        save();
      },
      Qt::QueuedConnection);
}

void StationsWindow::rename(std::size_t index) {
  bool good = false;
  const QString name = QInputDialog::getText(this, QStringLiteral("Rename the station"), QStringLiteral("Name"),
                                             QLineEdit::Normal, text(program_.crew.place(index).name), &good);
  if (!good) return;
  if (!program_.crew.rename(index, name.trimmed().toStdString()))
    return tell(QStringLiteral("A station has this name, or is at work: ") + name);
  follow(index);
  save();
}

void StationsWindow::chooseProject() {
  const QString path = QFileDialog::getOpenFileName(this, QStringLiteral("The project that all stations program"),
                                                    QFileInfo(text(program_.crew.work.project)).absolutePath(),
                                                    QStringLiteral("Projects (*.KVR *.kvr);;All files (*)"));
  if (path.isEmpty()) return;
  program_.setProject(path.toStdString());
  tell({});
  followAll();
  save();
}

// What is open now. The one of the last time stays, whether it is there or not: kvr says so.
void StationsWindow::offerBatches() {
  const auto fill = [this](const std::vector<std::string>& names) {
    const QSignalBlocker quiet(batch_);
    batch_->clear();
    batch_->addItem(QStringLiteral("No batch"));
    for (const std::string& name : names) batch_->addItem(text(name));
    const QString wanted = text(program_.crew.work.batch);
    if (!wanted.isEmpty() && batch_->findText(wanted) < 0) batch_->addItem(wanted);
    batch_->setCurrentIndex(wanted.isEmpty() ? 0 : batch_->findText(wanted));
  };
  fill({});
  program_.books().ask(
      [fill](records::RecordStore& store) -> Books::Answer {
        const auto batches = store.batches();
        std::vector<std::string> open;
        for (const records::Batch& batch : batches.value)
          if (batch.closed.empty()) open.push_back(batch.name);
        return [fill, open] { fill(open); };
      },
      [this](const records::StoreFault& fault) { tell(text(fault.words)); });
}

BatchPage& StationsWindow::showBatch() {
  if (!batchPage_) {
    batchPage_ = new BatchPage(program_.books());
    batchPage_->onBack = [this] { showTiles(); };
    pages_->addWidget(batchPage_);
  }
  pages_->setCurrentWidget(batchPage_);
  return *batchPage_;
}

void StationsWindow::showTiles() {
  pages_->setCurrentIndex(0);
  offerBatches();
}

void StationsWindow::tell(const QString& words) {
  message_->setText(words);
  message_->setVisible(!words.isEmpty());
}

void StationsWindow::save() {
  if (const std::string why = program_.save(); !why.empty())
    tell(QStringLiteral("The settings could not be written: ") + text(why));
}

// The chips in hand are finished first; a second close stops them.
void StationsWindow::closeEvent(QCloseEvent* event) {
  if (!program_.crew.busy()) {
    program_.crew.stopAll();  // those that wait for an adapter
    return event->accept();
  }
  event->ignore();
  if (closing_) return program_.crew.stopAll();
  closing_ = true;
  program_.crew.finishAll();
  tell(QStringLiteral("The chips in hand are finished, then the window closes. Close it again to stop them at once."));
}

}  // namespace kvr::tiles
