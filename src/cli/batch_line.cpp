#include "cli/batch_line.h"

#include <algorithm>

#include "batches/fingerprint.h"
#include "cli/batch_text.h"

namespace kvr::cli {
namespace {

std::string adapterAt(const std::string& port, Ports& ports) {
  const PortsSeen seen = ports.look();
  const auto info = std::find_if(seen.found.begin(), seen.found.end(), [&](const auto& p) { return p.device == port; });
  return info == seen.found.end() || !info->usb ? std::string() : usbName(*info);
}

}  // namespace

void BatchArguments::declare(CLI::App& app) {
  const std::string group = "A batch of the record store";
  app.add_option("--batch", batch, "Numbers and results are this batch's (kvr batch new)")
      ->type_name("NAME")
      ->group(group);
  app.add_option("--station", station, "What the rows call this place (the port's name)")
      ->type_name("NAME")
      ->group(group);
  app.add_option("--operator", operatorName, "Who works here, for the rows")->type_name("TEXT")->group(group);
  store.declare(app, group);
}

batches::Bench BatchLine::bench() const {
  return {.batch = arguments_.batch,
          .station = arguments_.station.empty() ? port_.substr(port_.find_last_of('/') + 1) : arguments_.station,
          .port = port_,
          .adapter = adapterAt(port_, desk_.ports),
          .operatorName = arguments_.operatorName,
          .programVersion = KVR_VERSION};
}

Problem BatchLine::start(JobSource& source) {
  if (const Problem problem = arguments_.store.open(desk_, open_)) return problem;
  const auto found = open_.store->batch(arguments_.batch);
  if (!found.ok()) return problemOf(found.fault);
  const batches::Layout layout = own_.empty() ? batches::layoutOf(found.value.job.numbers) : own_;
  const records::Fingerprint job = batches::fingerprintOf(source.job, layout);
  if (const std::string why = records::closedOrOtherJob(found.value, job); !why.empty())
    return {ExitCode::Refused, why, "`kvr batch show` tells what the batch is."};
  books_ = std::make_unique<batches::BatchBooks>(batches::Shelf{*open_.store, *open_.waiting, desk_.records}, bench(),
                                                 layout);
  tell(found.value);
  return {};
}

void BatchLine::tell(const records::Batch& batch) {
  desk_.out.result("batch", batchFields(batch), "Batch " + batch.name + ": " + stateText(batch));
}

Problem BatchLine::next(JobSource&) {
  const auto now = open_.store->batch(arguments_.batch);
  if (!now.ok()) {  // the chip has its row; the next one tells whether the store is there again
    desk_.out.note(now.fault.words);
    return {};
  }
  tell(now.value);
  if (books_->waiting() > 0)
    desk_.out.note(std::to_string(books_->waiting()) + " results on this computer wait for the record store.");
  return {};
}

RoomSeen BatchLine::room() {
  const auto now = open_.store->batch(arguments_.batch);
  if (!now.ok()) return {};
  return {records::roomIn(now.value), records::fullText(now.value), records::takenText(now.value)};
}

bool BatchLine::roomAtAGlance() {
  const auto now = open_.store->glance(arguments_.batch);
  return !now.ok() || records::roomIn(now.value) == records::Room::Now;
}

engine::BooksAnswer BatchLine::claim(engine::Job& job) {
  engine::BooksAnswer answer = books_->claim(job);
  if (answer.fine()) desk_.out.result("number", {{"number", books_->inHand()}, {"place", books_->place() + 1}}, {});
  turnedAway_ = false;
  if (answer.fault != engine::BooksFault::Refused) return answer;
  const RoomSeen seen = room();
  turnedAway_ = seen.room != records::Room::Now;
  if (turnedAway_) desk_.out.result("full", fullFields(seen, true), {});
  return answer;
}

engine::BooksAnswer BatchLine::record(const engine::Outcome& outcome) {
  return books_->record(outcome);
}

}  // namespace kvr::cli
