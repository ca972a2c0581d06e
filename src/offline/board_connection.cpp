#include "offline/board_connection.h"

#include <array>
#include <cstdio>

#include "offline/board_frames.h"
#include "platform/text.h"

namespace kvr::offline {
namespace {

using engine::Millis;

constexpr const char* kBaud = "115200";
constexpr std::uint8_t kPoll = 0x80;
constexpr std::uint8_t kReadVersion = 0x0C;
constexpr std::uint8_t kReadMemory = 0x0E;
constexpr int kWaitingRounds = 20001;  // 67 minutes for the operator to power the board up
constexpr int kSettlingFrames = 11;    // answers in a row that show a board which runs steadily
constexpr int kSettlingRounds = 201;
constexpr int kQueryRounds = 4;

std::string waitedText(platform::Instant waited) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(waited).count();
  std::array<char, 48> text{};
  std::snprintf(text.data(), text.size(), "\nWaiting for the board: %02lld:%02lld",
                static_cast<long long>(seconds / 60), static_cast<long long>(seconds % 60));
  return text.data();
}

}  // namespace

bool BoardConnection::pause(Millis time) {
  platform::Timer timer(link_.world().loop);
  timer.start(time);
  while (timer.isActive() && !link_.stopRequested) link_.world().loop.runOnce();
  return !link_.stopRequested;
}

bool BoardConnection::connectionFailed() {
  link_.say("Connection failed!");
  link_.closeTargetPort();
  return false;
}

bool BoardConnection::openFailed() {
  link_.say("Open COM port failed!");
  link_.say("The COM port is opened by another Program or the COM port does not exist.");
  link_.linkParityOn = false;
  return false;
}

bool BoardConnection::openQuietly() {
  if (link_.setMSCommSettings(kBaud)) return false;
  if (link_.openTargetPort()) return false;
  link_.clearQueues();
  return true;
}

bool BoardConnection::wakeBoard() {
  link_.clearReceiveState();
  link_.write(kWakeFrame);
  const bool running = pause(Millis(1000));
  link_.clearQueues();
  link_.closeTargetPort();
  link_.linkParityOn = false;
  return running;
}

bool BoardConnection::openPort(bool wake) {
  link_.closeTargetPort();
  link_.linkParityOn = wake;
  if (wake) link_.linkParityEven = true;
  if (!openQuietly()) return openFailed();
  if (!wake) return true;
  if (!wakeBoard()) return false;
  if (!openQuietly()) return openFailed();
  return pause(Millis(200));
}

bool BoardConnection::connectBoard(bool wake) {
  if (!openPort(wake)) {
    link_.stopCheck();
    return false;
  }
  link_.shared().imgOpen_sys.setOn(true);
  link_.initPortModes();
  link_.shared().textMsg.setText("We are trying to connect to target MCU ... \nPlease turn power on.");
  link_.rx.armed = true;
  if (pollBoard(Millis(200), 0xF3)) return true;
  if (link_.stopCheck()) return false;
  return connectionFailed();
}

// The port stays open and polled for as long as an operator may need; the pane tells that the tool is alive.
bool BoardConnection::awaitBoard(Millis timeout, std::uint8_t argument) {
  const std::uint8_t pace = 0xAA;
  platform::TextBox& pane = link_.shared().textMsg;
  const std::string head = pane.text();
  const platform::Instant begin = link_.world().loop.now();
  for (int round = 0; round < kWaitingRounds && !link_.stopRequested; ++round) {
    link_.sendCommandFrame(kPoll, timeout, argument);
    link_.write({&pace, 1});
    if (link_.waitReply()) return true;
    if (!link_.stopRequested) pane.setText(head + waitedText(link_.world().loop.now() - begin));
  }
  return false;
}

bool BoardConnection::askUntilFrame(int rounds, std::uint8_t command, Millis timeout, std::uint8_t argument) {
  for (int round = 0; round < rounds && !link_.stopRequested; ++round) {
    link_.sendCommandFrame(command, timeout, argument);
    if (link_.waitReply()) return !link_.stopRequested;
  }
  return false;
}

bool BoardConnection::pollBoard(Millis timeout, std::uint8_t argument) {
  if (!awaitBoard(timeout, argument)) return false;
  for (int i = 0; i < kSettlingFrames; ++i)
    if (!askUntilFrame(kSettlingRounds, kPoll, timeout, argument)) return false;
  return readVersion();
}

bool BoardConnection::readVersion() {
  facts_.firmwareVersion = "0";
  for (int round = 0; round < kQueryRounds && !link_.stopRequested; ++round) {
    link_.sendCommandFrame(kReadVersion, Millis(3000), 0);
    if (!link_.waitReply() || link_.rxByte(3) != kReadVersion) continue;
    facts_.firmwareVersion = platform::hexText(link_.rxByte(4), 2);
    link_.say("Version: " + facts_.firmwareVersion.substr(0, 1) + "." + facts_.firmwareVersion.substr(1));
    return !link_.stopRequested;
  }
  return false;
}

bool BoardConnection::queryBoardInfo() {
  const bool answered = askUntilFrame(kQueryRounds, kReadMemory, Millis(300), 0);
  if (link_.stopCheck()) return false;
  if (!answered) return connectionFailed();
  if (link_.rxByte(3) == kReadMemory) {
    facts_.secondBank = link_.rxByte(4) != 0;
    facts_.capacity = link_.rxByte(5) * 1024;
  }
  return true;
}

bool BoardConnection::queryBoardVersion() {
  const bool answered = askUntilFrame(kQueryRounds, kReadVersion, Millis(300), 0);
  if (link_.stopCheck()) return false;
  return answered || connectionFailed();
}

}  // namespace kvr::offline
