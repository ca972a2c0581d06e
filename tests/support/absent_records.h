// A machine without a record store.
#pragma once

#include "records/record_desk.h"

namespace kvr::support {

class AbsentRecords : public records::RecordDesk {
 public:
  std::string location() const override { return {}; }
  [[nodiscard]] std::string keepLocation(const std::string&) override { return {}; }
  records::Stored<std::unique_ptr<records::RecordStore>> open(const std::string&) override {
    return {{}, {records::StoreFault::Kind::Unreachable, "There is no record store."}};
  }
  std::unique_ptr<records::WaitingRoom> waitingFor(const std::string&) const override { return nullptr; }
  std::string utcNow() const override { return {}; }
  std::string newRun() const override { return {}; }
};

}  // namespace kvr::support
