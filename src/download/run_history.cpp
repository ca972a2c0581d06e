#include "download/run_history.h"

#include <algorithm>

namespace kvr::download {

void RunHistory::add(const RunRecord& record) {
  if (record.outcome.ending == engine::Ending::Refused) return;
  runs_.push_back(record);
  if (runs_.size() > kKept) runs_.pop_front();
}

const RunRecord* RunHistory::toCompare() const {
  if (runs_.size() < 2) return nullptr;
  const RunRecord& newest = runs_.back();
  const auto good = std::find_if(runs_.rbegin() + 1, runs_.rend(), [&](const RunRecord& run) {
    return run.outcome.passed() && run.model == newest.model && run.outcome.kind == newest.outcome.kind;
  });
  if (!newest.outcome.passed() && good != runs_.rend()) return &*good;
  return &*(runs_.rbegin() + 1);
}

}  // namespace kvr::download
