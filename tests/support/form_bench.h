// The whole program on a bench: the main form in the virtual world, with a simulated chip on its wire.
#pragma once

#include <memory>
#include <string>

#include "platform/virtual/plain_codec.h"
#include "shell/main_form.h"
#include "sim/chip.h"
#include "tests/support/virtual_world.h"

namespace kvr::support {

class FormBench : public VirtualWorld {
 public:
  explicit FormBench(sim::WireConfig wireConfig = {});

  void select(const std::string& model);
  // Through a file, the button and its dialog.
  void loadCode(const platform::Bytes& bytes);
  void loadData(const platform::Bytes& bytes);
  sim::Chip& insertChip(const sim::ChipConfig& config, platform::Millis after = platform::Millis(100));
  sim::Chip& insertChip(std::uint64_t seed = 1);  // an ordinary chip of the selected model
  // Presses a button and lets the run come to its end. False: it still runs after an hour.
  bool press(platform::Button& button);
  bool passed() const { return form.download.verdict.value() == engine::VerdictKind::Pass; }
  const std::string& pane() const { return form.main.textMsg.text(); }

  platform::PlainCodec codec;
  std::unique_ptr<sim::Chip> chip;
  shell::MainForm form{world, codec};
};

}  // namespace kvr::support
