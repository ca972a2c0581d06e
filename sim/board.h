// The off-line programmer board's own firmware as it is being loaded: wake frame, polls, erase, pages, the second
// stage. All its frames carry a CRC. Afterwards it programs chips by itself (board_job.h).
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sim/board_job.h"
#include "sim/chip_frames.h"
#include "sim/deafness.h"
#include "sim/device.h"
#include "sim/journal.h"
#include "sim/schedule.h"

namespace sim {

struct PageFailure {
  int page = -1;  // address / 512, in the order of its stage
  int times = 0;
  bool silently = false;
};

struct BoardConfig {
  int version = 0x17;          // its two digits are read as a decimal number
  std::uint32_t seed = 12345;  // of what its memory holds at first
  bool secondBank = false;
  int capacityKb = 64;
  Micros turnaround = 20;
  Micros erase = 900 * kMillisecond;
  Micros eraseTail = 250 * kMillisecond;
  Micros writeByte = 10;
  Micros frameGap = 30 * kMillisecond;
  Micros deaf = 0;                  // after each answer
  std::map<int, int> silentTo;      // the host's command, how many times
  std::map<int, int> wrongReplyTo;  // answers with another command than it should
  std::map<int, int> badCrcTo;      // answers with a CRC that is wrong
  std::vector<PageFailure> failsPages;
  int diesAfterPages = -1;
};

// Faults by name: "silent", "wrongReply", "badCrc" with "command:times" (hexadecimal command), "failsPage" with
// "page:times[:silent]", "diesAfterPages" with a count, "version" with two digits, "secondBank", "capacity" with KB.
[[nodiscard]] bool setBoardFault(BoardConfig& config, std::string_view name, std::string_view value);

class Board : public Device {
 public:
  explicit Board(BoardConfig config);

  std::optional<Line> line() const override;
  void hear(Micros end, const Heard& heard) override;
  std::optional<Micros> nextDue() const override;
  void advanceTo(Micros now) override;
  void disturbed(Micros at) override;

  void powerOn(Micros at);
  void powerOff(Micros at);

  const BoardConfig& config() const { return config_; }
  BoardMemory& memory() { return memory_; }
  const BoardMemory& memory() const { return memory_; }
  BoardJob job() { return BoardJob(memory_, tailWritten()); }
  bool tailWritten() const { return tailWritten_; }
  bool on() const { return on_; }
  int stage() const { return stage_; }  // 0 nothing erased, 1 main memory, 2 the tail
  int pagesDone() const { return pages_[0] + pages_[1]; }
  int loads() const { return loads_; }  // images that were written to their last page
  int polls() const { return polls_; }
  int wakes() const { return wakes_; }
  const Journal& journal() const { return journal_; }
  const std::vector<Note>& violations() const { return journal_.violations(); }

 private:
  struct Window {
    std::int64_t first = 0, last = 0;
  };
  void dispatch(Micros at, const HostFrame& frame, const Line& line);
  void onPoll(Micros at, const HostFrame& frame);
  void onErase(Micros at, int stage);
  void onWrite(Micros at, const HostFrame& frame);
  bool checkShort(Micros at, const HostFrame& frame, int argument);
  bool checkWrite(Micros at, const HostFrame& frame);
  bool pageFails(Micros at, int page);
  bool isLastStage() const;
  void store(std::int64_t address, std::span<const std::uint8_t> data);
  Window window() const;
  int decimalVersion() const;
  void answer(Micros at, int request, int reply, const Bytes& payload);
  void judge(bool good, Micros at, const std::string& text);

  BoardConfig config_;
  BoardMemory memory_;
  Journal journal_;
  FrameReader reader_;
  Schedule schedule_;
  std::map<int, int> pageFailures_;
  bool on_ = false;
  bool tailWritten_ = false;
  bool disturbed_ = false;
  int disturbances_ = 0;
  Micros busyUntil_ = 0;
  Deafness deafness_;
  int stage_ = 0;
  int polls_ = 0, wakes_ = 0, loads_ = 0;
  int pages_[2] = {0, 0};
  std::int64_t pageStart_ = -1, nextAddress_ = -1;
  bool pageFailed_ = false;                                      // what comes next must say that it repeats
  std::optional<std::pair<int, std::pair<int, int>>> identity_;  // family and model code of the first short frame
};

}  // namespace sim
