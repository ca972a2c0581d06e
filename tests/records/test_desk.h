// A record store in a folder of a test, or on its server.
#pragma once

#include <QTemporaryDir>
#include <memory>
#include <string>

#include "records/qt/qt_record_desk.h"
#include "records/qt/waiting_rows.h"

namespace kvr::records {

struct TestDesk : QtRecordDesk {
  explicit TestDesk(const QTemporaryDir& folder)
      : QtRecordDesk([] { return nullptr; }),
        place(folder.filePath("records.db").toStdString()),
        rows(folder.filePath("waiting").toStdString()) {}
  std::string location() const override { return place; }
  std::unique_ptr<WaitingRoom> waitingFor(const std::string&) const override {
    return std::make_unique<WaitingRows>(rows);
  }
  std::string place, rows;
};

}  // namespace kvr::records
