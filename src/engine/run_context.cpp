#include "engine/run_context.h"

#include "platform/text.h"

namespace kvr::engine {

// Of a port that has gone the user knows already; the chip is not to blame.
bool RunContext::fail(int beeps, const std::string& line) {
  if (!link.lostPort().empty()) {
    words_ = "The COM port has been lost: " + link.lostPort();
    return false;
  }
  if (beeps > 0) view().beep(beeps);
  say(line);
  words_ = line;
  return false;
}

bool RunContext::failNow(int beeps, const std::string& words) {
  return fail(beeps, words + "(End: " + timeOfDay() + ")");
}

bool RunContext::failPort(int beeps) {
  portFailed_ = true;
  fail(beeps, kPortFailed);
  say(kPortFailedWhy);
  return false;
}

void RunContext::tellStop() {
  view().beep(1);
  if (!link.lostPort().empty()) {
    fail(0, {});
    return;
  }
  say("Operation stopped. ");
  if (words_.empty()) words_ = "Operation stopped. ";
}

bool RunContext::stopped() {
  if (link.stopped()) tellStop();
  return link.stopped();
}

void RunContext::bookTime() {
  const platform::Instant now = link.loop().now();
  const auto stage = static_cast<std::size_t>(stage_);
  spent_[stage] += now - stageBegan_;
  const Pauses pauses = link.takePauses();
  turned_[stage] += pauses.turned;
  rested_[stage] += pauses.rested;
  for (Rest rest : pauses.longOnes) {
    rest.stage = stage_;
    longRests_.push_back(rest);
  }
  stageBegan_ = now;
}

void RunContext::enter(Stage stage) {
  bookTime();
  if (stage == Stage::Identify && link.firstAnswerAt()) contact_ = stageBegan_ - *link.firstAnswerAt();
  stage_ = stage;
  view().enter(stage);
}

const StageTimes& RunContext::spent() {
  bookTime();
  return spent_;
}

Outcome RunContext::outcome(RunKind kind, bool good, const LeftOut& leftOut) {
  const bool byUser = link.stopped() && link.lostPort().empty();
  if (!link.lostPort().empty()) note(Setback::PortLost);
  return {.kind = kind,
          .ending = good     ? leftOut.bytes > 0 ? Ending::PassedInPart : Ending::Passed
                    : byUser ? Ending::Stopped
                             : Ending::Failed,
          .stage = stage_,
          .words = good ? std::string() : words_,
          .portLost = !good && (portFailed_ || !link.lostPort().empty()),
          .firstBaud = job.firstBaud,
          .triedBaud = triedBaud_,
          .turnRound = link.turnRound(),
          .codeSum = job.code.sum,
          .dataSum = job.data.sum,
          .bytesLeftOut = leftOut.bytes,
          .leftOutFrom = leftOut.from,
          .spent = spent(),
          .turned = turned_,
          .rested = rested_,
          .contact = contact_,
          .longRests = longRests_,
          .setbacks = setbacks_};
}

std::string RunContext::elapsedText() const {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(link.loop().now() - startMark_).count();
  constexpr int kShown = 100 * 60;  // two digits of minutes
  return "[" + platform::minutesText(seconds % kShown) + "]";
}

}  // namespace kvr::engine
