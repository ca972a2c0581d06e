// The engine on a bench: the virtual world, a simulated chip on its wire, and a user who presses buttons.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "download/download_room.h"
#include "engine/tracing_view.h"
#include "images/image_room.h"
#include "options/options_room.h"
#include "tests/support/virtual_world.h"

namespace kvr::support {

using platform::Instant;
using platform::Millis;

class EngineBench : public VirtualWorld {
 public:
  explicit EngineBench(sim::WireConfig wireConfig = {});
  EngineBench(const EngineBench&) = delete;
  EngineBench& operator=(const EngineBench&) = delete;

  // --- Setting up. ---
  void select(std::string_view model);
  void bauds(const std::string& minimum, const std::string& maximum);
  // Puts an ordinary chip of the selected model on the wire; it powers up `after` from now.
  sim::Chip& insertChip(Millis after = Millis(100), std::uint64_t seed = 1, double clockHz = 11059200);
  using VirtualWorld::insertChip;
  // Random bytes over the whole area (or its first `size` bytes), as a file would bring them.
  void loadCode(std::uint64_t seed, std::int32_t size = 0);
  void loadData(std::uint64_t seed, std::int32_t size = 0);

  // --- Doing. Each returns when what was pressed has come to its end. At the limit the user presses Stop; false: that
  // was needed. A sequence that does not end even then hangs, and the test with it fails by `hung`. ---
  bool press(platform::Button& button, Millis limit = Millis(600000));
  bool program(Millis limit = Millis(600000)) { return press(panel.comDownload[0], limit); }
  void pressAfter(Millis time, platform::Button& button);

  // --- Looking. ---
  const std::string& text() const { return textMsg.text(); }
  bool says(std::string_view words) const { return text().find(words) != std::string::npos; }
  int lines(std::string_view line) const;  // how often the pane has this whole line
  bool hung = false;
  bool passed() const { return panel.verdict.value() == download::VerdictKind::Pass || passedInPart(); }
  bool passedInPart() const { return panel.verdict.value() == download::VerdictKind::PassInPart; }
  // The option bytes that the panel's choices make, with what the last run measured.
  options::OptionBytes wanted() const;
  const engine::Outcome& outcome() const { return records.back().outcome; }
  // What the images say that the chip must hold; empty: it does. Otherwise the first address that differs.
  std::string flashDifference() const;
  // Lock free, port closed, buttons as at rest: an operator can go on. Otherwise what is not so.
  std::string notAtRest() const;

  platform::TextBox textMsg{"textMsg"};
  platform::ComboBox combCommPort{"combCommPort"};
  platform::Lamp imgOpen_sys{"imgOpen_sys"};
  platform::ProgressBar ProgressBar1{"ProgressBar1"};
  platform::Label labKbyte{"labKbyte"};
  platform::Label stepFrame{"FrameX", 3};
  download::DownloadPanel panel;
  options::OptionPanel optionPanel;
  catalogue::SelectedModel model;
  platform::UiLock lock;
  platform::Activity activity;
  options::OptionsRoom options;
  images::ImageRoom imageRoom;
  images::ImageState& images = imageRoom.state;
  engine::RunStop stop;
  download::MainControls controls{textMsg, combCommPort, imgOpen_sys, ProgressBar1, labKbyte};
  engine::RunTracer tracer{loop, clock, link};
  engine::PortLease lease;
  download::DisplayPanel display;
  engine::TracingView tracedView{display, tracer.recorder()};
  download::TraceRoom traces{world, tracer, lock, panel, textMsg};
  download::ResultsRoom results;
  download::RunRoom runs;
  download::JobPanels jobPanels{model, panel, combCommPort, options, imageRoom};
  download::NoBooksDesk noBooks;
  download::DownloadRoom downloads;
  std::vector<download::RunRecord> records;
  bool terminalWantsPort = false;
  std::function<void()> takePort;
};

std::vector<std::uint8_t> randomBytes(std::uint64_t seed, std::size_t count);

}  // namespace kvr::support
