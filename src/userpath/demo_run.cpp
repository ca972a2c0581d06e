#include "userpath/demo_run.h"

#include "platform/text.h"
#include "userpath/demo_data_frames.h"
#include "userpath/demo_models.h"
#include "userpath/user_bytes.h"

namespace kvr::userpath {
namespace {

using engine::Millis;

constexpr int kRounds = 3;
constexpr std::size_t kModelAt = 6;              // of the model number in its reply
constexpr std::size_t kShortestModelReply = 11;  // with the sum and the end byte after it

}  // namespace

engine::TraceFields traceFieldsOf(const DemoJob& job) {
  engine::TraceFields fields = {{"line", job.settings}};
  if (!job.command) return fields;
  fields.push_back({"command line", job.command->settings});
  fields.push_back({"command", job.command->bytes});
  return fields;
}

Millis pollPaceOf(const std::string& settings) {
  const int baud = platform::wholeOf(settings.substr(0, settings.find(',')));
  return Millis(baud < 2400 ? 200 : baud < 4800 ? 100 : 50);
}

DemoRun::DemoRun(const DemoJob& job, const engine::RunServices& services, engine::RunView& view)
    : job_(job), line_(services, view, job.job.port), c_(job_.job, line_) {}

engine::Outcome DemoRun::program() {
  return end((!job_.command || sendCommand()) && download());
}

bool DemoRun::opens(const std::string& settings) {
  if (!line_.open(settings)) {
    c_.view().lamp(true);
    return true;
  }
  return c_.failPort(1);
}

bool DemoRun::sendCommand() {
  if (!opens(job_.command->settings)) return false;
  sendUserBytes(line_, job_.command->bytes);
  return line_.pause(Millis(20));
}

bool DemoRun::download() {
  const platform::Instant began = line_.loop().now();
  if (!connect() || !readModel() || !erase() || !line_.pause(Millis(100), engine::why::kBeforeData)) return false;
  c_.enter(engine::Stage::Program);
  sends_ =
      engine::planSends(c_.record(), {}, job_.job.model.blockSize, job_.job.frameSize, job_.job.code, job_.job.data);
  DemoDataFrames frames(line_);
  engine::Programming programming(c_);
  const bool programmed = programming.program(frames, sends_, 0);
  c_.view().progressDone();
  if (!programmed) return false;
  // Said twice, each time with room for an answer: one of them may get lost.
  for (int i = 0; i < 2; ++i)
    if (line_.ask(kDemoFinish)) continue;
  c_.say("Program OK.");
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(line_.loop().now() - began).count();
  c_.say("Verify  OK ( Total: " + platform::minutesText(seconds) + " )");
  return true;
}

bool DemoRun::fails(int beeps, const std::string& words) {
  return line_.stopped() ? false : c_.failNow(beeps, words);
}

bool DemoRun::connect() {
  c_.view().clearText();
  c_.view().clearChipLabels();  // they tell of a chip that was there before
  if (!opens(job_.settings)) return false;
  c_.say("We are trying to connect to target MCU ... ");
  line_.clearReceiveState();
  c_.enter(engine::Stage::Wait);
  if (!line_.pollUntilReply(kDemoConnect, pollPaceOf(job_.settings)) || !line_.ask(kDemoConnect))
    return fails(1, "Connection is failed. ");
  c_.enter(engine::Stage::Identify);
  c_.say("Connection is OK...");
  return true;
}

bool DemoRun::readModel() {
  c_.say("We are reading MCU Firmware Version ...");
  std::optional<DemoReply> reply;
  for (int i = 0; i < kRounds && !reply && !line_.stopped(); ++i) {
    reply = line_.ask(kDemoReadModel);
    if (reply && reply->size() < kShortestModelReply) reply.reset();
  }
  if (!reply || line_.stopped()) return fails(0, "Reading MCU Option failed. ");
  const auto number = static_cast<std::uint16_t>((*reply)[kModelAt] << 8 | (*reply)[kModelAt + 1]);
  if (demoModelOf(number).code == c_.record().code) return true;
  wrongModel_ = true;
  return c_.fail(3, "MCU Type is incorrect. please select correct MCU type and open the file again.");
}

bool DemoRun::erase() {
  c_.enter(engine::Stage::Erase);
  c_.say("We are erasing MCU flash...");
  bool answered = false;
  for (int i = 0; i < kRounds && !answered && !line_.stopped(); ++i) answered = line_.ask(kDemoErase).has_value();
  return (answered && !line_.stopped()) || fails(1, "Erasing MCU flash failed. ");
}

// A stop that came after the last block has not harmed the chip, which carries its image and its number.
engine::Outcome DemoRun::end(bool good) {
  if (line_.stopped() && c_.words().empty()) c_.tellStop();
  engine::Outcome outcome = c_.outcome(engine::RunKind::Demo, good, engine::leftOutOf(sends_, job_.job));
  outcome.wrongModel = wrongModel_;
  line_.close();
  c_.view().lamp(false);
  return outcome;
}

}  // namespace kvr::userpath
