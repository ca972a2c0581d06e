#include "records/qt/sql_store.h"

#include "records/qt/row_texts.h"

namespace kvr::records {
namespace {

const QString kReadRuns =
    "SELECT run, batch, station, port, adapter, began, seconds, stage_seconds, verdict, words, chip, firmware, "
    "factory_id, "
    "numbers, code_sum, data_sum, left_out, program, operator FROM runs ";

}  // namespace

StoreFault SqlStore::addRun(const RunRow& row) {
  return link_->change([&]() -> StoreFault {
    if (!read(text(row.batch), false)) return noBatch(row.batch);
    keepRow(row);
    return {};
  });
}

// False: the row is in the books already.
bool SqlStore::keepRow(const RunRow& row) {
  const int added = link_->tell(
      "INSERT INTO runs VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) ON CONFLICT (run) DO NOTHING",
      {text(row.run), text(row.batch), text(row.station), text(row.port), text(row.adapter), text(row.began),
       row.seconds, text(row.stageSeconds), nameOf(row.verdict), text(row.words), text(row.chip), text(row.firmware),
       text(row.factoryId), text(row.numbers), text(row.codeSum), text(row.dataSum), qlonglong{row.bytesLeftOut},
       text(row.programVersion), text(row.operatorName)});
  if (added == 1) tally(row, 1);
  return added == 1;
}

// False: there is no such run, or it has failed.
bool SqlStore::dropPass(const QString& run) {
  QSqlQuery query = link_->ask(kReadRuns + "WHERE run = ? AND verdict <> ?", {run, nameOf(Verdict::Failed)});
  if (!query.next()) return false;
  tally(rowOf(query), -1);
  link_->ask("DELETE FROM runs WHERE run = ?", {run});
  return true;
}

void SqlStore::tally(const RunRow& row, int runs) {
  tallyOne(row, runs, "verdict", nameOf(row.verdict));
  if (row.verdict == Verdict::Failed)
    tallyOne(row, runs, "failure", text(row.words));
  else
    tallyOne(row, runs, "seconds", QString::number(static_cast<qlonglong>(row.seconds)));
}

void SqlStore::tallyOne(const RunRow& row, int runs, const char* kind, const QString& key) {
  link_->ask(
      "INSERT INTO tallies VALUES (?, ?, ?, ?, ?, ?) ON CONFLICT (batch, station, hour, kind, key) DO UPDATE SET "
      "runs = tallies.runs + excluded.runs",
      {text(row.batch), text(row.station), text(row.began).left(13), QString::fromLatin1(kind), key, runs});
}

StoreFault SqlStore::readRuns(const std::string& batch, const std::function<bool(const RunRow&)>& reader) {
  return link_->look([&]() -> StoreFault {
    QSqlQuery query = link_->ask(kReadRuns + "WHERE batch = ? ORDER BY began, run", {text(batch)});
    while (query.next() && reader(rowOf(query))) {
    }
    return {};
  });
}

Stored<std::vector<RecordStore::Tally>> SqlStore::tallies(const std::string& batch, const TallyFilter& filter) {
  const QString end = filter.toHour.empty() ? QStringLiteral("9") : text(filter.toHour);  // after every hour
  const QString from = QStringLiteral(" FROM tallies WHERE batch = ? AND hour >= ? AND hour < ? AND ") +
                       (filter.station.empty() ? QStringLiteral("station >= ?") : QStringLiteral("station = ?"));
  Stored<std::vector<Tally>> stored;
  const auto take = [&](const QString& statement) {
    QSqlQuery query = link_->ask(statement, {text(batch), text(filter.fromHour), end, text(filter.station)});
    const auto column = [&query](int i) { return query.value(i).toString().toStdString(); };
    while (query.next()) stored.value.push_back({column(0), column(1), column(2), query.value(3).toLongLong()});
  };
  stored.fault = link_->look([&]() -> StoreFault {
    stored.value.clear();
    take("SELECT hour, kind, key, SUM(runs)" + from +
         " AND kind = 'verdict' GROUP BY hour, kind, key HAVING SUM(runs) > 0 ORDER BY hour, key");
    take("SELECT '', kind, key, SUM(runs)" + from + " AND kind <> 'verdict' GROUP BY kind, key HAVING SUM(runs) > 0");
    return {};
  });
  return stored;
}

Stored<RecordStore::Extent> SqlStore::extent(const std::string& batch) {
  Stored<Extent> stored;
  const auto list = [&](const char* column) {
    std::vector<std::string> found;
    QSqlQuery query = link_->ask(QStringLiteral("SELECT DISTINCT %1 FROM tallies WHERE batch = ? AND kind = 'verdict' "
                                                "AND runs > 0 ORDER BY %1")
                                     .arg(QLatin1String(column)),
                                 {text(batch)});
    while (query.next()) found.push_back(query.value(0).toString().toStdString());
    return found;
  };
  stored.fault = link_->look([&]() -> StoreFault {
    stored.value = {list("station"), list("hour")};
    return {};
  });
  return stored;
}

}  // namespace kvr::records
