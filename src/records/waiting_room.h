// Where results wait that the record store could not take when they came.
#pragma once

#include "records/record_store.h"

namespace kvr::records {

class WaitingRoom {
 public:
  virtual ~WaitingRoom() = default;
  // On the disk when this returns true. `place` without a run: there was no number.
  [[nodiscard]] virtual bool keep(const Reservation& place, const RunRow& row) const = 0;
  // Hands over what waits, the oldest first, until the store cannot be asked. A row that the store refuses stays, too.
  // The number of rows that still wait.
  [[nodiscard]] virtual int deliver(RecordStore& store) const = 0;
};

}  // namespace kvr::records
