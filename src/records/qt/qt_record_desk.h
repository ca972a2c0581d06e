// The books as a program of this computer reaches them: the place from environment and settings, SQLite or PostgreSQL,
// waiting rows in files beside the records.
#pragma once

#include <functional>

#include "platform/settings_store.h"
#include "records/record_desk.h"

namespace kvr::records {

class QtRecordDesk : public RecordDesk {
 public:
  // `settings` opens those of the user, when they are needed.
  explicit QtRecordDesk(std::function<std::unique_ptr<platform::SettingsStore>()> settings)
      : settings_(std::move(settings)) {}
  std::string location() const override;
  [[nodiscard]] std::string keepLocation(const std::string& location) override;
  Stored<std::unique_ptr<RecordStore>> open(const std::string& location) override { return openStore(location); }
  std::unique_ptr<WaitingRoom> waitingFor(const std::string& location) const override;
  std::string utcNow() const override;
  std::string newRun() const override;

 private:
  std::function<std::unique_ptr<platform::SettingsStore>()> settings_;
};

}  // namespace kvr::records
