#include "shell/batch_room.h"

#include <algorithm>
#include <utility>

#include "batches/fingerprint.h"

namespace kvr::shell {
namespace {

// "12 of 500 done, 1 in doubt"
std::string stateOf(const records::Batch& batch) {
  const records::Places& places = batch.places;
  std::string text =
      std::to_string(places.spent) + (batch.wanted ? " of " + std::to_string(*batch.wanted) : "") + " done";
  if (batch.wanted && places.spent >= *batch.wanted) text += ", full";
  if (places.inDoubt > 0) text += ", " + std::to_string(places.inDoubt) + " in doubt";
  return text;
}

}  // namespace

BatchPanel::BatchPanel() {
  labBatch.setVisible(false);
}

void BatchPanel::addTo(platform::ControlRegistry& registry) {
  registry.addAll(txtBatch, txtStation, txtOperator, labBatch);
}

BatchRoom::BatchRoom(records::RecordDesk& records, platform::UiLock& lock) : records_(records) {
  panel.txtBatch.changed.connect([this] {  // of its text, or of whether it takes input
    if (std::exchange(name_, panel.txtBatch.trimmed()) == panel.txtBatch.trimmed()) return;
    shut();
    tell("");
  });
  lockToken_ = lock.changed.watch([this, &lock] {
    for (platform::TextBox* box : {&panel.txtBatch, &panel.txtStation, &panel.txtOperator})
      box->setEnabled(!lock.busy());
  });
}

void BatchRoom::shut() {
  books_.reset();
  waiting_.reset();
  store_.reset();
}

records::Stored<std::vector<std::string>> BatchRoom::openBatches() const {
  auto opened = records_.open(records_.location());
  if (!opened.ok()) return {{}, opened.fault};
  auto all = opened.value->batches();
  records::Stored<std::vector<std::string>> names{{}, all.fault};
  for (const records::Batch& batch : all.value)
    if (batch.closed.empty()) names.value.push_back(batch.name);
  return names;
}

records::StoreFault BatchRoom::reach() {
  shut();
  const std::string place = records_.location();
  auto opened = records_.open(place);
  if (!opened.ok()) return opened.fault;
  store_ = std::move(opened.value);
  waiting_ = records_.waitingFor(place);
  left_ = waiting_->deliver(*store_);
  return {};
}

batches::Bench BatchRoom::bench() const {
  const Place place = placeNow();
  const std::string station = panel.txtStation.trimmed();
  return {.batch = name_,
          .station = station.empty() ? place.port.substr(place.port.find_last_of('/') + 1) : station,
          .port = place.port,
          .adapter = place.adapter,
          .operatorName = panel.txtOperator.trimmed(),
          .programVersion = KVR_VERSION};
}

std::string BatchRoom::open(const engine::Job& job, const std::vector<images::AutoIncrement>& counters) {
  if (const records::StoreFault fault = reach(); !fault.none()) return fault.words;
  const auto found = store_->batch(name_);
  if (!found.ok()) return found.fault.words;
  const batches::Layout layout = counters.empty() ? batches::layoutOf(found.value.job.numbers) : counters;
  tell(found.value);
  if (std::string why = records::refusalOf(found.value, batches::fingerprintOf(job, layout)); !why.empty()) return why;
  books_ = std::make_unique<batches::BatchBooks>(batches::Shelf{*store_, *waiting_, records_}, bench(), layout);
  return {};
}

engine::RunBooks& BatchRoom::books() {
  if (books_) return *books_;
  if (chosen()) return shut_;
  return none_;
}

// A store that does not answer now is met by the next chip: each asks for its number.
bool BatchRoom::takesMore() {
  if (!books_) return !chosen();
  const auto found = store_->batch(name_);
  if (!found.ok()) return true;
  tell(found.value);
  return !found.value.wanted || found.value.places.spent < *found.value.wanted;
}

void BatchRoom::tell(const std::string& state) {
  panel.labBatch.setCaption(name_.empty() ? "" : "Batch " + name_ + (state.empty() ? "" : ": " + state));
  panel.labBatch.setVisible(!name_.empty());
}

void BatchRoom::tell(const records::Batch& batch) {
  const int waiting = books_ ? std::max(left_, books_->waiting()) : left_;
  std::string state = stateOf(batch) + ".";
  if (!numberInHand().empty()) state += " Last number: " + numberInHand() + ".";
  if (waiting > 0) state += " " + std::to_string(waiting) + " results on this computer wait for the record store.";
  tell(state);
}

}  // namespace kvr::shell
