#include "batches/batch_books.h"

#include <array>

#include "batches/fingerprint.h"
#include "images/range_rules.h"
#include "platform/text.h"

namespace kvr::batches {
namespace {

using engine::BooksAnswer;
using engine::BooksFault;
using records::StoreFault;

constexpr std::array<const char*, engine::kStages> kStageNames = {"Prepare", "Wait",   "Identify", "Baud",  "Erase",
                                                                  "Program", "Finish", "Options",  "Report"};

BooksFault faultOf(StoreFault::Kind kind) {
  return kind == StoreFault::Kind::None      ? BooksFault::None
         : kind == StoreFault::Kind::Refused ? BooksFault::Refused
                                             : BooksFault::Unreachable;
}

double secondsOf(platform::Micros time) {
  return std::chrono::duration<double>(time).count();
}

std::string stagesOf(const engine::Outcome& outcome) {
  std::string text;
  for (std::size_t i = 0; i < engine::kStages; ++i)
    if (outcome.spent[i].count() > 0)
      text += (text.empty() ? "" : " ") + std::string(kStageNames[i]) + " " +
              platform::fixedText(secondsOf(outcome.spent[i]), 2);
  return text;
}

// Without its time of day: failures are counted by their words.
std::string wordsOf(const engine::Outcome& outcome) {
  return platform::trim(outcome.words.substr(0, outcome.words.find("(End: ")));
}

records::Verdict verdictOf(const engine::Outcome& outcome) {
  return outcome.ending == engine::Ending::Passed         ? records::Verdict::Passed
         : outcome.ending == engine::Ending::PassedInPart ? records::Verdict::PassedInPart
                                                          : records::Verdict::Failed;
}

}  // namespace

BooksAnswer BatchBooks::claim(engine::Job& job) {
  place_ = {};
  inHand_.clear();
  began_ = shelf_.desk.utcNow();
  const auto reserved = shelf_.store.reserve(bench_.batch, bench_.station, fingerprintOf(job, layout_));
  if (!reserved.ok()) return {faultOf(reserved.fault.kind), reserved.fault.words};
  place_ = reserved.value;
  inHand_ = records::textOf(place_.numbers);
  const std::string why = writeNumbers(job, layout_, place_.numbers);
  return why.empty() ? BooksAnswer{} : BooksAnswer{BooksFault::Refused, why};
}

records::RunRow BatchBooks::rowOf(const engine::Outcome& outcome) const {
  records::RunRow row{.run = place_.run.empty() ? shelf_.desk.newRun() : place_.run,
                      .batch = bench_.batch,
                      .station = bench_.station,
                      .port = bench_.port,
                      .adapter = bench_.adapter,
                      .began = place_.run.empty() ? shelf_.desk.utcNow() : began_,
                      .seconds = secondsOf(outcome.sinceAnswer()),
                      .stageSeconds = stagesOf(outcome),
                      .verdict = verdictOf(outcome),
                      .words = wordsOf(outcome),
                      .numbers = inHand_,
                      .codeSum = images::sumDigits(outcome.codeSum),
                      .dataSum = images::sumDigits(outcome.dataSum),
                      .bytesLeftOut = outcome.bytesLeftOut,
                      .programVersion = bench_.programVersion,
                      .operatorName = bench_.operatorName};
  if (outcome.chip) {
    row.chip = outcome.chip->model;
    row.firmware = outcome.chip->firmware;
    row.factoryId = outcome.chip->factoryId;
  }
  return row;
}

StoreFault BatchBooks::write(const engine::Outcome& outcome, records::RunRow& row) {
  if (place_.run.empty())
    return outcome.passed() ? StoreFault{StoreFault::Kind::Refused, "This chip has no place in the batch."}
                            : shelf_.store.addRun(row);
  return outcome.passed() ? shelf_.store.spend(place_, row) : shelf_.store.giveBack(place_, row);
}

// It goes in later, as a failure: that is what its user is about to see.
BooksAnswer BatchBooks::setAside(const StoreFault& fault, records::RunRow row) {
  if (row.verdict != records::Verdict::Failed) row.words = "The result could not be recorded.";
  std::string words = "The result could not be recorded: " + fault.words;
  if (!shelf_.waiting.keep(place_, row)) words += " It could not be kept on this computer either.";
  return {BooksFault::Unreachable, words};
}

BooksAnswer BatchBooks::record(const engine::Outcome& outcome) {
  if (place_.run.empty()) inHand_.clear();                               // it was the chip's before
  const bool met = outcome.chip || outcome.stage > engine::Stage::Wait;  // without a chip there is nothing to tell
  const bool turnedAway = outcome.books == BooksFault::Refused && place_.run.empty();
  if ((!met && place_.run.empty()) || turnedAway) return {};
  records::RunRow row = rowOf(outcome);
  const StoreFault fault = write(outcome, row);
  BooksAnswer answer;
  if (fault.none())
    waiting_ = shelf_.waiting.deliver(shelf_.store);  // the store is there, so what waits goes in
  else
    answer = setAside(fault, row);
  place_.run.clear();
  return answer;
}

}  // namespace kvr::batches
