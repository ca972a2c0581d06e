// Downloads of 60 KB, in the virtual world and in the real window against kvr-target: the data held against its bare
// bytes on the wire, and the whole against the shortest time that wire, chip and protocol allow. Then where the time of
// one chip went.
//   download_bench KVR-TARGET SCRATCH-FOLDER
#include <sys/resource.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QThread>
#include <algorithm>
#include <chrono>

#include "benchmarks/download_floor.h"
#include "benchmarks/figure.h"
#include "engine/time_table.h"
#include "shell/qt/application.h"
#include "tests/support/engine_bench.h"

namespace {

using kvr::download::VerdictKind;
using Clock = std::chrono::steady_clock;

constexpr const char* kModel = "Ivy-HF0S";
constexpr std::size_t kImage = 61440;
constexpr int kDeafMicros = 500;

// How a download is set up.
struct Setting {
  int highestBaud = 115200;
  bool slowAnswers = false;
  int programMicros = 55;  // the flash's time for a byte
};

constexpr Setting kUsual;
constexpr Setting kWireAlone{.programMicros = 0};  // the flash takes no time
constexpr Setting kSlowWireAlone{.highestBaud = 38400, .programMicros = 0};
constexpr Setting kSlow{.slowAnswers = true};

// Milliseconds from the chip's first answer to the verdict.
struct Run {
  double ms = 0;
  double cpuMs = 0;
  bool passed = false;
  kvr::engine::Outcome outcome;

  double dataMs() const {
    return static_cast<double>(outcome.spent[static_cast<std::size_t>(kvr::engine::Stage::Program)].count()) / 1000;
  }
};

struct VirtualResult {
  bench::Floor floor;
  bench::DataTime data;
  double answerToPassMs = 0;
  bool passed = false;

