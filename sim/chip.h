// The boot firmware of a chip of any family, from the chip's point of view: it decodes every byte by itself, answers as
// such a chip does, keeps what it was given, and notes down what the host does wrong.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "sim/application.h"
#include "sim/chip_config.h"
#include "sim/chip_frames.h"
#include "sim/deafness.h"
#include "sim/device.h"
#include "sim/flash_memory.h"
#include "sim/journal.h"
#include "sim/rc_oscillator.h"
#include "sim/schedule.h"

namespace sim {

enum class ChipState {
  off,
  syncing,      // boot firmware listens for sync bytes
  greeted,      // pulse sync: the first step is answered, the measured pulses are to come
  session,      // has told who it is
  application,  // has left the boot firmware
};
std::string_view nameOf(ChipState state);

// A setting of the internal oscillator: band and coarse step, fine step.
struct RcPoint {
  std::uint8_t code = 0, fine = 0;
};

inline constexpr double kClockTolerance = 0.01;  // the host knows the clock only from counts

class Chip : public Device {
 public:
  explicit Chip(ChipConfig config);
  Chip(const Chip&) = delete;
  Chip& operator=(const Chip&) = delete;

  // --- Device ---
  std::optional<Line> line() const override;
  void hear(Micros end, const Heard& heard) override;
  std::optional<Micros> nextDue() const override;
  void advanceTo(Micros now) override;
  void disturbed(Micros at) override;
  void linesMoved(Micros at, const ModemLines& lines) override;

  // --- What happens to it ---
  void powerOn(Micros at);  // from then on boot firmware listens; may lie in the future
  void powerOff(Micros at);
  // What runs when it leaves its boot firmware, by release or by running out of patience; nothing runs unless set.
  void setApplication(std::unique_ptr<Application> application);
  Application* application() { return application_.get(); }
  void runApplication(Micros at);           // as if nobody had called: leaves the boot firmware at that time
  ChipConfig& config() { return config_; }  // times and faults may be changed between sessions

  // --- What it holds ---
  const McuRecord& row() const { return *config_.row; }
  ChipState state() const { return state_; }
  const FlashMemory& memory() const { return flash_; }
  std::span<const std::uint8_t> flash() const { return flash_.bytes(); }
  const OptionBytes& options() const { return options_; }  // by their index in the family's own numbering, 0..15
  const Journal& journal() const { return journal_; }
  const std::vector<Note>& violations() const { return journal_.violations(); }
  std::string violationText() const { return journal_.violationText(); }
  int dataFrames() const { return dataFrames_; }      // accepted
  int blocksDone() const { return blocksDone_; }      // last frame of a block accepted
  int optionWrites() const { return optionWrites_; }  // option frames accepted
  int erases() const { return erases_; }
  // As named by the last erase frame with addresses, letters from D on.
  std::pair<std::int64_t, std::int64_t> eraseRange() const { return eraseRange_; }
  int sessions() const { return sessions_; }                                // status frames that led to a session
  int releases() const { return releases_; }                                // times that 0x82 ended a session
  std::optional<int> watchdogPin() const { return watchdogPin_; }           // as announced by 0x86
  const Bytes& factoryId() const { return factoryId_; }                     // seven bytes
  std::array<std::uint8_t, 4> statedClock() const { return statedClock_; }  // the clock in the last option frame
  double clockHz() const;                                                   // what it runs at now
  const RcOscillator& oscillator() const { return oscillator_; }
  const std::vector<RcPoint>& measured(int round) const { return rounds_.at(static_cast<std::size_t>(round)); }
  double applicationClockHz() const;  // families 15, 16: what the stored trim makes of the oscillator
  char letter() const { return letter_; }
  int firmware() const { return firmware_; }

 private:
  // chip.cpp: power, hearing, time
  bool applicationRuns() const { return state_ == ChipState::application && application_; }
  void startBoot(Micros at);
  bool supplied(Micros at) const;
  void leaveBoot(Micros at, const std::string& why);
  void enter(ChipState state, Micros at, const std::string& why);
  void hearFrame(Micros at, const HostFrame& frame);
  void dispatch(Micros at, const HostFrame& frame);
  void judgeWrongLine(Micros at, const Heard& heard);
  void judge(bool good, Micros at, const std::string& text);      // a violation unless good
  void judgeFair(bool good, Micros at, const std::string& text);  // the same, but not after a disturbance
  bool missesByte(Micros end, const Heard& heard);
  Micros reply(Micros at, std::uint8_t command, std::span<const std::uint8_t> payload);  // when its last bit has left
  void busy(Micros from, Micros to, const std::string& what);

  // chip_sync.cpp
  void hearSync(Micros at, const Heard& heard);
  void answerSync(Micros at);
  void answerPulses(Micros at);
  void beginMeasuredStep(Micros at);
  void sendStatus(Micros at, std::uint8_t command);
  std::array<std::uint16_t, 8> countsAt(int baud);
  std::uint8_t filler();

  // chip_identity.cpp
  bool asksForStartPair() const { return config_.startPair.value_or(row().extSession); }
  Bytes statusPayload();
  Bytes optionsPayload();
  void placeReportedOptions(Bytes& payload) const;
  bool laterOrder() const;
  bool lateH() const;

