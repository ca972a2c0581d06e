// Results that the record store could not take when they came: kept in a file on this computer, one JSON object a line,
// until the store is back. Each goes in once, as a failure: its user has seen FAIL. The number of a chip that went
// through is in doubt from then on, that of another one is free.
#pragma once

#include <string>

#include "records/waiting_room.h"

namespace kvr::records {

class WaitingRows : public WaitingRoom {
 public:
  explicit WaitingRows(std::string path) : path_(std::move(path)) {}  // its folder is made when it is needed

  [[nodiscard]] bool keep(const Reservation& place, const RunRow& row) const override;
  [[nodiscard]] int deliver(RecordStore& store) const override;

 private:
  std::string path_;
};

}  // namespace kvr::records
