// The record store: chips a second that take a number and pass, against what the disk can do, and the page of a batch
// with a million runs.
//   records_bench FOLDER     on the disk in question
#include <fcntl.h>
#include <unistd.h>

#include <QApplication>
#include <QDir>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <chrono>
#include <cstdio>

#include "benchmarks/figure.h"
#include "records/record_store.h"
#include "stations/window/batch_page.h"

namespace {

using namespace kvr;
using Clock = std::chrono::steady_clock;

constexpr int kChips = 150;
constexpr int kRuns = 1'000'000;

double secondsSince(Clock::time_point began) {
  return std::chrono::duration<double>(Clock::now() - began).count();
}

// What the disk takes of the smallest thing that has to be on it, where a file has its place already.
double syncsPerSecond(const QString& folder) {
  const QByteArray path = QFile::encodeName(folder + "/floor");
  const int file = ::open(path.constData(), O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC, 0600);
  std::vector<char> page(4096, 'x');
  if (::write(file, page.data(), page.size()) < 0 || ::fsync(file) != 0) return 0;
  const auto began = Clock::now();
  for (int i = 0; i < 2 * kChips; ++i)
    if (::pwrite(file, page.data(), page.size(), 0) < 0 || ::fdatasync(file) != 0) return 0;
  const double rate = 2 * kChips / secondsSince(began);
  ::close(file);
  return rate;
}

// A commit reserves a number, another one spends it.
double commitsPerSecond(records::RecordStore& store) {
  if (!store.addBatch({.name = "commits", .counters = {{"code", 1, 1}}}).none()) return 0;
  const auto began = Clock::now();
  for (int i = 0; i < kChips; ++i) {
    const auto place = store.reserve("commits", "left", {});
    const records::RunRow row{.run = place.value.run,
                              .batch = "commits",
                              .station = "left",
                              .began = "2026-11-23T21:40:00Z",
                              .verdict = records::Verdict::Passed};
    if (!place.ok() || !store.spend(place.value, row).none()) return 0;
  }
  return 2 * kChips / secondsSince(began);
}

// Sixteen stations, a chip each half minute: a month of days and nights.
const QStringList kFill{
    "INSERT INTO runs WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < %1) SELECT 'r' || i, "
    "'big', 'station ' || i % 16, '/dev/ttyUSB' || i % 16, '', strftime('%Y-%m-%dT%H:%M:%SZ', 1767225600 + i * 2, "
    "'unixepoch'), 4 + i % 7, 'Erase 0.31', CASE WHEN i % 50 = 0 THEN 'failed' ELSE 'passed' END, CASE WHEN i % 50 = 0 "
    "THEN 'Message ' || (i / 50 % 12) ELSE '' END, 'KVR8F2K60', '6.3I', '', i, '12AF', '0', 0, '4.88', '' FROM n",
    "INSERT INTO tallies SELECT batch, station, substr(began, 1, 13), 'verdict', verdict, count(*) FROM runs WHERE "
    "batch = 'big' GROUP BY 1, 2, 3, 5",
    "INSERT INTO tallies SELECT batch, station, substr(began, 1, 13), 'failure', words, count(*) FROM runs WHERE "
    "batch = 'big' AND words <> '' GROUP BY 1, 2, 3, 5",
    "INSERT INTO tallies SELECT batch, station, substr(began, 1, 13), 'seconds', CAST(CAST(seconds AS INTEGER) AS "
    "TEXT), "
    "count(*) FROM runs WHERE batch = 'big' AND words = '' GROUP BY 1, 2, 3, 5",
    "INSERT INTO places WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < %1) SELECT 'big', i, "
    "'spent', 'r' || i, 'left', 1, '' FROM n",
    "UPDATE batches SET given = %1 + 1 WHERE name = 'big'"};

bool fill(const QString& path) {
  QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "fill");
  db.setDatabaseName(path);
  if (!db.open() || !db.transaction()) return false;
  for (const QString& statement : kFill) {
    QSqlQuery query(db);
    if (query.exec(QString(statement).replace("%1", QString::number(kRuns - 1)))) continue;
    std::fprintf(stderr, "%s\n", qPrintable(query.lastError().text()));
    return false;
  }
  return db.commit();
}

// From the click to the figures on the page, drawn.
double pageOpenMs(const QString& path) {
  tiles::Books books(path.toStdString());
  tiles::BatchPage page(books);
  page.resize(1366, 768);
  page.show();
  const auto* done = page.findChild<QLabel*>("batchDone");
  const auto began = Clock::now();
  page.open("big");
  while (done->text().isEmpty()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  const QPixmap drawn = page.grab();
  return drawn.isNull() ? 1e9 : 1000 * secondsSince(began);
}

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  if (argc != 2) return 2;
  const QString folder = QString::fromLocal8Bit(argv[1]);
  QDir(folder).removeRecursively();
  if (!QDir().mkpath(folder)) return 2;
  const QString path = folder + "/records.db";
  auto opened = records::openStore(path.toStdString());
  if (!opened.ok()) return 2;
  const double floor = syncsPerSecond(folder), rate = commitsPerSecond(*opened.value);
  bench::figure("records.fsyncs_per_s", floor, "1/s");
  bool good = bench::atLeast("records.commits_per_s", rate, "1/s", std::min(50.0, 0.8 * floor));
  if (!opened.value->addBatch({.name = "big", .counters = {{"code", 0, 1}}}).none() || !fill(path)) return 2;
  opened.value.reset();
  std::vector<double> times;
  for (int i = 0; i < 5; ++i) times.push_back(pageOpenMs(path));
  good = bench::atMost("batch_page.open_ms", bench::median(times), "ms", 300) && good;
  QDir(folder).removeRecursively();
  return good ? 0 : 1;
}
