// The engine on a bench: the virtual world, a simulated chip on its wire, and a person who presses buttons.
#pragma once

#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "engine/session.h"
#include "options/options_room.h"
#include "platform/virtual/virtual_loop.h"
#include "platform/virtual/virtual_world.h"
#include "sim/chip.h"
#include "sim/wire.h"
#include "tests/support/virtual_link.h"

namespace kvr::support {

using platform::Instant;
using platform::Millis;

class EngineBench {
 public:
  explicit EngineBench(sim::WireConfig wireConfig = {});
  EngineBench(const EngineBench&) = delete;
  EngineBench& operator=(const EngineBench&) = delete;

  // --- Setting up. ---
  void select(std::string_view model);
  void bauds(const std::string& minimum, const std::string& maximum);
  // Puts an ordinary chip of the selected model on the wire; it powers up `after` from now.
  sim::Chip& insertChip(Millis after = Millis(100), std::uint64_t seed = 1, double clockHz = 11059200);
  sim::Chip& insertChip(const sim::ChipConfig& config, Millis after = Millis(100));
  // Random bytes over the whole area (or its first `size` bytes), as a file would bring them.
  void loadCode(std::uint64_t seed, std::int32_t size = 0);
  void loadData(std::uint64_t seed, std::int32_t size = 0);

  // --- Doing. Each returns when what was pressed has come to its end. At the limit a person presses Stop; false: that
  // was needed. A sequence that does not end even then hangs, and the test with it fails by `hung`. ---
  bool press(platform::Button& button, Millis limit = Millis(600000));
  bool program(Millis limit = Millis(600000)) { return press(panel.comDownload[0], limit); }
  void pressAfter(Millis time, platform::Button& button);

  // --- Looking. ---
  const std::string& text() const { return textMsg.text(); }
  bool says(std::string_view words) const { return text().find(words) != std::string::npos; }
  bool hung = false;
  bool passed() const { return panel.verdict.value() == engine::VerdictKind::Pass; }
  // What the images say that the chip must hold; empty: it does. Otherwise the first address that differs.
  std::string flashDifference() const;
  // Lock free, port closed, buttons as at rest: an operator can go on. Otherwise what is not so.
  std::string notAtRest() const;

  platform::VirtualLoop loop;
  platform::MemoryStore store;
  platform::MemoryFiles files;
  platform::ScriptedDialogs dialogs{loop};
  platform::VirtualClock clock{loop};
  sim::Wire wire;
  std::unique_ptr<sim::Chip> chip;
  VirtualLink link;
  platform::World world{loop, link, dialogs, store, files, clock};

  platform::TextBox textMsg{"textMsg"};
  platform::ComboBox combCommPort{"combCommPort"};
  platform::Lamp imgOpen_sys{"imgOpen_sys"};
  platform::ProgressBar ProgressBar1{"ProgressBar1"};
  platform::Label labKbyte{"labKbyte"};
  platform::Label stepFrame{"FrameX", 3};
  engine::DownloadPanel panel;
  options::OptionPanel optionPanel;
  catalogue::SelectedModel model;
  platform::UiLock lock;
  options::OptionsRoom options;
  images::ImageState images;
  platform::Activity activity;
  engine::PortLease lease;
  engine::TargetLink target;
  engine::Conversation conversation;
  engine::SessionHooks hooks;
  engine::Session session;
  std::vector<engine::RunRecord> records;
};

std::vector<std::uint8_t> randomBytes(std::uint64_t seed, std::size_t count);

}  // namespace kvr::support
