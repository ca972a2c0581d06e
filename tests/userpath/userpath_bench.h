// The engine's bench with the two pages of the user's own program.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "sim/demo_firmware.h"
#include "tests/support/engine_bench.h"
#include "userpath/demo_room.h"
#include "userpath/trigger_room.h"

namespace kvr::userpath {

using platform::Millis;
using Bytes = std::vector<std::uint8_t>;

struct UserPathBench : support::EngineBench {
  explicit UserPathBench(sim::WireConfig wireConfig = {}) : EngineBench(std::move(wireConfig)) {
    select("Cedar-H20R");
    lock.set(kvr::platform::UiLock::kFree);  // the window's start ends with this
  }
  static sim::DemoConfig configFor(std::string_view name) {
    sim::DemoConfig config;
    config.row = catalogue::findByName(name);
    config.downloadLine = {38400, 'e'};
    return config;
  }
  static void setLine(const LineBoxes& boxes, const char* baud, const char* parity, const char* data,
                      const char* stop) {
    boxes.baud.setText(baud);
    boxes.parity.setText(parity);
    boxes.dataBits.setText(data);
    boxes.stopBits.setText(stop);
  }

  kvr::images::ImagePanel& counterPanel = imageRoom.panel;
  UserPathPanel page;
  DemoRoom demo{runs, jobPanels, imageRoom, textMsg, page};
  TriggerRoom trigger{runs, jobPanels, downloads, page};
};

// A chip with the routine is on the wire, and an image is ready for it.
struct DemoBench : UserPathBench {
  explicit DemoBench(const sim::DemoConfig& config = configFor("Cedar-H20R"), sim::WireConfig wireConfig = {})
      : UserPathBench(std::move(wireConfig)), firmware(config) {
    wire.connect(&firmware);
    firmware.powerOn(loop.now().count());
    loadCode(5, 3000);
  }
  bool holdsCode() const {
    const auto code = images.CodeBuffer.bytes().first(static_cast<std::size_t>(images.CodeBuffer.rangeEnd) + 1);
    return std::equal(code.begin(), code.end(), firmware.memory().bytes().begin());
  }
  sim::DemoFirmware firmware;
};

}  // namespace kvr::userpath