  // What a window needs between the conversation's end and the verdict is in the share that this world needs.
  double floorMs() const { return answerToPassMs * floor.totalMs() / floor.takenMs; }
};

VirtualResult runVirtual(const Setting& setting) {
  kvr::support::EngineBench bench;
  bench.select(kModel);
  bench.bauds("9600", std::to_string(setting.highestBaud));
  bench.panel.cheSlowAnswers.setValue(setting.slowAnswers);
  bench.loadCode(60);
  auto config = sim::configFor(*kvr::catalogue::findByName(kModel));
  config.times = sim::patientTimes();  // as kvr-target's chip has them
  config.times.programByte = setting.programMicros;
  config.times.deaf = kDeafMicros;
  const auto& chip = bench.insertChip(config);
  kvr::platform::Instant answer{0};
  kvr::platform::Instant pass{0};
  bench.panel.verdict.changed.connect([&] {
    if (bench.panel.verdict.value() == VerdictKind::Working) answer = bench.loop.now();
    if (bench.panel.verdict.value() == VerdictKind::Pass) pass = bench.loop.now();
  });
  bench.program();
  return {bench::floorOf(bench.wire, chip, setting.slowAnswers ? 10 : 1), bench::dataTimeOf(bench.wire),
          static_cast<double>((pass - answer).count()) / 1000, bench.passed()};
}

double cpuMs() {
  rusage use{};
  getrusage(RUSAGE_SELF, &use);
  return (use.ru_utime.tv_sec + use.ru_stime.tv_sec) * 1e3 + (use.ru_utime.tv_usec + use.ru_stime.tv_usec) / 1e3;
}

Run runReal(const QString& target, const QDir& place, const Setting& setting) {
  const QString port = place.filePath("com1");
  const QString image = place.filePath("image.bin");
  QFile::remove(port);
  QFile file(image);
  if (!file.open(QIODevice::WriteOnly)) return {};
  const auto bytes = kvr::support::randomBytes(60, kImage);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
  file.close();
  QFile settings(place.filePath("bench.ini"));
  if (!settings.open(QIODevice::WriteOnly)) return {};
  settings.write(QString("[Ports]\nCOM1=%1\n\n[Settings]\nDeviceProducts=%2\nCOM_port=0\n").arg(port, kModel).toUtf8());
  settings.close();
  QProcess chip;
  chip.start(target, {"--model", kModel, "--paced", "--power-on", "1", "--link", port, "--deaf-us",
                      QString::number(kDeafMicros), "--program-us", QString::number(setting.programMicros)});
  for (int i = 0; i < 200 && !QFileInfo::exists(port); ++i) QThread::msleep(20);

  Run run;
  {
    kvr::window::Application program(place.filePath("bench.ini").toStdString());
    program.form.download.cobBaudMin.setText("9600");
    program.form.download.cobBaudMax.setText(std::to_string(setting.highestBaud));
    program.form.results.writeLog = [&](const kvr::download::RunRecord& record) { run.outcome = record.outcome; };
    program.show(image.toStdString());
    program.form.download.cheSlowAnswers.setValue(setting.slowAnswers);
    Clock::time_point answer;
    double cpuAtAnswer = 0;
    program.form.download.verdict.changed.connect([&] {
      const auto verdict = program.form.download.verdict.value();
      if (verdict == VerdictKind::Working) {
        answer = Clock::now();
        cpuAtAnswer = cpuMs();
      }
      if (verdict != VerdictKind::Pass && verdict != VerdictKind::Fail) return;
      run.ms = std::chrono::duration<double, std::milli>(Clock::now() - answer).count();
      run.cpuMs = cpuMs() - cpuAtAnswer;
      run.passed = verdict == VerdictKind::Pass;
      if (!run.passed) std::printf("%s\n", program.form.main.textMsg.text().c_str());
      program.loop.whenIdle([] { QApplication::quit(); });
    });
    program.loop.post([&] { program.form.download.comDownload[0].press(); });
    QApplication::exec();
  }
  chip.terminate();
  chip.waitForFinished(3000);
  return run;
}

void printTimes(const kvr::engine::Outcome& outcome) {
  for (const auto& row : kvr::engine::timeTable(outcome)) {
    std::string name = "time." + std::string(row.name);
    std::replace(name.begin(), name.end(), ' ', '_');
    bench::figure(name.c_str(), static_cast<double>(row.time.count()) / 1e6, "s");
  }
  for (const auto& rest : outcome.longRests)
    std::printf("# a rest of %.0f ms: %s\n", static_cast<double>(rest.length.count()) / 1000,
                std::string(rest.why).c_str());
}

bool benchVirtual() {
  const auto usual = runVirtual(kUsual);
  const auto wire = runVirtual(kWireAlone);
  const auto slowWire = runVirtual(kSlowWireAlone);
  bool good = usual.passed && wire.passed && slowWire.passed;
  good =
      bench::atMost("download.virtual.floor_ratio", usual.floor.takenMs / usual.floor.totalMs(), "ratio", 1.01) & good;
  good = bench::atMost("download.virtual.wire_ratio", wire.data.takenMs / wire.data.wireMs, "ratio", 1.08) & good;
  return bench::atMost("download.virtual.wire_ratio_38400", slowWire.data.takenMs / slowWire.data.wireMs, "ratio",
                       1.04) &
         good;
}

// The data's bytes are the same in both worlds.
bool benchWire(const QString& target, const QDir& place) {
  const Run fast = runReal(target, place, kWireAlone);
  bool good = fast.passed;
  good = bench::atMost("download.real.wire_ratio", fast.dataMs() / runVirtual(kWireAlone).data.wireMs, "ratio", 1.10) &
         good;
  good = bench::atLeast("download.real.kb_per_s", static_cast<double>(kImage) / fast.dataMs(), "kB/s", 7.8) & good;
  const Run slow = runReal(target, place, kSlowWireAlone);
  return bench::atMost("download.real.wire_ratio_38400", slow.dataMs() / runVirtual(kSlowWireAlone).data.wireMs,
                       "ratio", 1.04) &
         good & slow.passed;
}

bool benchRun(const QString& target, const QDir& place) {
  const Run usual = runReal(target, place, kUsual);
  bool good = usual.passed;
  good = bench::atMost("download.real.floor_ratio", usual.ms / runVirtual(kUsual).floorMs(), "ratio", 1.05) & good;
  good = bench::atMost("download.real.cpu_ratio", usual.cpuMs / usual.ms, "ratio", 0.04) & good;
  printTimes(usual.outcome);
  const Run slow = runReal(target, place, kSlow);
  const double slowRatio = slow.ms / runVirtual(kSlow).floorMs();
  good = bench::atMost("download.slow.floor_ratio", slowRatio, "ratio", 1.05) & good;
  // Below its floor it was not slow, and the ratio says nothing.
  return slowRatio >= 0.99 && slow.outcome.turnRound == kvr::engine::kFullTurnRound && slow.passed && good;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  if (argc != 3) return 2;
  const QDir place(QDir(argv[2]).absolutePath());
  QDir().mkpath(place.path());
  bool good = benchVirtual();
  good = benchWire(argv[1], place) & good;
  good = benchRun(argv[1], place) & good;
  return good ? 0 : 1;
}
