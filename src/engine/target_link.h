// The line of one run to a chip or an off-line board: frames out, the receiver in, the waits between them, Stop. It
// holds the port for as long as it lives.
//
// A frame on the wire: 46 B9, direction (6A to the target, 68 from it), length (two bytes, the high one 0; counted from
// the direction byte through the end byte), command, payload, sum, 16. The sum runs from the direction byte up to the
// byte before it: its low 8 bits, or its low 16 bits high byte first, or the CRC of board_crc.h, low byte first.
//
// Every wait runs the event loop. A time limit never cuts a frame in two: when it runs out while a frame is arriving,
// the wait goes on to the frame's end, until 50 ms pass without a byte, or for the wire time of 257 bytes at most.
//
// Turn-rounds. After its last byte a chip needs a moment before it listens: at least 1 ms passes until a data frame
// begins, and 10 ms once a chip has shown that it needs them. All other frames leave it 10 ms in every run: they are
// few, and some of them are sent only once.
//
// A port that cannot be opened again in the middle of a run has gone: the user is told once, with the port's own
// message, and Stop is requested, which every wait looks at.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "engine/frames.h"
#include "engine/port_lease.h"
#include "engine/receiver.h"
#include "engine/rest_reasons.h"
#include "engine/run_stop.h"
#include "engine/run_view.h"
#include "engine/turn_round.h"
#include "platform/wall_clock.h"

namespace kvr::engine {

using platform::Millis;

// What every run needs of the machine.
struct RunServices {
  platform::EventLoop& loop;
  const platform::WallClock& clock;
  PortLease& lease;
  RunStop& stop;
};

// What a run did not do: the turn-rounds and the prescribed rests since this was last asked for.
struct Pauses {
  platform::Micros turned{}, rested{};
  std::vector<Rest> longOnes;  // their stage is not known here
};

inline constexpr const char* kPortFailed = "Open COM port failed!";
inline constexpr const char* kPortFailedWhy =
    "The COM port is opened by another Program or the COM port does not exist.";

// Lets the time pass; ends at Stop. False: stopped.
bool pause(const RunServices& services, Millis time);
// The message for a port that has gone.
std::string goneText(const platform::PortError& error);

class TargetLink : public PortHolder {
 public:
  // `port`: COM 1..16. `form`: of all frames, both ways.
  TargetLink(const RunServices& services, RunView& view, int port, SumForm form);
  ~TargetLink() override;
  TargetLink(const TargetLink&) = delete;
  TargetLink& operator=(const TargetLink&) = delete;

  // --- The port. ---
  void setParity(bool on, bool even) { parityOn_ = on, parityEven_ = even; }
  void setParity(bool on) { parityOn_ = on; }
  bool parityOn() const { return parityOn_; }
  [[nodiscard]] platform::PortError setBaud(int baud);  // with the parity that was set; 8 data bits, 1 stop bit
  [[nodiscard]] platform::PortError setBaud(const std::string& baud);
  std::string settings() const { return lease().link().settings(); }
  int currentBaud() const;                                              // of those settings
  [[nodiscard]] platform::PortError open();                             // closes, chooses the port, opens
  [[nodiscard]] platform::PortError open(const std::string& settings);  // the same with settings like "38400,e,8,1"
  // In the middle of a run. False: stopped, or the port has gone.
  [[nodiscard]] bool reopen();  // closes and opens
  [[nodiscard]] bool reopenIfClosed();
  // Closes, sets, opens. A rate that the adapter refuses gives false, too, with the port closed.
  [[nodiscard]] bool changeBaud(int baud);
  [[nodiscard]] bool changeSettings(const std::string& settings);
  void close();
  bool isOpen() const { return lease().link().isOpen(); }
  platform::SerialLink& port() { return lease().link(); }
  void clearQueues();                    // of the port
  void clearReceiveState();              // both queues emptied, nothing received. Every sender calls it first.
  void clearReceived() { rx_.clear(); }  // nothing received; the queues stay

