// A trace as a text file that a person can read. The form is on docs/trace.md.
#pragma once

#include <string>
#include <string_view>

#include "engine/trace.h"

namespace kvr::engine {

inline constexpr std::string_view kTraceTitle = "KVR-ISP trace 1";

std::string traceText(const Trace& trace);

struct ReadTrace {
  Trace trace;
  std::string error;  // with the number of the line; empty: all was understood
};
// Takes any bytes. Lines that begin with "#" and empty ones are passed over, and lines may end with CR LF.
ReadTrace readTrace(std::string_view text);

std::string hexLine(std::span<const std::uint8_t> bytes);  // "46 B9 6A"

}  // namespace kvr::engine
