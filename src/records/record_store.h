// The books of a production line: batches, the numbers that their chips carry, and one row for each run. What is
// promised, after any crash of any station: no number goes to two chips that passed; no chip passed without its row; no
// number is missing but those in doubt, which a person settles.
//
// A place is *reserved* for a chip that has answered, before it is erased; it is *spent* in the step that writes the
// row of the PASS; it is *given back* when the run failed, and the next chip takes the lowest one that is free. When
// the process that reserved it has died, it is *in doubt* and never given out again until a person says so.
//
// Every call is one transaction: done, or nothing has happened. Calls wait for each other up to ten seconds.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "records/batch.h"

namespace kvr::records {

struct [[nodiscard]] StoreFault {
  enum class Kind {
    None,
    Refused,      // the store answers, and says no
    Unreachable,  // it could not be asked: it may come back
  };
  Kind kind = Kind::None;
  std::string words;  // for the user: what, and what to do
  bool none() const { return kind == Kind::None; }
};

template <class T>
struct [[nodiscard]] Stored {
  T value{};
  StoreFault fault;
  bool ok() const { return fault.none(); }
};

enum class Settlement { Spent, Free };

class RecordStore {
 public:
  virtual ~RecordStore() = default;

  virtual StoreFault addBatch(const NewBatch& batch) = 0;
  virtual StoreFault closeBatch(const std::string& name) = 0;
  virtual Stored<Batch> batch(const std::string& name) = 0;
  // The same at once, waiting for nobody; a place whose station has just died is still in work there.
  virtual Stored<Batch> glance(const std::string& name) = 0;
  virtual Stored<std::vector<Batch>> batches() = 0;  // the newest first

  // A place for the chip that `station` has in its hands. Refused when the batch is closed or full, or its job differs.
  virtual Stored<Reservation> reserve(const std::string& batch, const std::string& station, const Fingerprint& job) = 0;
  // The run has passed: its place is spent and its row written, both or none.
  virtual StoreFault spend(const Reservation& place, const RunRow& row) = 0;
  // It has failed or was stopped: the place is free again and the row written, both or none.
  virtual StoreFault giveBack(const Reservation& place, const RunRow& row) = 0;
  // The chip carries the number, and its PASS could not be recorded in time: the place is in doubt, the row a failure.
  virtual StoreFault doubt(const Reservation& place, const RunRow& row) = 0;
  // The row of a run that never had a place: it failed before a chip was known.
  virtual StoreFault addRun(const RunRow& row) = 0;

  virtual Stored<std::vector<Doubt>> doubts(const std::string& batch) = 0;  // by ordinal
  virtual StoreFault settle(const std::string& batch, std::int64_t ordinal, Settlement how) = 0;

  // Rows of a batch from the oldest on; the reader returns false to end early.
  virtual StoreFault readRuns(const std::string& batch, const std::function<bool(const RunRow&)>& reader) = 0;

  // Which runs count on a page of the batch. Empty: all.
  struct TallyFilter {
    std::string station;
    std::string fromHour, toHour;  // from the first one to before the last one
  };
  // What that page shows: how many runs by hour and verdict, failures by their words, runs that passed by whole
  // seconds.
  struct Tally {
    std::string hour;       // of a verdict: "yyyy-mm-ddThh", UTC
    std::string kind, key;  // "verdict": "passed", "in part", "failed"; "failure": its words; "seconds": "12"
    std::int64_t runs = 0;
  };
  // Summed up by the store, which keeps the sums by hour: a million runs take a moment. Verdicts hour by hour.
  virtual Stored<std::vector<Tally>> tallies(const std::string& batch, const TallyFilter& filter) = 0;
  // What a filter can choose: where and when something has run, sorted.
  struct Extent {
    std::vector<std::string> stations, hours;
  };
  virtual Stored<Extent> extent(const std::string& batch) = 0;
};

// Where the books are: a file's path (SQLite; made at the first use, with its folder), or
// "postgresql://user@host:port/database" with the password in libpq's own places (PGPASSFILE, PGPASSWORD, peer), never
// in the address. A Unix socket: "postgresql:///database?host=/folder".
Stored<std::unique_ptr<RecordStore>> openStore(const std::string& location);

}  // namespace kvr::records
