// The line to a chip or an off-line board: frames out, the receive state machine in, the waits between them, Stop.
//
// A frame on the wire: 46 B9, direction (6A to the target, 68 from it), length (two bytes, the high one 0; counted from
// the direction byte through the end byte), command, payload, sum, 16. `rxBuffer[i]` is wire byte i + 2. The sum runs
// from the direction byte up to the byte before it: its low 8 bits, or its low 16 bits high byte first (`frame2`
// models), or in `boardCrcMode` the CRC of board_crc.h, low byte first.
//
// Every wait runs the event loop. A time limit never cuts a frame in two: when it runs out while a frame is arriving,
// the wait goes on to the frame's end, until 50 ms pass without a byte, or for the wire time of 257 bytes at most.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "catalogue/selected_model.h"
#include "engine/beeper.h"
#include "engine/download_panel.h"
#include "engine/frames.h"
#include "engine/port_lease.h"
#include "engine/receiver.h"
#include "engine/shared_controls.h"
#include "platform/world.h"

namespace kvr::engine {

using platform::Millis;

class TargetLink {
 public:
  TargetLink(platform::World world, PortLease& lease, const catalogue::SelectedModel& model, DownloadPanel& panel,
             SharedControls shared);

  // --- What reception leaves behind (see receiver.h); read by all sequences. ---
  Receiver rx;  // rx.buffer, rx.count, rx.frameOk, rx.frameBad, rx.armed, rx.requireStartPair, rx.boardCrcMode
  std::uint8_t rxByte(int index) const { return rx.buffer[static_cast<std::size_t>(index)]; }
  bool replyExpired = false;
  bool stopRequested = false;
  std::string lostPort;  // why the port vanished in this run; empty while it has not

  // --- The line's settings. ---
  bool linkParityOn = false;
  bool linkParityEven = false;
  std::string connectBaudText;  // first contact, a number text; set by the handshake
  int connectBaud() const;      // the same as a number, 0 when it is none
  int currentBaud() const;      // the head of the port's settings text
  Millis gapTimeoutMs{200};     // kept for the board's sessions
  Millis replyTimeoutMs{800};   // reply limit of block writes to a board
  std::string reportedCode;     // code that the connected target reported; chooses between a model's two codes
  std::function<int()> baseFrequencyMHz;  // 24 or 12, for `maxBaudText`; not connected: 12
  std::function<void(const std::string&)>
      onPortStatus;  // why opening failed, in the port's own words; "" once it is open

  // `cobBaudMax`, capped for an internal oscillator by the base frequency: 57600 at 24 MHz, 38400 at 12 MHz.
  std::string maxBaudText() const;
  platform::PortError setMSCommSettings(const std::string& baudText);  // with the parity that the flags say
  platform::PortError openTargetPort();  // closes, chooses the port of `combCommPort`, opens
  // The same in the middle of a run; does nothing once Stop was pressed.
  platform::PortError reopenTargetPort();
  // Opens a port that has been closed meanwhile, but not once Stop was pressed: a stopped run stays silent.
  platform::PortError reopenIfClosed();
  platform::PortError changeSettings(const std::string& settings);  // close, set, open; nothing once Stop was pressed
  void closeTargetPort();
  void initPortModes();      // empty queues; the modes themselves are those of every SerialLink
  void clearQueues();        // both queues of the port
  void clearReceiveState();  // queues emptied, nothing received; opens nothing. Every sender calls it first.
  bool isOpen() const { return lease_.link().isOpen(); }
  PortLease& lease() { return lease_; }

  // --- Sending. ---
  void write(std::span<const std::uint8_t> bytes);
  // One beat of a sync loop: forgets a frame that stopped arriving, and writes unless the last beats still fill the
  // line (below 2400 baud two bytes take longer than a beat).
  void writeSync(std::span<const std::uint8_t> bytes);
  // The generic short frame: clears the receive state, starts the reply limit, writes. Then `waitReply()`.
  void sendCommandFrame(std::uint8_t command, Millis timeout, std::uint8_t argument);
  // The same for a frame that is built already: a block of data for a board.
  void sendFrame(std::span<const std::uint8_t> frame, Millis timeout);
  bool waitReply();  // until frameOk, frameBad, replyExpired or stopRequested; true: frameOk
  // The fixed link's short frame, 82 (end of session) or 8A (sync). False: another command, or no port; nothing was
  // sent.
  [[nodiscard]] bool sendFixedLinkFrame(std::uint8_t command);
  void endFixedLink();  // 82, then 100 ms

  // --- Waiting. ---
  void delayMs(Millis time);
  // Until frameOk, stopRequested or the limit; true: frameOk. `waitFrameCut` is the same without waiting for the rest
  // of a frame that is arriving: for loops that send on whatever arrives.
  bool waitFrame(Millis limit);
  bool waitFrameCut(Millis limit);
  // The same for an answer that bears no mark of its question. Nothing can answer a frame that is still going out, so
  // what comes until then answers an older one, and is dropped.
  bool waitAnswer(Millis limit);
  void waitDrained();  // until all that was written has gone out (at most one second) or Stop

  // --- Words and sounds. ---
  // A pending stop: one beep, "Operation stopped. ", true.
  bool stopCheck();
  void beeps(int count) { beeper_.beeps(count); }
  void say(const std::string& line) { shared_.textMsg.appendLine(line); }
  std::string timeOfDay() const { return world_.clock.timeOfDay(); }  // "hh:mm:ss"
  platform::World& world() { return world_; }
  SharedControls& shared() { return shared_; }
  DownloadPanel& panel() { return panel_; }
  const catalogue::SelectedModel& model() const { return model_; }

 private:
  bool frameArriving() const;
  Millis drainTime() const;
  void awaitRestOfFrame();
  void vanished(const platform::PortError& error);
  platform::PortError report(platform::PortError error);

  platform::World world_;
  PortLease& lease_;
  const catalogue::SelectedModel& model_;
  DownloadPanel& panel_;
  SharedControls shared_;
  Beeper beeper_;
  platform::Timer replyTimer_;
};

}  // namespace kvr::engine
