// The books in an SQL database: SQLite or PostgreSQL, the same statements for both.
#pragma once

#include "records/qt/sql_link.h"
#include "records/record_store.h"

namespace kvr::records {

class SqlStore : public RecordStore {
 public:
  explicit SqlStore(std::unique_ptr<SqlLink> link) : link_(std::move(link)) {}

  StoreFault addBatch(const NewBatch& batch) override;
  StoreFault closeBatch(const std::string& name) override;
  Stored<Batch> batch(const std::string& name) override;
  Stored<Batch> glance(const std::string& name) override;
  Stored<std::vector<Batch>> batches() override;
  Stored<Reservation> reserve(const std::string& batch, const std::string& station, const Fingerprint& job) override;
  StoreFault spend(const Reservation& place, const RunRow& row) override;
  StoreFault giveBack(const Reservation& place, const RunRow& row) override;
  StoreFault doubt(const Reservation& place, const RunRow& row) override;
  StoreFault addRun(const RunRow& row) override;
  Stored<std::vector<Doubt>> doubts(const std::string& batch) override;
  StoreFault settle(const std::string& batch, std::int64_t ordinal, Settlement how) override;
  StoreFault readRuns(const std::string& batch, const std::function<bool(const RunRow&)>& reader) override;
  Stored<std::vector<Tally>> tallies(const std::string& batch, const TallyFilter& filter) override;
  Stored<Extent> extent(const std::string& batch) override;

 private:
  // All of these inside a transaction.
  std::optional<Batch> read(const QString& name, bool toChange);
  void readCounters(Batch& batch);
  void readPlaces(Batch& batch);
  void readRunCounts(Batch& batch);
  void markDoubts(const QString& batch);
  std::int64_t takePlace(const QString& batch);
  bool keepRow(const RunRow& row);
  bool dropPass(const QString& run);
  void tally(const RunRow& row, int runs);  // runs: 1 or -1
  void tallyOne(const RunRow& row, int runs, const char* kind, const QString& key);
  StoreFault finish(const Reservation& place, const RunRow& row, const char* state);

  std::unique_ptr<SqlLink> link_;
};

}  // namespace kvr::records
