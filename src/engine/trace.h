// What happened on the line of one run: the bytes of both directions with their times, settings, openings, closings,
// stages and what the user was told. The text form is on docs/trace.md.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/event_loop.h"
#include "platform/serial_link.h"

namespace kvr::engine {

struct TraceEvent {
  enum class Kind {
    Settings,  // `text`: "9600,n,8,1"; a `why` says that the port refused them
    Open,      // `text`: the device, or with a `why` the message of the failure
    Close,
    Dtr,       // `text`: "on" or "off"
    Rts,       // the same
    Sent,      // `bytes` went to the target
    Received,  // `bytes` came from it; the first at `at`, the last at `last`
    Gone,      // the open port went away; `text`: the message
    Stage,     // `text`: the stage that the run enters
    Said,      // `text`: a line for the user
    Stop,      // the user's wish, or what follows from a port that has gone
    Thinned,   // events that were left out here; `times`: how many; `text`: the bytes in them, decimal
  };
  using Micros = platform::Micros;
  using Failure = platform::PortError::Kind;

  Kind kind = Kind::Sent;
  Micros at{0};    // since the run began
  Micros last{0};  // of what lasts or repeats: its end; else `at`
  int times = 1;   // Sent: the same bytes, so many times in a row
  std::string text;
  std::vector<std::uint8_t> bytes;
  Failure why = Failure::None;
  bool operator==(const TraceEvent&) const = default;
};

struct TraceField {
  std::string key;  // without a colon
  std::string value;
  bool operator==(const TraceField&) const = default;
};
using TraceFields = std::vector<TraceField>;

struct Trace {
  TraceFields head;  // what run it was, its job, how it ended
  std::vector<TraceEvent> events;
  bool operator==(const Trace&) const = default;

  // Empty: there is no such field.
  const std::string& field(std::string_view key) const;
  bool empty() const { return head.empty() && events.empty(); }
};

}  // namespace kvr::engine