  // chip_session.cpp
  void checkGeneric(Micros at, const HostFrame& frame, int argument, bool identityCounts);
  void onPing(Micros at, const HostFrame& frame);
  void onStatusRead(Micros at, const HostFrame& frame);
  void onWatchdog(Micros at, const HostFrame& frame);

  // chip_baud.cpp
  void onBaudTest(Micros at, const HostFrame& frame);
  void onBaudChange(Micros at, const HostFrame& frame);
  std::optional<Line> lineFor(int high, int low) const;
  void checkBaudPayload(Micros at, std::span<const std::uint8_t> p, bool test);
  Micros baudDelay(bool test) const;
  std::pair<int, int> waitClassRange() const;
  void checkTimes(Micros at, std::span<const std::uint8_t> p, bool test);

  // chip_program.cpp
  void onErase(Micros at, const HostFrame& frame);
  void checkErase(Micros at, const HostFrame& frame);
  void checkEraseRange(Micros at, std::int64_t first, std::int64_t last);
  std::pair<std::int64_t, std::int64_t> dataArea() const;
  bool clearsDataNext() const;
  int doErase(const HostFrame& frame);
  void onData(Micros at, const HostFrame& frame);
  void freeDataSector(std::int64_t address);
  bool checkData(Micros at, const HostFrame& frame);
  bool failsNow(int block, std::int64_t address);
  void answerData(Micros at, int sum);
  void onFinish(Micros at, const HostFrame& frame);

  // chip_options.cpp
  void onOptions(Micros at, const HostFrame& frame);
  bool takeOptions(Micros at, const HostFrame& frame, OptionBytes& wanted);
  bool takePathB(Micros at, std::span<const std::uint8_t> p, OptionBytes& wanted);
  bool takePathC(Micros at, const HostFrame& frame, OptionBytes& wanted);
  bool takePathD(Micros at, std::span<const std::uint8_t> p, OptionBytes& wanted);
  void checkClock(Micros at, std::span<const std::uint8_t> four);

  // chip_rc.cpp
  void onMeasure(Micros at, const HostFrame& frame);
  void onRcBaud(Micros at, const HostFrame& frame);
  void hearMeasurePulse(Micros at);
  void judgePulseCount(Micros at);
  int measuredCount(int code, int fine);

  int family() const { return familyOf(row()); }
  bool isFamily(std::initializer_list<int> families) const;
  bool firstGenerationDivider() const { return isFamily({0, 1, 2, 11, 12, 13}); }
  bool pulseFamily() const { return isFamily({15, 16, 17}); }
  bool rcFamily() const { return isFamily({15, 16}); }
  int version10() const { return (firmware_ >> 4) * 10 + (firmware_ & 15); }
  std::int64_t bootStart() const { return static_cast<std::int64_t>(flash_.protectedFrom()); }
  std::string reportedCode() const;

  ChipConfig config_;
  char letter_;
  int firmware_;
  std::uint64_t noise_;  // state of the filler bytes
  FlashMemory flash_;
  OptionBytes options_{};
  RcOscillator oscillator_;
  Bytes factoryId_;
  Bytes statusTail_;  // families 15, 16: seven bytes that the host gives back
  Journal journal_;
  FrameReader reader_;
  Schedule schedule_;
  std::unique_ptr<Application> application_;

  ChipState state_ = ChipState::off;
  std::optional<Micros> cutAt_;  // its supply is switched off since
  Line line_;                    // in greeted and session
  Line firstLine_;
  bool fixedLink_ = false;
  Micros busyUntil_ = -1;
  Deafness deafness_;
  bool disturbed_ = false;
  int disturbances_ = 0;
  Micros disturbedUntil_ = -1;

  int syncHeard_ = 0;
  int pulsesHeard_ = 0;
  Micros lastSync_ = 0;
  Micros statusEnd_ = 0;
  bool pulsesAwaited_ = false;
  std::array<std::uint16_t, 8> counts_{};
  double sessionClock_ = 0;         // as it was when the status frame went out
  Bytes wrongLineRun_;              // what the host meant while it could not be understood
  bool fresh_ = false;              // no good frame has come since the status frame: the host may not have got it
  std::vector<RcPoint> measuring_;  // points still to be answered
  std::array<std::vector<RcPoint>, 2> rounds_;
  int measurePulses_ = 0;                     // heard since the measure frame
  int measureRound_ = 0;                      // 1 and 2 while pulses are counted
  std::uint8_t bootCode_ = 0, bootFine_ = 0;  // families 15, 16: what the oscillator is set to now

  int reload_ = 0;  // of the last change, in counts
  bool changed_ = false, erased_ = false, programming_ = false, finished_ = false, optionsTaken_ = false;
  int testedHigh_ = -1, testedLow_ = -1;
  std::int64_t lastBlock_ = -1, blockStart_ = -1;
  std::pair<std::int64_t, std::int64_t> eraseRange_{-1, -1};
  std::map<int, int> failuresLeft_;
  std::array<std::uint8_t, 4> statedClock_{};

  int dataFrames_ = 0, blocksDone_ = 0, optionWrites_ = 0, erases_ = 0, sessions_ = 0, releases_ = 0, testsRefused_ = 0,
      answered81_ = 0;
  std::optional<int> watchdogPin_;
};

// A chip's boot block begins here: for the models whose application may use all up to it, what the firmware reserves at
// the top; else what the row lists.
std::int64_t bootStartOf(const McuRecord& row, int reservedCode = 0);

}  // namespace sim
