// The books as this computer reaches them.
#pragma once

#include <memory>
#include <string>

#include "records/record_store.h"
#include "records/waiting_room.h"

namespace kvr::records {

class RecordDesk {
 public:
  virtual ~RecordDesk() = default;
  // Where the books are: the variable KVR_RECORDS, or what `keepLocation` was given last, or the file of this computer.
  virtual std::string location() const = 0;
  // For good, for all programs of this user. Empty: it is kept, else why not.
  [[nodiscard]] virtual std::string keepLocation(const std::string& location) = 0;
  virtual Stored<std::unique_ptr<RecordStore>> open(const std::string& location) = 0;
  // Of that store, in a file on this computer.
  virtual std::unique_ptr<WaitingRoom> waitingFor(const std::string& location) const = 0;
  virtual std::string utcNow() const = 0;  // "yyyy-mm-ddThh:mm:ssZ"
  virtual std::string newRun() const = 0;  // an identity that no other run has
};

}  // namespace kvr::records
