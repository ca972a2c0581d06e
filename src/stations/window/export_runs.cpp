#include "stations/window/export_runs.h"

#include <QDateTime>
#include <QSaveFile>
#include <QTimeZone>

namespace kvr::tiles {
namespace {

using records::RunRow;
using records::Verdict;

const char* const kHead =
    "began,station,port,adapter,verdict,failure,numbers,seconds,stages,chip,firmware,factory id,code sum,data sum,"
    "bytes left out,program,operator,run\n";

QString localIso(const std::string& utc) {
  return QDateTime::fromString(QString::fromStdString(utc), Qt::ISODate).toLocalTime().toString(Qt::ISODate);
}

// Quoted where a comma, a quote or a line end is in it.
QString field(QString text) {
  if (!text.contains(QLatin1Char(',')) && !text.contains(QLatin1Char('"')) && !text.contains(QLatin1Char('\n')))
    return text;
  return QLatin1Char('"') + text.replace(QLatin1Char('"'), QLatin1String("\"\"")) + QLatin1Char('"');
}

QString verdictText(Verdict verdict) {
  return verdict == Verdict::Passed         ? QStringLiteral("PASS")
         : verdict == Verdict::PassedInPart ? QStringLiteral("PASS, PART LEFT OUT")
                                            : QStringLiteral("FAIL");
}

QByteArray lineOf(const RunRow& row) {
  const auto text = [](const std::string& words) { return QString::fromStdString(words); };
  const QStringList fields = {localIso(row.began),
                              text(row.station),
                              text(row.port),
                              text(row.adapter),
                              verdictText(row.verdict),
                              text(row.words),
                              text(row.numbers),
                              QString::number(row.seconds, 'f', 2),
                              text(row.stageSeconds),
                              text(row.chip),
                              text(row.firmware),
                              text(row.factoryId),
                              text(row.codeSum),
                              text(row.dataSum),
                              QString::number(row.bytesLeftOut),
                              text(row.programVersion),
                              text(row.operatorName),
                              text(row.run)};
  QStringList quoted;
  for (const QString& one : fields) quoted << field(one);
  return quoted.join(QLatin1Char(',')).toUtf8() + '\n';
}

}  // namespace

QString writeRuns(records::RecordStore& store, const RunFilter& filter, const QString& path) {
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return path + QStringLiteral(": ") + file.errorString();
  file.write(kHead);
  int rows = 0;
  const records::StoreFault fault = store.readRuns(filter.batch, [&](const RunRow& row) {
    const bool wanted = (filter.station.isEmpty() || filter.station.toStdString() == row.station) &&
                        (filter.day.isEmpty() || localIso(row.began).startsWith(filter.day));
    if (wanted && file.write(lineOf(row)) < 0) return false;
    rows += wanted ? 1 : 0;
    return true;
  });
  if (!fault.none()) return QString::fromStdString(fault.words);
  return file.commit() ? QStringLiteral("%1 runs are in %2").arg(rows).arg(path)
                       : path + QStringLiteral(": ") + file.errorString();
}

}  // namespace kvr::tiles
