// Stations: the time in which the data goes out at eight of them on paced pseudo-terminals, against that at one alone;
// the share of a core that they and their keeper take. 200 chips in all, and what
// each of them holds is compared with the image.
//   stations_bench KVR KVR-TARGET PROJECT [CHIPS]    CHIPS: at each station, in place of 25
#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include "benchmarks/figure.h"
#include "stations/crew.h"

namespace {

using kvr::stations::Crew;

constexpr int kStations = 8, kChips = 25;  // at each station
constexpr int kAlone = 9;                  // chips that one station programs alone
constexpr double kWireLimit = 1.15;

// Seconds of processor time of a process that is there.
double cpuOf(qint64 process) {
  QFile file(QStringLiteral("/proc/%1/stat").arg(process));
  if (!file.open(QIODevice::ReadOnly)) return 0;
  const QByteArray text = file.readAll();
  const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
  return (fields[11].toDouble() + fields[12].toDouble()) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

struct Line {
  Line(const char* kvr, const char* target, const char* project, int stations, int chips)
      : crew(kvr, [](const std::string& adapter) { return adapter; }), chipsEach(chips) {
    crew.work = {.project = project, .batch = {}, .delaySeconds = 0, .handsFree = false};
    data.resize(static_cast<std::size_t>(stations));
    for (int i = 0; i < stations; ++i) {
      const QString port = folder.filePath(QString::number(i));
      auto& chip = targets.emplace_back(std::make_unique<QProcess>());
      chip->start(QString::fromLocal8Bit(target), {"--model", "Ivy-HF0S", "--paced", "--seed", QString::number(i + 1),
                                                   "--power-on", "0.3", "--power-cycle-after", "0.2", "--chips",
                                                   QString::number(chips), "--link", port, "--json", port + ".json"});
      while (!QFile::exists(port)) usleep(10000);
      crew.add({std::to_string(i), port.toStdString()});
    }
    crew.onVerdict = [this](std::size_t index, kvr::signs::Sign) { note(index); };
  }
  ~Line() {
    for (auto& target : targets) target->terminate();
    for (auto& target : targets) target->waitForFinished();
  }
  void note(std::size_t index) {
    auto& station = crew.station(index);
    data[index].push_back(station.tile().dataSeconds);
    if (std::ssize(data[index]) < chipsEach) return;
    cpu += cpuOf(station.processId());
    station.finish();
    if (!std::any_of(data.begin(), data.end(), [this](auto& d) { return std::ssize(d) < chipsEach; }))
      seconds = static_cast<double>(clock.elapsed()) / 1000;
  }
  void run() {
    clock.start();
    const double before = cpuOf(getpid());
    crew.startAll();
    while (crew.busy()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    cpu += cpuOf(getpid()) - before;
  }
  // How many chips hold something else than `image`, or complain.
  int wrong(const QByteArray& image) {
    int found = 0;
    for (std::size_t i = 0; i < targets.size(); ++i) {
      targets[i]->terminate();
      targets[i]->waitForFinished();
      QFile file(folder.filePath(QString::number(i)) + ".json");
      if (!file.open(QIODevice::ReadOnly)) return kStations * chipsEach;
      const QJsonObject last = QJsonDocument::fromJson(file.readAll()).object();
      QJsonArray all = last.value(QLatin1String("earlier")).toArray();
      all.append(last);
      if (all.size() != chipsEach) ++found;
      for (const QJsonValue& one : all) {
        const QJsonObject chip = one.toObject();
        const QByteArray flash = QByteArray::fromHex(chip.value(QLatin1String("flash")).toString().toLatin1());
        if (!flash.startsWith(image) || !chip.value(QLatin1String("violations")).toArray().isEmpty()) ++found;
      }
    }
    return found;
  }
  int passed() {
    int count = 0;
    for (std::size_t i = 0; i < crew.size(); ++i) count += crew.station(i).tile().counts.passed;
    return count;
  }

  QTemporaryDir folder;
  std::vector<std::unique_ptr<QProcess>> targets;
  Crew crew;
  int chipsEach;
  std::vector<std::vector<double>> data;  // seconds, by station
  QElapsedTimer clock;
  double seconds = 0, cpu = 0;
};

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  if (argc < 4) return 2;
  const int chips = argc > 4 ? QByteArray(argv[4]).toInt() : kChips;
  QFile project(QString::fromLocal8Bit(argv[3]));
  if (!project.open(QIODevice::ReadOnly)) return 2;
  const QByteArray bytes = QByteArray::fromHex(project.readAll().trimmed().split('\n').last());  // the code
  Line alone(argv[1], argv[2], argv[3], 1, std::min(chips, kAlone));
  alone.run();
  const double floor = bench::median(alone.data[0]);
  bench::figure("stations.alone_s", floor, "s");
  Line line(argv[1], argv[2], argv[3], kStations, chips);
  line.run();
  double worst = 0, longest = 0;
  for (const auto& station : line.data) {
    worst = std::max(worst, bench::median(station));
    longest = std::max(longest, bench::percentile(station, 1));
  }
  bool good = bench::atMost("stations.wire_ratio", worst / floor, "ratio", kWireLimit);
  bench::figure("stations.worst_chip_ratio", longest / floor, "ratio");
  good = bench::atMost("stations.cores", line.cpu / line.seconds, "cores", 1) && good;
  good = bench::atLeast("stations.passed", line.passed(), "chips", kStations * chips) && good;
  good = bench::atMost("stations.wrong", line.wrong(bytes), "chips", 0) && good;
  return good ? 0 : 1;
}
