#include "records/qt/schema.h"

#include <QStringList>
#include <array>

namespace kvr::records {
namespace {

// One list of statements a version, for both databases. Only ever add to the end.
const std::array<QStringList, 1> kVersions{{
    {
        "CREATE TABLE batches (name TEXT PRIMARY KEY, job TEXT NOT NULL, wanted BIGINT, opened TEXT NOT NULL, "
        "closed TEXT NOT NULL DEFAULT '', number BIGINT NOT NULL, given BIGINT NOT NULL DEFAULT 0)",
        "CREATE TABLE counters (batch TEXT NOT NULL REFERENCES batches, place INTEGER NOT NULL, name TEXT NOT NULL, "
        "first BIGINT NOT NULL, step BIGINT NOT NULL, PRIMARY KEY (batch, place))",
        // state: 'reserved', 'spent', 'free' or 'doubt'; run: whose it is, or was; presence: of the process that has it
        "CREATE TABLE places (batch TEXT NOT NULL REFERENCES batches, ordinal BIGINT NOT NULL, state TEXT NOT NULL, "
        "run TEXT NOT NULL, station TEXT NOT NULL, presence BIGINT NOT NULL, since TEXT NOT NULL, "
        "PRIMARY KEY (batch, ordinal))",
        "CREATE INDEX places_by_state ON places (batch, state, ordinal)",
        "CREATE TABLE runs (run TEXT PRIMARY KEY, batch TEXT NOT NULL, station TEXT NOT NULL, port TEXT NOT NULL, "
        "adapter TEXT NOT NULL, began TEXT NOT NULL, seconds DOUBLE PRECISION NOT NULL, stage_seconds TEXT NOT NULL, "
        "verdict TEXT NOT NULL, words TEXT NOT NULL, chip TEXT NOT NULL, firmware TEXT NOT NULL, "
        "factory_id TEXT NOT NULL, numbers TEXT NOT NULL, code_sum TEXT NOT NULL, data_sum TEXT NOT NULL, "
        "left_out BIGINT NOT NULL, program TEXT NOT NULL, operator TEXT NOT NULL)",
        "CREATE INDEX runs_by_batch ON runs (batch, began)",
        // kept with each run, so that a page of a million runs opens at once
        "CREATE TABLE tallies (batch TEXT NOT NULL, station TEXT NOT NULL, hour TEXT NOT NULL, kind TEXT NOT NULL, "
        "key TEXT NOT NULL, runs BIGINT NOT NULL, PRIMARY KEY (batch, station, hour, kind, key))",
    },
}};

// The version of the tables; 0: none yet.
int versionOf(SqlLink& link) {
  QSqlQuery there = link.isServer()
                        ? link.ask(
                              "SELECT 1 FROM information_schema.tables WHERE table_name = 'kvr_records' AND "
                              "table_schema = current_schema()")
                        : link.ask("SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = 'kvr_records'");
  if (!there.next()) return 0;
  QSqlQuery version = link.ask("SELECT version FROM kvr_records");
  return version.next() ? version.value(0).toInt() : 0;
}

StoreFault tooNew(int version) {
  return {StoreFault::Kind::Refused,
          "The record store was made by a newer version of this program (tables of version " + std::to_string(version) +
              "). Nothing was changed in it. Update this program, or choose another store."};
}

}  // namespace

StoreFault bringUpToDate(SqlLink& link) {
  int version = 0;
  StoreFault fault = link.look([&] {
    version = versionOf(link);
    return StoreFault{};
  });
  const int known = static_cast<int>(kVersions.size());
  if (!fault.none() || version == known) return fault;
  return link.change([&]() -> StoreFault {
    if (link.isServer())
      link.ask("SELECT pg_advisory_xact_lock(49)");  // of several stations that start together one makes the tables
    version = versionOf(link);
    if (version > known) return tooNew(version);
    if (version == 0) link.ask("CREATE TABLE kvr_records (version INTEGER NOT NULL)");
    for (int i = version; i < known; ++i)
      for (const QString& statement : kVersions[static_cast<std::size_t>(i)]) link.ask(statement);
    link.ask("DELETE FROM kvr_records");
    link.ask("INSERT INTO kvr_records VALUES (?)", {known});
    return {};
  });
}

}  // namespace kvr::records
