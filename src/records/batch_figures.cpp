#include "records/batch_figures.h"

#include <algorithm>
#include <map>

namespace kvr::records {
namespace {

// Sums by key, while the tallies are gone through.
struct Sums {
  std::map<std::string, HourFigures> hours;
  std::map<std::string, std::int64_t> failures;
  std::map<std::int64_t, std::int64_t> seconds;

  void addVerdict(const RecordStore::Tally& tally, BatchFigures& figures) {
    const bool failed = tally.key == "failed";
    (failed ? figures.failed : tally.key == "in part" ? figures.passedInPart : figures.passed) += tally.runs;
    HourFigures& hour = hours[tally.hour];
    hour.hour = tally.hour;
    (failed ? hour.failed : hour.passed) += tally.runs;
  }
  void add(const RecordStore::Tally& tally, BatchFigures& figures) {
    if (tally.kind == "verdict") addVerdict(tally, figures);
    if (tally.kind == "failure") failures[tally.key] += tally.runs;
    if (tally.kind == "seconds") seconds[std::stoll(tally.key)] += tally.runs;
  }
};

}  // namespace

BatchFigures figuresOf(const std::vector<RecordStore::Tally>& tallies) {
  BatchFigures figures;
  Sums sums;
  for (const RecordStore::Tally& tally : tallies) sums.add(tally, figures);
  for (const auto& [hour, one] : sums.hours) figures.hours.push_back(one);
  for (const auto& [words, runs] : sums.failures) figures.failures.push_back({words, runs});
  std::stable_sort(figures.failures.begin(), figures.failures.end(),
                   [](const CountOf& a, const CountOf& b) { return a.runs > b.runs; });
  for (const auto& [second, runs] : sums.seconds) figures.seconds.push_back({second, runs});
  return figures;
}

double BatchFigures::yield() const {
  const std::int64_t runs = done() + failed;
  return runs == 0 ? 0 : static_cast<double>(done()) / static_cast<double>(runs);
}

double BatchFigures::chipsAnHour() const {
  return hours.empty() ? 0 : static_cast<double>(done()) / static_cast<double>(hours.size());
}

}  // namespace kvr::records
