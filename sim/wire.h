// A serial line between the host and a Device: carries bytes both ways with their true duration, garbles what the ends
// disagree on, and can be told to lose, flip, double, delay or split what it carries.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <random>
#include <span>
#include <vector>

#include "sim/device.h"
#include "sim/wire_faults.h"

namespace sim {

struct WireConfig {
  std::uint64_t seed = 1;  // of garbled bytes and random faults
  Micros adapterLatency =
      0;  // a USB adapter hands bytes over after this time or when `adapterChunk` have come; 0: at once
  int adapterChunk = 62;
  double byteTimeScale = 1;  // 0: bytes take no time at all, only what the device itself takes is left
  int wakeEvery = 1;         // nextDue() names each unit's first byte to the host, then every so many, and its last
  bool keepLog = true;
  std::vector<Fault> faults;  // an explicit plan
  std::optional<RandomFaults> random;
};

class Wire {
 public:
  explicit Wire(WireConfig config = {});
  Wire(const Wire&) = delete;
  Wire& operator=(const Wire&) = delete;

  // Puts another device at the far end, or none. The device must outlive the wire or be taken off before it goes.
  void connect(Device* device);
  Device* device() const { return device_; }

  // --- The host's side. `now` never goes back from call to call. ---

  // False when the adapter is unplugged. Opening an open port changes its settings.
  bool open(const Line& line, Micros now);
  // Bytes that have not begun to leave are lost: a host that wants them out waits for `drainedAt()` first.
  void close(Micros now);
  // The host's settings turn out to have been these for a while: what is still to arrive is read with them.
  void assumeHostLine(const Line& line) { hostLine_ = line; }
  // Stops listening; what was written still leaves. For a port whose closing cannot be held up until all is sent.
  void hangUp(Micros now);
  bool isOpen() const { return open_; }
  const Line& hostLine() const { return hostLine_; }

  // The modem lines; they stay as they are while the port is closed.
  void setLines(const ModemLines& lines, Micros now);
  const ModemLines& lines() const { return lines_; }

  // Queues bytes. One call is one unit for the log and for faults. Nothing happens when the port is closed.
  void write(std::span<const std::uint8_t> bytes, Micros now);
  int pendingOut(Micros now) const;  // bytes not yet sent in full
  Micros drainedAt() const;          // when the last queued byte will have left
  void clearOut(Micros now);         // drops what has not begun to leave

  int available(Micros now);                                          // bytes that have arrived and were not taken
  std::vector<std::uint8_t> take(Micros now, std::size_t limit = 0);  // 0: all of them
  std::vector<std::uint8_t> takeArrived(std::size_t limit = 0);       // by the last advance
  std::vector<std::uint8_t> peek(Micros now);                         // all of them, and leaves them
  void clearIn(Micros now);

  // When something happens next: a byte reaches the host, a unit reaches the device, the device acts.
  std::optional<Micros> nextDue() const;
  void advanceTo(Micros now);

  // --- The tester's side. ---

  void unplug(Micros now);  // closes the port; opening fails until `plug`
  void plug();
  bool plugged() const { return plugged_; }
  const std::vector<Unit>& log() const { return log_; }
  struct LineMove {
    Micros at = 0;
    ModemLines lines;
  };
  const std::vector<LineMove>& lineMoves() const { return lineMoves_; }
  std::size_t unitsCarried() const { return static_cast<std::size_t>(toDevice_.units + toHost_.units); }

 private:
  struct Item {
    Micros end = 0;
    std::uint8_t byte = 0;
    std::uint8_t meant = 0;
    Damage damage = Damage::none;
  };
  struct Burst {
    Line line;
    std::vector<Item> items;
    std::size_t next = 0;
    double startMicros = 0;
  };
  struct Lane {
    std::deque<Burst> bursts;
    double freeAt = 0;  // microseconds, with fraction
    int units = 0;      // counted so far
  };

  double byteTime(const Line& line) const { return line.byteMicros() * config_.byteTimeScale; }
  Micros carry(Direction direction, std::span<const std::uint8_t> bytes, const Line& line, Micros from);
  const Fault* plannedFault(Direction direction, int unit) const;
  std::optional<Fault> chooseFault(Direction direction, int unit, std::size_t size, Micros start);
  Burst layOut(std::span<const std::uint8_t> bytes, const Line& line, double start, const std::optional<Fault>& fault);
  std::optional<Micros> nextStep() const;
  void step(Micros at);
  void reachDevice(Micros at);
  void reachHost(Micros at);
  void flushAdapter();

  WireConfig config_;
  std::mt19937_64 rng_;
  Device* device_ = nullptr;
  bool open_ = false;
  bool plugged_ = true;
  Line hostLine_;
  ModemLines lines_;
  std::vector<LineMove> lineMoves_;
  Lane toDevice_;
  Lane toHost_;
  std::vector<std::uint8_t> held_;  // in the adapter
  Micros heldSince_ = 0;
  std::deque<std::uint8_t> inbox_;  // the host's
  std::vector<Unit> log_;
  Micros quietUntil_ = -1;        // a fault works on until then: late bytes are still to come
  int exchange_ = 0;              // host units so far
  int lastFaultyExchange_ = -10;  // a late byte reaches into the exchange after its own
};

}  // namespace sim
