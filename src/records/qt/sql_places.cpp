#include "records/qt/sql_store.h"

#include <QUuid>

#include "records/qt/row_texts.h"

namespace kvr::records {
void SqlStore::markDoubts(const QString& batch) {
  QList<qint64> gone;
  for (QSqlQuery query =
           link_->ask("SELECT DISTINCT presence FROM places WHERE batch = ? AND state = 'reserved'", {batch});
       query.next();)
    gone << query.value(0).toLongLong();
  gone.removeIf([this](qint64 presence) { return !link_->isGone(presence); });
  for (const qint64 presence : gone)
    link_->ask("UPDATE places SET state = 'doubt' WHERE batch = ? AND state = 'reserved' AND presence = ?",
               {batch, presence});
}

// The lowest place that came back, or a new one.
std::int64_t SqlStore::takePlace(const QString& batch) {
  QSqlQuery free = link_->ask("SELECT MIN(ordinal) FROM places WHERE batch = ? AND state = 'free'", {batch});
  if (free.next() && !free.value(0).isNull()) return free.value(0).toLongLong();
  QSqlQuery given = link_->ask("SELECT given FROM batches WHERE name = ?", {batch});
  given.next();
  const qlonglong ordinal = given.value(0).toLongLong();
  link_->ask("UPDATE batches SET given = ? WHERE name = ?", {ordinal + 1, batch});
  return ordinal;
}

Stored<Reservation> SqlStore::reserve(const std::string& batch, const std::string& station, const Fingerprint& job) {
  Stored<Reservation> stored;
  stored.fault = link_->change([&]() -> StoreFault {
    link_->showPresence();
    if (!read(text(batch), true))  // from here on the batch is ours until the end of the step
      return noBatch(batch);
    markDoubts(text(batch));
    const std::optional<Batch> now = read(text(batch), false);
    if (const std::string why = refusalOf(*now, job); !why.empty()) return no(why);
    const std::int64_t ordinal = takePlace(text(batch));
    const QString run = QUuid::createUuid().toString(QUuid::WithoutBraces);
    link_->ask(
        "INSERT INTO places VALUES (?, ?, 'reserved', ?, ?, ?, ?) ON CONFLICT (batch, ordinal) DO UPDATE SET "
        "state = excluded.state, run = excluded.run, station = excluded.station, presence = excluded.presence, "
        "since = excluded.since",
        {text(batch), qlonglong{ordinal}, run, text(station), link_->presence(), utcNow()});
    stored.value = {run.toStdString(), batch, ordinal, numbersAt(*now, ordinal)};
    return {};
  });
  return stored;
}

// The place goes to `state`, if it is still this run's, and the row into the books. A row that is there already was
// written by an earlier try whose answer was lost.
StoreFault SqlStore::finish(const Reservation& place, const RunRow& row, const char* state) {
  return link_->change([&]() -> StoreFault {
    if (!read(text(place.batch), true)) return noBatch(place.batch);
    if (!keepRow(row)) return {};
    const int changed = link_->tell(
        "UPDATE places SET state = ?, since = ? WHERE batch = ? AND ordinal = ? AND run = ? AND state IN ('reserved', "
        "'doubt')",
        {QString::fromLatin1(state), utcNow(), text(place.batch), qlonglong{place.ordinal}, text(place.run)});
    if (changed == 1) return {};
    return no("The number of this chip has been given to another one: it was in doubt, and somebody set it free.");
  });
}

StoreFault SqlStore::spend(const Reservation& place, const RunRow& row) {
  return finish(place, row, "spent");
}

StoreFault SqlStore::giveBack(const Reservation& place, const RunRow& row) {
  return finish(place, row, "free");
}

// A PASS may have come into the books although its answer did not come back. The user has seen FAIL, so that holds.
// What a person has said of the number meanwhile holds, too.
StoreFault SqlStore::doubt(const Reservation& place, const RunRow& row) {
  return link_->change([&]() -> StoreFault {
    if (!read(text(place.batch), true)) return noBatch(place.batch);
    const bool passed = dropPass(text(row.run));
    if (!keepRow(row)) return {};  // it has come before
    link_->ask("UPDATE places SET state = 'doubt', since = ? WHERE batch = ? AND ordinal = ? AND run = ? AND state = ?",
               {utcNow(), text(place.batch), qlonglong{place.ordinal}, text(place.run),
                passed ? QStringLiteral("spent") : QStringLiteral("reserved")});
    return {};
  });
}

Stored<std::vector<Doubt>> SqlStore::doubts(const std::string& batch) {
  Stored<std::vector<Doubt>> stored;
  stored.fault = link_->change([&]() -> StoreFault {
    stored.value.clear();
    markDoubts(text(batch));
    const std::optional<Batch> found = read(text(batch), false);
    if (!found) return noBatch(batch);
    QSqlQuery query =
        link_->ask("SELECT ordinal, station, since FROM places WHERE batch = ? AND state = 'doubt' ORDER BY ordinal",
                   {text(batch)});
    while (query.next()) {
      const std::int64_t ordinal = query.value(0).toLongLong();
      stored.value.push_back({batch, query.value(1).toString().toStdString(), query.value(2).toString().toStdString(),
                              ordinal, numbersAt(*found, ordinal)});
    }
    return {};
  });
  return stored;
}

StoreFault SqlStore::settle(const std::string& batch, std::int64_t ordinal, Settlement how) {
  return link_->change([&]() -> StoreFault {
    const QString state = how == Settlement::Spent ? "spent" : "free";
    const int settled =
        link_->tell("UPDATE places SET state = ?, since = ? WHERE batch = ? AND ordinal = ? AND state = 'doubt'",
                    {state, utcNow(), text(batch), qlonglong{ordinal}});
    return settled == 1 ? StoreFault{} : no("This number is not in doubt.");
  });
}

}  // namespace kvr::records
