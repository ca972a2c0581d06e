// Results that the record store could not take when they came: kept in a file on this computer, one JSON object a line,
// until the store is back. Each goes in once, as a failure whose number is in doubt: its user has seen FAIL.
#pragma once

#include <string>
#include <vector>

#include "records/record_store.h"

namespace kvr::records {

class WaitingRows {
 public:
  explicit WaitingRows(std::string path) : path_(std::move(path)) {}  // its folder is made when it is needed

  // On the disk when this returns true. `place` without a run: there was no number.
  [[nodiscard]] bool keep(const Reservation& place, const RunRow& row) const;
  // Hands over what waits, the oldest first, until the store cannot be asked. A row that the store refuses stays, too.
  // The number of rows that still wait.
  [[nodiscard]] int deliver(RecordStore& store) const;

 private:
  std::string path_;
};

}  // namespace kvr::records
