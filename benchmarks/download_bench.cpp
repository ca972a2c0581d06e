// A download of 60 KB at 115200, in the virtual world and in the real window against kvr-target, held against the
// shortest time that wire, chip and protocol allow.
//   download_bench KVR-TARGET SCRATCH-FOLDER
#include <sys/resource.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QThread>
#include <chrono>

#include "benchmarks/download_floor.h"
#include "benchmarks/figure.h"
#include "shell/qt/application.h"
#include "tests/support/engine_bench.h"

namespace {

using kvr::download::VerdictKind;
using Clock = std::chrono::steady_clock;

constexpr const char* kModel = "Ivy-HF0S";
constexpr std::size_t kImage = 61440;

// Milliseconds from the chip's first answer to the verdict.
struct Run {
  double ms = 0;
  double cpuMs = 0;
  bool passed = false;
};

struct VirtualResult {
  bench::Floor floor;
  double answerToPassMs = 0;
  bool passed = false;
};

VirtualResult runVirtual() {
  kvr::support::EngineBench bench;
  bench.select(kModel);
  bench.bauds("9600", "115200");
  bench.loadCode(60);
  auto config = sim::configFor(*kvr::catalogue::findByName(kModel));
  config.times = sim::patientTimes();  // as kvr-target's chip has them
  const auto& chip = bench.insertChip(config);
  kvr::platform::Instant answer{0};
  kvr::platform::Instant pass{0};
  bench.panel.verdict.changed.connect([&] {
    if (bench.panel.verdict.value() == VerdictKind::Working) answer = bench.loop.now();
    if (bench.panel.verdict.value() == VerdictKind::Pass) pass = bench.loop.now();
  });
  bench.program();
  return {bench::floorOf(bench.wire, chip), static_cast<double>((pass - answer).count()) / 1000, bench.passed()};
}

double cpuMs() {
  rusage use{};
  getrusage(RUSAGE_SELF, &use);
  return (use.ru_utime.tv_sec + use.ru_stime.tv_sec) * 1e3 + (use.ru_utime.tv_usec + use.ru_stime.tv_usec) / 1e3;
}

Run runReal(const QString& target, const QDir& place) {
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
  chip.start(target, {"--model", kModel, "--paced", "--power-on", "1", "--link", port});
  for (int i = 0; i < 200 && !QFileInfo::exists(port); ++i) QThread::msleep(20);

  Run run;
  {
    kvr::window::Application program(place.filePath("bench.ini").toStdString());
    program.form.download.cobBaudMin.setText("9600");
    program.show(image.toStdString());
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

}  // namespace

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  if (argc != 3) return 2;
  const QDir place(QDir(argv[2]).absolutePath());
  QDir().mkpath(place.path());

  const auto ideal = runVirtual();
  const double idealRatio = ideal.floor.takenMs / ideal.floor.totalMs();
  bool quick = bench::atMost("download.virtual.floor_ratio", idealRatio, "ratio", 1.01);
  if (!ideal.passed) return 1;

  const auto real = runReal(argv[1], place);
  const double floorMs = ideal.answerToPassMs * ideal.floor.totalMs() / ideal.floor.takenMs;
  quick = bench::atMost("download.real.floor_ratio", real.ms / floorMs, "ratio", 1.05) & quick;
  quick = bench::atMost("download.real.cpu_ratio", real.cpuMs / real.ms, "ratio", 0.03) & quick;
  return real.passed && quick ? 0 : 1;
}
