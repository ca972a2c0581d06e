// What is remembered of a line from one day to the next: the stations with their adapters, and how it works.
#pragma once

#include <string>
#include <vector>

#include "platform/settings_store.h"
#include "stations/crew.h"

namespace kvr::stations {

struct Line {
  std::vector<Place> places;
  Work work;
  bool beeps = false;
  bool operator==(const Line&) const = default;
};

Line readLine(const platform::SettingsStore& store);
// To be on the disk with the store's next flush.
void remember(platform::SettingsStore& store, const Line& line);

}  // namespace kvr::stations
