#include "offline/board_connection.h"

#include "offline/board_frames.h"
#include "platform/text.h"

namespace kvr::offline {
namespace {

using engine::Millis;

constexpr int kBaud = 115200;
constexpr std::uint8_t kPoll = 0x80;
constexpr std::uint8_t kReadVersion = 0x0C;
constexpr std::uint8_t kReadMemory = 0x0E;
constexpr int kWaitingRounds = 20001;  // 67 minutes for the operator to power the board up
constexpr int kSettlingFrames = 11;    // answers in a row that show a board which runs steadily
constexpr int kSettlingRounds = 201;
constexpr int kQueryRounds = 4;

std::string waitedText(platform::Instant waited) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(waited).count();
  return "\nWaiting for the board: " + platform::minutesText(seconds);
}

}  // namespace

engine::Bytes BoardConnection::shortFrame(std::uint8_t command, std::uint8_t argument) const {
  return engine::buildGenericFrame(c_.record(), command, argument, {}, engine::SumForm::BoardCrc);
}

bool BoardConnection::noAnswer() {
  return c_.fail(0, "Connection failed!");
}

bool BoardConnection::openQuietly() {
  if (link_.setBaud(kBaud) || link_.open()) return false;
  link_.clearQueues();
  return true;
}

bool BoardConnection::wakeBoard() {
  link_.clearReceiveState();
  link_.write(kWakeFrame);
  const bool running = link_.pause(Millis(1000), engine::why::kBoardWakes);
  link_.clearQueues();
  link_.close();
  link_.setParity(false);
  return running;
}

bool BoardConnection::openPort(bool wake) {
  link_.close();
  link_.setParity(wake, true);
  if (!openQuietly()) return c_.failPort(0);
  if (!wake) return true;
  if (!wakeBoard()) return false;
  if (!openQuietly()) return c_.failPort(0);
  return link_.pause(Millis(200), engine::why::kLineAtRest);
}

bool BoardConnection::connectBoard(bool wake) {
  if (!openPort(wake)) {
    if (link_.stopped()) c_.tellStop();
    return false;
  }
  c_.enter(engine::Stage::Wait);
  c_.view().lamp(true);
  link_.clearQueues();
  c_.view().clearText();
  c_.view().append("We are trying to connect to target MCU ... ");
  c_.say("Please turn power on.");
  if (pollBoard(Millis(200), 0xF3)) return true;
  return c_.stopped() ? false : noAnswer();
}

// The port stays open and polled for as long as an operator may need; the pane tells that the tool is alive.
bool BoardConnection::awaitBoard(Millis timeout, std::uint8_t argument) {
  const std::uint8_t pace = 0xAA;
  const platform::Instant begin = link_.loop().now();
  for (int round = 0; round < kWaitingRounds && !link_.stopped(); ++round) {
    link_.send(shortFrame(kPoll, argument), timeout);
    link_.write({&pace, 1});
    if (link_.awaitReply()) return true;
    if (!link_.stopped()) c_.view().appendOver(waitedText(link_.loop().now() - begin));
  }
  return false;
}

std::optional<engine::Reply> BoardConnection::ask(int rounds, std::uint8_t command, Millis timeout,
                                                  std::uint8_t argument) {
  for (int round = 0; round < rounds && !link_.stopped(); ++round)
    if (auto reply = link_.exchange(shortFrame(command, argument), timeout))
      return link_.stopped() ? std::nullopt : reply;
  return std::nullopt;
}

bool BoardConnection::pollBoard(Millis timeout, std::uint8_t argument) {
  if (!awaitBoard(timeout, argument)) return false;
  c_.enter(engine::Stage::Identify);
  for (int i = 0; i < kSettlingFrames; ++i)
    if (!ask(kSettlingRounds, kPoll, timeout, argument)) return false;
  return readVersion();
}

bool BoardConnection::readVersion() {
  facts_.firmwareVersion = "0";
  for (int round = 0; round < kQueryRounds && !link_.stopped(); ++round) {
    const auto reply = link_.exchange(shortFrame(kReadVersion, 0), Millis(3000));
    if (!reply || reply->command() != kReadVersion) continue;
    facts_.firmwareVersion = platform::hexText((*reply)[4], 2);
    c_.say("Version: " + facts_.firmwareVersion.substr(0, 1) + "." + facts_.firmwareVersion.substr(1));
    return !link_.stopped();
  }
  return false;
}

bool BoardConnection::queryBoardInfo() {
  const auto reply = ask(kQueryRounds, kReadMemory, Millis(300), 0);
  if (c_.stopped()) return false;
  if (!reply) return noAnswer();
  if (reply->command() == kReadMemory) {
    facts_.secondBank = (*reply)[4] != 0;
    facts_.capacity = (*reply)[5] * 1024;
  }
  return true;
}

bool BoardConnection::queryBoardVersion() {
  const auto reply = ask(kQueryRounds, kReadVersion, Millis(300), 0);
  if (c_.stopped()) return false;
  return reply || noAnswer();
}

}  // namespace kvr::offline
