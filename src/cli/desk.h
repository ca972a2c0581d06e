// What a command works with: the machine's services, its ports, and where it reports.
#pragma once

#include "cli/input.h"
#include "cli/output.h"
#include "cli/ports.h"
#include "cli/stopper.h"
#include "engine/run_tracer.h"
#include "engine/target_link.h"
#include "platform/file_system.h"
#include "platform/text_codec.h"
#include "records/record_desk.h"

namespace kvr::cli {

struct Desk {
  platform::EventLoop& loop;
  platform::FileSystem& files;
  const platform::WallClock& clock;
  const platform::TextCodec& codec;
  Ports& ports;
  engine::PortLease& lease;
  Stopper& stopper;
  engine::RunTracer& tracer;  // under the port of the lease
  Output& out;
  records::RecordDesk& records;
  Input& input;
  bool frames = false;  // to be told as they go

  engine::RunServices services() const { return {loop, clock, lease, stopper.stop}; }
};

// Tells why, and gives the code back: `return fail(desk, ExitCode::File, "...", "...")`.
[[nodiscard]] inline ExitCode fail(const Desk& desk, ExitCode code, std::string_view why, std::string_view next = {}) {
  desk.out.failure(code, why, next);
  return code;
}

}  // namespace kvr::cli
