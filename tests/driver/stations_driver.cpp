// kvr-stations-driver [FILE.KVR]: the stations window, driven by a script: a run of each station without a display, and
// pictures of its pages.
#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QStyleFactory>
#include <QTimer>
#include <algorithm>
#include <cstdio>

#include "stations/window/stations_window.h"
#include "tests/driver/dark_palette.h"

namespace kvr::tiles {
namespace {

constexpr int kLimitMs = 180'000;  // a chip never came
constexpr int kPaintedMs = 300;
constexpr int kPulseMs = 5;

class Demo {
 public:
  Demo(Program& program, QString picture) : program_(program), picture_(std::move(picture)) {}

  // Until each station has a verdict.
  void run() {
    QMetaObject::invokeMethod(
        program_.window.get(),
        [this] { program_.window->findChild<QPushButton*>(QStringLiteral("startAll"))->click(); },
        Qt::QueuedConnection);
    QObject::connect(&look_, &QTimer::timeout, program_.window.get(), [this] {
      if (allHaveVerdict()) finish();
    });
    look_.start(50);
    QObject::connect(&pulse_, &QTimer::timeout, program_.window.get(),
                     [this] { slowest_ = std::max(slowest_, since_.restart() - kPulseMs); });
    pulse_.setTimerType(Qt::PreciseTimer);
    pulse_.start(kPulseMs);
    since_.start();
    QTimer::singleShot(kLimitMs, program_.window.get(), [this] { finish(); });
  }
  // The page of a batch.
  void batch(const QString& name) {
    BatchPage& page = program_.window->showBatch();
    QObject::connect(&look_, &QTimer::timeout, &page,
                     [this, &page] {  // a batch whose figures are shown can be exported
                       if (!page.findChild<QPushButton*>(QStringLiteral("exportRuns"))->isEnabled()) return;
                       look_.stop();
                       QTimer::singleShot(kPaintedMs, &page, [this] { finish(); });
                     });
    look_.start(50);
    page.open(name);
  }
  // One tile of each kind, as values.
  void signs() {
    for (std::size_t i = 0; i < program_.crew.size(); ++i) {
      stations::Tile tile = program_.crew.station(i).tile();
      tile.sign = static_cast<signs::Sign>(i % 7);
      if (tile.sign == signs::Sign::Waiting) tile.last = i > 6 ? signs::Sign::Fail : signs::Sign::Pass;
      tile.adapterGone = i == 12;
      tile.running = tile.sign != signs::Sign::Ready && tile.sign != signs::Sign::Fail;
      tile.words = tile.sign == signs::Sign::Working ? "Programming" : "Switch the next chip on";
      if (tile.sign == signs::Sign::BatchFull) {
        tile.running = i > 6;
        tile.words = "198 of 200 done, 2 in work";
        tile.last = signs::Sign::Pass;
        tile.chipLeft = i > 6;
      }
      tile.fraction = tile.sign == signs::Sign::Working ? 0.47 : -1;
      tile.number = tile.sign == signs::Sign::Working ? "10042" : "";
      if (tile.sign == signs::Sign::Fail) tile.lastFailure = "Programing failed: block 12 was not confirmed";
      tile.counts = {static_cast<int>(40 + i), i == 4, static_cast<int>(i % 3)};
      program_.window->tile(i).show(tile);
    }
    QTimer::singleShot(kPaintedMs, program_.window.get(), [this] { finish(); });
  }
  bool passed = true;

 private:
  bool allHaveVerdict() {
    for (std::size_t i = 0; i < program_.crew.size(); ++i)
      if (const auto& c = program_.crew.station(i).tile().counts; c.passed + c.inPart + c.failed == 0) return false;
    return true;
  }
  void finish() {
    if (done_) return;
    done_ = true;
    look_.stop();
    for (std::size_t i = 0; i < program_.crew.size(); ++i) {
      const stations::Tile& tile = program_.crew.station(i).tile();
      passed = passed && tile.counts.passed > 0 && tile.counts.failed == 0;
      std::printf("%s\n", stations::lineOf(tile).c_str());
    }
    if (pulse_.isActive()) std::printf("A click has waited for at most %lld ms.\n", static_cast<long long>(slowest_));
    pulse_.stop();
    std::fflush(stdout);
    if (!picture_.isEmpty()) program_.window->grab().save(picture_);
    program_.window->close();
  }
  Program& program_;
  QString picture_;
  QTimer look_, pulse_;
  QElapsedTimer since_;
  qint64 slowest_ = 0;  // ms, by which a turn of the window was late
  bool done_ = false;
};

}  // namespace
}  // namespace kvr::tiles

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("KVR-ISP"));
  QCommandLineParser parser;
  parser.addPositionalArgument(QStringLiteral("project"), QStringLiteral("Project"), QStringLiteral("[project]"));
  const auto option = [&parser](const char* name, const char* about, const char* value) {
    parser.addOption({QString::fromLatin1(name), QString::fromLatin1(about), QString::fromLatin1(value)});
  };
  option("demo-run", "Start all, print the tiles when each has a verdict, and end", "");
  option("signs", "Show a tile of each kind, and end", "");
  option("batch", "Show the page of this batch, and end", "name");
  option("png", "Picture of the window at the end", "path");
  option("size", "Size of the window", "WxH");
  option("dark", "Dark colours", "");
  parser.addHelpOption();
  parser.process(application);
  const auto set = [&parser](const char* name) { return parser.isSet(QString::fromLatin1(name)); };
  if (set("dark")) {
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(kvr::window::darkPalette());
  }
  kvr::tiles::Program program;
  program.show(parser.positionalArguments().value(0).toStdString());
  if (const QStringList size = parser.value(QStringLiteral("size")).split(QLatin1Char('x')); size.size() == 2)
    program.window->resize(size[0].toInt(), size[1].toInt());
  kvr::tiles::Demo demo(program, parser.value(QStringLiteral("png")));
  if (set("demo-run")) demo.run();
  if (set("signs")) demo.signs();
  if (set("batch")) demo.batch(parser.value(QStringLiteral("batch")));
  return QApplication::exec() == 0 && (demo.passed || !set("demo-run")) ? 0 : 1;
}
