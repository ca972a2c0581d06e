#include "records/qt/sql_store.h"

#include "records/qt/row_texts.h"

namespace kvr::records {

StoreFault SqlStore::addBatch(const NewBatch& batch) {
  if (batch.name.empty()) return no("A batch needs a name.");
  return link_->change([&]() -> StoreFault {
    if (link_->isServer())
      link_->ask("LOCK TABLE batches IN SHARE ROW EXCLUSIVE MODE");  // of two that add the same name one is told
    if (read(text(batch.name), false)) return no("There is a batch \"" + batch.name + "\" already.");
    QSqlQuery last = link_->ask("SELECT COALESCE(MAX(number), 0) + 1 FROM batches");
    last.next();
    link_->ask("INSERT INTO batches (name, job, wanted, opened, number) VALUES (?, ?, ?, ?, ?)",
               {text(batch.name), jobText(batch.job),
                batch.wanted ? QVariant::fromValue<qlonglong>(*batch.wanted) : QVariant(), utcNow(), last.value(0)});
    int place = 0;
    for (const Counter& counter : batch.counters)
      link_->ask("INSERT INTO counters VALUES (?, ?, ?, ?, ?)",
                 {text(batch.name), place++, text(counter.name), qlonglong{counter.first}, qlonglong{counter.step}});
    return {};
  });
}

StoreFault SqlStore::closeBatch(const std::string& name) {
  return link_->change([&]() -> StoreFault {
    const int closed =
        link_->tell("UPDATE batches SET closed = ? WHERE name = ? AND closed = ''", {utcNow(), text(name)});
    if (closed == 0)
      return read(text(name), false) ? no("The batch \"" + name + "\" is closed already.") : noBatch(name);
    return {};
  });
}

Stored<Batch> SqlStore::batch(const std::string& name) {
  Stored<Batch> stored;
  stored.fault = link_->change([&]() -> StoreFault {
    markDoubts(text(name));
    std::optional<Batch> found = read(text(name), false);
    if (!found) return noBatch(name);
    readRunCounts(*found);
    stored.value = *found;
    return {};
  });
  return stored;
}

Stored<Batch> SqlStore::glance(const std::string& name) {
  Stored<Batch> stored;
  stored.fault = link_->look([&]() -> StoreFault {
    const std::optional<Batch> found = read(text(name), false);
    if (!found) return noBatch(name);
    stored.value = *found;
    return {};
  });
  return stored;
}

Stored<std::vector<Batch>> SqlStore::batches() {
  Stored<std::vector<Batch>> stored;
  stored.fault = link_->look([&]() -> StoreFault {
    stored.value.clear();
    QStringList names;
    for (QSqlQuery query = link_->ask("SELECT name FROM batches ORDER BY number DESC"); query.next();)
      names << query.value(0).toString();
    for (const QString& name : names)
      if (std::optional<Batch> found = read(name, false)) {
        readRunCounts(*found);
        stored.value.push_back(*found);
      }
    return {};
  });
  return stored;
}

std::optional<Batch> SqlStore::read(const QString& name, bool toChange) {
  QSqlQuery query = link_->ask("SELECT job, wanted, opened, closed, given FROM batches WHERE name = ?" +
                                   (toChange ? link_->forUpdate() : QString()),
                               {name});
  if (!query.next()) return std::nullopt;
  Batch batch{.name = name.toStdString(),
              .job = jobOf(query.value(0).toString()),
              .opened = query.value(2).toString().toStdString(),
              .closed = query.value(3).toString().toStdString()};
  if (!query.value(1).isNull()) batch.wanted = query.value(1).toLongLong();
  batch.places.given = query.value(4).toLongLong();
  readCounters(batch);
  readPlaces(batch);
  return batch;
}

void SqlStore::readCounters(Batch& batch) {
  QSqlQuery query =
      link_->ask("SELECT name, first, step FROM counters WHERE batch = ? ORDER BY place", {text(batch.name)});
  while (query.next())
    batch.counters.push_back(
        {query.value(0).toString().toStdString(), query.value(1).toLongLong(), query.value(2).toLongLong()});
}

void SqlStore::readPlaces(Batch& batch) {
  Places& places = batch.places;
  places.reserved = places.inDoubt = places.free = 0;
  // The spent ones are the many: they are what is left.
  QSqlQuery query = link_->ask(
      "SELECT state, COUNT(*) FROM places WHERE batch = ? AND state IN ('reserved', 'doubt', 'free') GROUP BY state",
      {text(batch.name)});
  while (query.next()) {
    const QString state = query.value(0).toString();
    (state == "reserved" ? places.reserved
     : state == "doubt"  ? places.inDoubt
                         : places.free) = query.value(1).toLongLong();
  }
  places.spent = places.given - places.reserved - places.inDoubt - places.free;
}

void SqlStore::readRunCounts(Batch& batch) {
  QSqlQuery query = link_->ask("SELECT key, SUM(runs) FROM tallies WHERE batch = ? AND kind = 'verdict' GROUP BY key",
                               {text(batch.name)});
  while (query.next()) {
    const Verdict verdict = verdictOf(query.value(0).toString());
    (verdict == Verdict::Passed         ? batch.passed
     : verdict == Verdict::PassedInPart ? batch.passedInPart
                                        : batch.failed) = query.value(1).toLongLong();
  }
}

}  // namespace kvr::records
