// The runs of a batch as a table for other programs.
#pragma once

#include <QString>

#include "records/record_store.h"

namespace kvr::tiles {

struct RunFilter {
  std::string batch;
  QString station, day;  // empty: all; the day as "yyyy-mm-dd", local
};

// Writes the file whole or not at all. What has become of it, for the user.
QString writeRuns(records::RecordStore& store, const RunFilter& filter, const QString& path);

}  // namespace kvr::tiles
