#include "records/qt/waiting_rows.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QSaveFile>
#include <array>
#include <functional>
#include <optional>

#include "records/qt/row_texts.h"

namespace kvr::records {
namespace {

struct Field {
  const char* key;
  std::string RunRow::*value;
};

constexpr std::array kFields{
    Field{"run", &RunRow::run},
    Field{"batch", &RunRow::batch},
    Field{"station", &RunRow::station},
    Field{"port", &RunRow::port},
    Field{"adapter", &RunRow::adapter},
    Field{"began", &RunRow::began},
    Field{"stageSeconds", &RunRow::stageSeconds},
    Field{"words", &RunRow::words},
    Field{"chip", &RunRow::chip},
    Field{"firmware", &RunRow::firmware},
    Field{"factoryId", &RunRow::factoryId},
    Field{"numbers", &RunRow::numbers},
    Field{"codeSum", &RunRow::codeSum},
    Field{"dataSum", &RunRow::dataSum},
    Field{"program", &RunRow::programVersion},
    Field{"operator", &RunRow::operatorName},
};

struct Waiting {
  Reservation place;
  RunRow row;
  bool wentThrough = false;  // the chip carries its number
};

QByteArray lineOf(const Waiting& waiting) {
  QJsonObject object;
  for (const Field& field : kFields)
    object.insert(QLatin1String(field.key), QString::fromStdString(waiting.row.*field.value));
  object.insert("seconds", waiting.row.seconds);
  object.insert("leftOut", static_cast<double>(waiting.row.bytesLeftOut));
  object.insert("reserved", !waiting.place.run.empty());
  object.insert("wentThrough", waiting.row.verdict != Verdict::Failed);
  object.insert("ordinal", static_cast<double>(waiting.place.ordinal));
  return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

Waiting waitingOf(const QJsonObject& object) {
  Waiting waiting;
  for (const Field& field : kFields)
    waiting.row.*field.value = object.value(QLatin1String(field.key)).toString().toStdString();
  waiting.row.verdict = Verdict::Failed;
  waiting.wentThrough = object.value("wentThrough").toBool();
  waiting.row.seconds = object.value("seconds").toDouble();
  waiting.row.bytesLeftOut = static_cast<std::int64_t>(object.value("leftOut").toDouble());
  waiting.place.batch = waiting.row.batch;
  waiting.place.ordinal = static_cast<std::int64_t>(object.value("ordinal").toDouble());
  if (object.value("reserved").toBool()) waiting.place.run = waiting.row.run;
  return waiting;
}

StoreFault handOver(RecordStore& store, const QByteArray& line) {
  const QJsonDocument document = QJsonDocument::fromJson(line);
  if (!document.isObject()) return {};  // half a line of a computer that lost its power: there is nothing in it to keep
  const Waiting waiting = waitingOf(document.object());
  if (waiting.place.run.empty()) return store.addRun(waiting.row);
  if (waiting.wentThrough) return store.doubt(waiting.place, waiting.row);
  const StoreFault fault = store.giveBack(waiting.place, waiting.row);
  // Somebody has settled its number meanwhile: there is only the row left to keep.
  return fault.kind == StoreFault::Kind::Refused ? store.addRun(waiting.row) : fault;
}

using Lines = QList<QByteArray>;

// Nothing: they cannot be read now, and must not be written over.
std::optional<Lines> linesOf(const QString& path) {
  QFile file(path);
  if (!file.exists()) return Lines();
  if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
  Lines lines = file.readAll().split('\n');
  if (file.error() != QFileDevice::NoError) return std::nullopt;
  lines.removeAll(QByteArray());
  return lines;
}

bool replaceLines(const QString& path, const Lines& lines) {
  if (lines.isEmpty()) return !QFile::exists(path) || QFile::remove(path);
  QSaveFile file(path);
  return file.open(QIODevice::WriteOnly) && file.write(lines.join('\n') + '\n') > 0 && file.commit();
}

// What has become of the lines by the hand of `change`, written back while nobody else writes. Nothing: it was not
// possible, and all are as they were.
std::optional<Lines> changeLines(const QString& path, const std::function<void(Lines&)>& change) {
  QLockFile alone(path + ".lock");
  if (!alone.tryLock(5000)) return std::nullopt;
  std::optional<Lines> lines = linesOf(path);
  if (!lines) return std::nullopt;
  change(*lines);
  return replaceLines(path, *lines) ? lines : std::nullopt;
}

}  // namespace

bool WaitingRows::keep(const Reservation& place, const RunRow& row) const {
  const QString path = QString::fromStdString(path_);
  if (!QDir().mkpath(QFileInfo(path).path())) return false;
  const QByteArray line = lineOf({.place = place, .row = row}).trimmed();
  return changeLines(path, [&](Lines& lines) { lines.append(line); }).has_value();
}

// The file is free while the store is asked, which may take long: another station may have a row to keep. Rows that two
// hand over at the same time, or that come again, are known to the store by their run.
int WaitingRows::deliver(RecordStore& store) const {
  const QString path = QString::fromStdString(path_);
  const std::optional<Lines> waiting = linesOf(path);
  if (!waiting) return 1;  // at least
  Lines done;
  for (const QByteArray& line : *waiting) {
    const StoreFault fault = handOver(store, line);
    if (fault.kind == StoreFault::Kind::Unreachable) break;
    if (fault.none()) done << line;
  }
  if (done.isEmpty()) return static_cast<int>(waiting->size());
  const auto left = changeLines(
      path, [&](Lines& lines) { lines.removeIf([&](const QByteArray& line) { return done.contains(line); }); });
  return static_cast<int>((left ? *left : *waiting).size());
}

}  // namespace kvr::records