  // --- Sending. ---
  void write(std::span<const std::uint8_t> bytes);
  // One beat of a sync loop: forgets a frame that stopped arriving, and writes unless the last beats still fill the
  // line (below 2400 baud two bytes take longer than a beat).
  void writeSync(std::span<const std::uint8_t> bytes);
  // The same for a frame: the chip is left its turn-round first.
  void writeFrame(std::span<const std::uint8_t> frame);
  // Ahead of a frame: the chip is left its turn-round, and what came in until then is dropped.
  void beginFrame(Millis turnRound = kFullTurnRound);
  // How long a chip is left before a data frame.
  Millis turnRound() const { return turnRound_; }
  void setTurnRound(Millis turnRound) { turnRound_ = turnRound; }
  // A data frame went unanswered, or was answered wrongly: perhaps the chip was not listening yet. After a Stop it
  // means nothing.
  void slowDown() {
    if (!stopped()) turnRound_ = kFullTurnRound;
  }
  // Clears the receive state, writes, and waits for a frame, good or bad, for the limit or for Stop.
  [[nodiscard]] std::optional<Reply> exchange(std::span<const std::uint8_t> frame, Millis limit);
  // The same, to be waited for later with `awaitReply`: what is sent between them goes out after the frame.
  void send(std::span<const std::uint8_t> frame, Millis limit, Millis turnRound = kFullTurnRound);
  [[nodiscard]] std::optional<Reply> awaitReply();
  // For a chip that needs room around a frame: clears the receive state, keeps silent for `lead`, writes, and returns
  // 3 ms after the last bit.
  void sendWithRoom(std::span<const std::uint8_t> frame, Millis lead = Millis(5));
  // The fixed link's short frame, 82 (end of session) or 8A (sync). Opens a closed port for it.
  void sendFixedLinkFrame(std::uint8_t command);
  void endSession();  // 82, then 100 ms

  // --- Waiting. ---
  // A rest that the protocol prescribes; ends early only when the port has gone. `why`: of one that is told.
  void delay(Millis time, std::string_view why = {});
  bool pause(Millis time, std::string_view why = {});  // the same, ends at Stop; false: stopped
  void letPass(Millis time);                           // the same as `delay`, for what the wire itself takes
  Pauses takePauses() { return std::exchange(pauses_, {}); }
  // Until a good frame, Stop or the limit.
  [[nodiscard]] std::optional<Reply> awaitFrame(Millis limit);
  // The same without waiting for the rest of a frame that is arriving when the limit runs out: for loops that send
  // their next beat even while a frame is arriving.
  [[nodiscard]] std::optional<Reply> awaitFrameCut(Millis limit);
  // A good frame that `wanted` takes; others are dropped, and the wait goes on to its limit.
  [[nodiscard]] std::optional<Reply> awaitFrame(Millis limit, const std::function<bool(const Reply&)>& wanted);
  // For an answer that carries no mark of its question. Nothing can answer a frame that is still going out, so what
  // comes until then answers an older one, and is dropped.
  [[nodiscard]] std::optional<Reply> awaitAnswer(Millis limit);
  void drain();  // until all that was written has gone out (at most one second) or Stop
  std::size_t outBytesPending() const { return lease().link().outBytesPending(); }
  bool quiet() const { return rx_.count == 0 && !lease().gathering(); }  // nothing has come since the last clearing

  // Whether frames must begin with the start pair 46 B9.
  void requireStartPair(bool on) { rx_.requireStartPair = on; }
  // When the first byte came of the first good frame; nothing: there was none.
  const std::optional<platform::Instant>& firstAnswerAt() const { return firstAnswerAt_; }
  // The last good frame, whoever waited for it.
  const std::optional<Reply>& lastReply() const { return lastReply_; }

  bool stopped() const { return services_.stop.requested(); }
  const std::string& lostPort() const { return lostPort_; }  // why the port has gone; empty: it has not
  RunView& view() { return view_; }
  platform::EventLoop& loop() { return services_.loop; }
  const platform::WallClock& clock() const { return services_.clock; }

  void bytesWait() override;
  bool answerIsWhole() override;
  void portVanished(const platform::PortError& error) override;

 protected:
  PortLease& lease() { return services_.lease; }
  const PortLease& lease() const { return services_.lease; }
  const RunServices& services() const { return services_; }

 private:
  // While it lives, a whole good frame ends the gathering of the receive event.
  class Awaiting {
   public:
    explicit Awaiting(TargetLink& link) : link_(link) {
      link_.awaiting_ = true;
      link_.lease().look();
    }
    ~Awaiting() { link_.awaiting_ = false; }
    Awaiting(const Awaiting&) = delete;
    Awaiting& operator=(const Awaiting&) = delete;

   private:
    TargetLink& link_;
  };
  bool opened(const platform::PortError& error);
  std::optional<Reply> take();
  bool frameArriving() const;
  Millis drainTime() const;
  void leave(Millis turnRound);
  void noteRest(platform::Instant began, Millis prescribed, std::string_view why);
  void awaitRestOfFrame();

  RunServices services_;
  RunView& view_;
  int port_;
  SumForm form_;
  Receiver rx_;
  std::optional<Reply> lastReply_;
  platform::Instant frameBegan_{0};
  std::optional<platform::Instant> firstAnswerAt_;
  Pauses pauses_;
  bool parityOn_ = false, parityEven_ = false;
  bool awaiting_ = false;  // a wait for an answer is under way: no sync loop, and nothing else is to be sent
  Millis turnRound_ = kFullTurnRound;
  bool badFrame_ = false;       // since the last `send`
  platform::Timer replyTimer_;  // of the last `send`
  std::string lostPort_;
};

}  // namespace kvr::engine
