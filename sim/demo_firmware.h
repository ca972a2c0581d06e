// A user's program that carries a download routine of its own: frames 5A A5, no power cycle, one fixed line setting. A
// command of the user, at settings of its own, makes the running program jump into the routine.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sim/chip_config.h"
#include "sim/chip_frames.h"
#include "sim/device.h"
#include "sim/flash_memory.h"
#include "sim/journal.h"
#include "sim/schedule.h"

namespace sim {

struct DemoConfig {
  const McuRecord* row = nullptr;
  int modelNumber = 0;  // what it says it is; 0: by the row's name
  std::uint64_t seed = 1;
  Line downloadLine{115200, 'n'};
  Line commandLine{9600, 'n'};
  Bytes command;                // empty: the routine listens from the start
  bool leavesOnFinish = false;  // the finish frame starts the new program, else the routine listens on
  Micros turnaround = 20;
  Micros programByte = 55;
  Micros erase = 120 * kMillisecond;
  Micros frameGap = 30 * kMillisecond;
  std::map<int, int> silentTo;  // command, how many times
  std::map<int, int> badSumTo;  // answers with a frame whose sum is wrong
  std::vector<BlockFailure> failsBlocks;
  int diesAfterBlocks = -1;
};

// The number that a model's routine gives, 0 for one that has none.
int demoModelNumber(std::string_view model);

// "silent" and "badSum" with "command:times" (hexadecimal command), "failsBlock" with "block:times[:silent]",
// "diesAfterBlocks", "modelNumber" (hexadecimal), "leavesOnFinish".
[[nodiscard]] bool setDemoFault(DemoConfig& config, std::string_view name, std::string_view value);

class DemoFirmware : public Device {
 public:
  explicit DemoFirmware(DemoConfig config);
  DemoFirmware(const DemoFirmware&) = delete;
  DemoFirmware& operator=(const DemoFirmware&) = delete;

  std::optional<Line> line() const override;
  void hear(Micros end, const Heard& heard) override;
  std::optional<Micros> nextDue() const override;
  void advanceTo(Micros now) override;
  void disturbed(Micros at) override;

  void powerOn(Micros at);
  void powerOff(Micros at);

  const McuRecord& row() const { return *config_.row; }
  const FlashMemory& memory() const { return flash_; }
  bool on() const { return on_; }
  bool inRoutine() const { return inRoutine_; }
  int connects() const { return connects_; }
  int erases() const { return erases_; }
  int finishes() const { return finishes_; }  // frames B1
  int rounds() const { return rounds_; }      // downloads that were finished
  int commands() const { return commands_; }  // times the user's command was heard
  int dataFrames() const { return dataFrames_; }
  const Journal& journal() const { return journal_; }
  const std::vector<Note>& violations() const { return journal_.violations(); }

 private:
  void hearCommand(Micros at, std::uint8_t byte);
  void take(Micros at, const Heard& heard);
  void dispatch(Micros at, const Bytes& frame);
  void onErase(Micros at);
  void onData(Micros at, const Bytes& frame);
  bool checkData(Micros at, const Bytes& frame);
  bool blockFails(Micros at, int block, std::int64_t address, int sum);
  void onFinish(Micros at);
  void answer(Micros at, int command, const Bytes& body);
  void judge(bool good, Micros at, const std::string& text);

  DemoConfig config_;
  FlashMemory flash_;
  Journal journal_;
  Schedule schedule_;
  std::map<int, int> failuresLeft_;
  Bytes heard_;  // of the frame in hand, or of the command
  Bytes wrongLine_;
  Micros lastHeard_ = 0;
  Micros busyUntil_ = 0;
  bool damaged_ = false, disturbed_ = false;
  int disturbances_ = 0;
  bool on_ = false, inRoutine_ = false, connected_ = false, erased_ = false, programmed_ = false;
  std::int64_t lastBlock_ = -1, blockStart_ = -1;
  int connects_ = 0, erases_ = 0, finishes_ = 0, rounds_ = 0, commands_ = 0, dataFrames_ = 0, blocks_ = 0;
};

}  // namespace sim
