#include "shell/batch_desk.h"

#include "batches/fingerprint.h"

namespace kvr::shell {

records::StoreFault BatchDesk::reach() {
  books_.reset();
  store_.reset();
  const std::string place = records_.location();
  auto opened = records_.open(place);
  if (!opened.ok()) return opened.fault;
  store_ = std::move(opened.value);
  waiting_ = records_.waitingFor(place);
  left_ = waiting_->deliver(*store_);
  return {};
}

records::Stored<std::vector<std::string>> BatchDesk::openBatches() {
  if (records::StoreFault fault = reach(); !fault.none()) return {{}, std::move(fault)};
  auto all = store_->batches();
  records::Stored<std::vector<std::string>> names{{}, all.fault};
  for (const records::Batch& batch : all.value)
    if (batch.closed.empty()) names.value.push_back(batch.name);
  return names;
}

void BatchDesk::choose(batches::Bench bench) {
  books_.reset();
  bench_ = std::move(bench);
}

std::string BatchDesk::open(const engine::Job& job) {
  if (const records::StoreFault fault = reach(); !fault.none()) return fault.words;
  const auto found = store_->batch(bench_.batch);
  if (!found.ok()) return found.fault.words;
  const batches::Layout layout = batches::layoutOf(found.value.job.numbers);
  if (std::string why = records::refusalOf(found.value, batches::fingerprintOf(job, layout)); !why.empty()) return why;
  books_ = std::make_unique<batches::BatchBooks>(batches::Shelf{*store_, *waiting_, records_}, bench_, layout);
  return {};
}

engine::RunBooks& BatchDesk::books() {
  if (books_) return *books_;
  if (chosen()) return shut_;
  return none_;
}

}  // namespace kvr::shell
