// Stations: the time in which the data goes out at eight of them on paced pseudo-terminals, against that at one alone;
// the share of a core that they and their keeper take. 200 chips of a batch in all, whose numbers and contents are read
// out of the chips.
//   stations_bench KVR KVR-TARGET PROJECT [CHIPS]    CHIPS: at each station, in place of 25
#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtEndian>
#include <numeric>
#include <set>

#include "benchmarks/figure.h"
#include "stations/crew.h"

namespace {

using kvr::stations::Crew;

constexpr int kStations = 8, kChips = 25;  // at each station
constexpr int kAlone = 9;                  // chips that one station programs alone
constexpr double kWireLimit = 1.15;
constexpr int kNumberBytes = 4;  // of the serial number, at the end of the image

// Seconds of processor time of a process that is there.
double cpuOf(qint64 process) {
  QFile file(QStringLiteral("/proc/%1/stat").arg(process));
  if (!file.open(QIODevice::ReadOnly)) return 0;
  const QByteArray text = file.readAll();
  const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
  return (fields[11].toDouble() + fields[12].toDouble()) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

struct Line {
  Line(const char* kvr, const char* target, const char* project, const QByteArray& code, int stations, int chips)
      : crew(kvr, [](const std::string& adapter) { return adapter; }), image(code), wanted(stations * chips) {
    crew.work = {.project = project, .batch = "bench", .delaySeconds = 0, .handsFree = false};
    qputenv("KVR_RECORDS", folder.filePath("records.db").toLocal8Bit());
    QProcess batch;
    batch.start(QString::fromLocal8Bit(kvr),
                {"batch", "new", "bench", "--project", QString::fromLocal8Bit(project), "--serial-at",
                 QString::number(image.size() - 1, 16), "--serial-next", "1", "--wanted", QString::number(wanted)});
    if (!batch.waitForFinished() || batch.exitCode() != 0) qFatal("%s", batch.readAllStandardError().constData());
    data.resize(static_cast<std::size_t>(stations));
    taken.resize(data.size());
    for (int i = 0; i < stations; ++i) {
      const QString port = folder.filePath(QString::number(i));
      auto& chip = targets.emplace_back(std::make_unique<QProcess>());
      chip->start(QString::fromLocal8Bit(target),
                  {"--model", "Ivy-HF0S", "--paced", "--seed", QString::number(i + 1), "--power-on", "0.3",
                   "--power-cycle-after", "0.2", "--chips", QString::number(wanted + 1), "--link", port, "--json",
                   port + ".json"});
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
    taken[index] = cpuOf(station.processId());
    seconds = static_cast<double>(clock.elapsed()) / 1000;
  }
  void run() {
    clock.start();
    const double before = cpuOf(getpid());
    crew.startAll();
    while (crew.busy()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    cpu = std::accumulate(taken.begin(), taken.end(), cpuOf(getpid()) - before);
  }
  // How many chips hold something else than the image, complain, or have a number that is not theirs alone.
  int wrong() {
    int found = 0;
    std::set<quint32> numbers;
    for (std::size_t i = 0; i < targets.size(); ++i) {
      targets[i]->terminate();
      targets[i]->waitForFinished();
      QFile file(folder.filePath(QString::number(i)) + ".json");
      if (!file.open(QIODevice::ReadOnly)) return wanted;
      const QJsonObject last = QJsonDocument::fromJson(file.readAll()).object();
      QJsonArray all = last.value(QLatin1String("earlier")).toArray();
      all.append(last);
      for (const QJsonValue& one : all) {
        const QJsonObject chip = one.toObject();
        if (chip.value(QLatin1String("erases")).toInt() == 0) continue;  // that came when the batch was full
        const QByteArray flash = QByteArray::fromHex(chip.value(QLatin1String("flash")).toString().toLatin1());
        const auto number = qFromBigEndian<quint32>(flash.constData() + image.size() - kNumberBytes);
        const bool own = number >= 1 && number <= static_cast<quint32>(wanted) && numbers.insert(number).second;
        if (!own || !flash.startsWith(image.chopped(kNumberBytes)) ||
            !chip.value(QLatin1String("violations")).toArray().isEmpty())
          ++found;
      }
    }
    return found + wanted - static_cast<int>(numbers.size());
  }
  // Stations that have not ended with the sign of a full batch.
  int notFull() {
    int count = 0;
    for (std::size_t i = 0; i < crew.size(); ++i)
      if (crew.station(i).tile().sign != kvr::signs::Sign::BatchFull) ++count;
    return count;
  }
  int passed() {
    int count = 0;
    for (std::size_t i = 0; i < crew.size(); ++i) count += crew.station(i).tile().counts.passed;
    return count;
  }

  QTemporaryDir folder;
  std::vector<std::unique_ptr<QProcess>> targets;
  Crew crew;
  QByteArray image;
  int wanted;
  std::vector<std::vector<double>> data;  // seconds, by station
  std::vector<double> taken;              // seconds of the processor, by station
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
  Line alone(argv[1], argv[2], argv[3], bytes, 1, std::min(chips, kAlone));
  alone.run();
  const double floor = bench::median(alone.data[0]);
  bench::figure("stations.alone_s", floor, "s");
  Line line(argv[1], argv[2], argv[3], bytes, kStations, chips);
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
  good = bench::atMost("stations.wrong", line.wrong(), "chips", 0) && good;
  good = bench::atMost("stations.not_full", line.notFull(), "stations", 0) && good;
  return good ? 0 : 1;
}
