// What sits at the far end of a serial line, as the wire sees it. Simulated time is a count of microseconds from an
// arbitrary start; nothing here knows a real clock.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>

namespace sim {

using Micros = std::int64_t;

constexpr Micros kMillisecond = 1000;
constexpr Micros kSecond = 1000 * kMillisecond;

// How one end has set its UART.
struct Line {
  int baud = 9600;
  char parity = 'n';  // 'n', 'e' or 'o'
  int dataBits = 8;   // 5..8
  double stopBits = 1;

  double byteMicros() const { return (1 + dataBits + (parity == 'n' ? 0 : 1) + stopBits) * 1e6 / baud; }
  bool operator==(const Line&) const = default;
};

// True when one end can read what the other sends: a UART samples in the middle of a bit, so a few percent of rate
// pass.
bool canRead(const Line& listener, const Line& speaker);

enum class Damage {
  none,
  byWire,    // lost, flipped or moved on the way: neither end is at fault
  wrongLine  // the two ends are set differently, so `byte` is nonsense
};

// One byte as it reaches the listener.
struct Heard {
  std::uint8_t byte = 0;   // what the UART hands over
  std::uint8_t meant = 0;  // what the speaker sent: only for judging the speaker, never to act upon
  Damage damage = Damage::none;
  Line line;  // how the speaker is set (a listener that measures bits learns it from this)
};

// The adapter's outputs beside the data: true is set (asserted), whatever level the adapter makes of it.
struct ModemLines {
  bool dtr = false;
  bool rts = false;
  bool operator==(const ModemLines&) const = default;
};

class Device {
 public:
  virtual ~Device() = default;

  // What its UART is set to now; nothing when it measures whatever comes and so garbles nothing.
  virtual std::optional<Line> line() const = 0;

  // A byte has arrived in full at `end`. Never called with a time before an earlier call's.
  virtual void hear(Micros end, const Heard& heard) = 0;

  // When it next does something by itself; nothing when it only waits for bytes.
  virtual std::optional<Micros> nextDue() const = 0;

  // Does all that is due up to and including `now`.
  virtual void advanceTo(Micros now) = 0;

  // The wire tampers with the conversation in either direction, until `at`: what the host does until then and next may
  // look odd through nobody's mistake.
  virtual void disturbed(Micros /*at*/) {}

  // The adapter's lines are like this from `at` on: at the connection to the wire, and at every change.
  virtual void linesMoved(Micros /*at*/, const ModemLines& /*lines*/) {}

  // Set by the wire: the device starts to send these bytes at `start`, with these line settings. Returns when the last
  // bit will have left.
  std::function<Micros(Micros start, const Line& as, std::span<const std::uint8_t> bytes)> say;
};

}  // namespace sim
