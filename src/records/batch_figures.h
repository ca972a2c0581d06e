// What people look at on the page of a batch, as values: made of the store's tallies, so that a page of a million runs
// opens at once. Hours are those of the tallies.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "records/record_store.h"

namespace kvr::records {

struct HourFigures {
  std::string hour;                     // "yyyy-mm-ddThh"
  std::int64_t passed = 0, failed = 0;  // passed in part counts as passed
  bool operator==(const HourFigures&) const = default;
};

struct CountOf {
  std::string words;
  std::int64_t runs = 0;
  bool operator==(const CountOf&) const = default;
};

struct SecondsBar {
  std::int64_t seconds = 0;  // from this whole second to the next
  std::int64_t runs = 0;     // that passed
  bool operator==(const SecondsBar&) const = default;
};

struct BatchFigures {
  std::int64_t passed = 0, passedInPart = 0, failed = 0;
  std::vector<HourFigures> hours;   // rising, without those in which nothing ran
  std::vector<CountOf> failures;    // the most frequent first
  std::vector<SecondsBar> seconds;  // rising, without gaps' zeros

  std::int64_t done() const { return passed + passedInPart; }
  double yield() const;        // done of all runs, 0 to 1; 0 without runs
  double chipsAnHour() const;  // done, over the hours in which something ran; 0 without
};

BatchFigures figuresOf(const std::vector<RecordStore::Tally>& tallies);

}  // namespace kvr::records
