#include "engine/conversation.h"

#include "platform/text.h"

namespace kvr::engine {

std::string Conversation::elapsedText() const {
  const auto seconds =
      std::chrono::duration_cast<std::chrono::seconds>(link.world().loop.now() - run.startMark).count();
  return "[" + platform::padLeft(std::to_string(seconds / 60 % 100), 2) + ":" +
         platform::padLeft(std::to_string(seconds % 60), 2) + "]";
}

bool Conversation::fail(int beeps, const std::string& line) {
  link.beeps(beeps);
  link.say(line);
  run.failureWords = line;
  return false;
}

bool Conversation::failNow(int beeps, const std::string& words) {
  return fail(beeps, words + "(End: " + link.timeOfDay() + ")");
}

bool Conversation::stopped() {
  if (!link.stopCheck()) return false;
  if (run.failureWords.empty()) run.failureWords = link.lostPort.empty() ? "Operation stopped. " : link.lostPort;
  return true;
}

void Conversation::reportTarget(std::uint8_t status11, std::uint8_t status12, std::uint8_t status13) {
  const options::TargetReport report =
      options::describeTarget({.sizeUntold = traits().tellsSize && !target.reservedKnown,
                               .modelName = target.targetModelName,
                               .firmware = target.firmware,
                               .stepping = target.stepping,
                               .reported = options.reported,
                               .status11 = status11,
                               .status12 = status12,
                               .status13 = status13});
  room.showReport(report);
  if (report.clearStartPair) link.rx.requireStartPair = false;
  if (report.doubleSpeed) target.doubleSpeed = *report.doubleSpeed;
}

}  // namespace kvr::engine
