#include "tests/support/form_bench.h"

namespace kvr::support {

FormBench::FormBench(sim::WireConfig wireConfig) : VirtualWorld(std::move(wireConfig)) {
  form.load();
}

void FormBench::select(const std::string& model) {
  form.main.txtDevice.setText(model);
  form.picker.applyDevice();
}

void FormBench::loadCode(const platform::Bytes& bytes) {
  files.put("/image.bin", bytes);
  dialogs.paths.push_back("/image.bin");
  form.images.panel.comLoadFile.press();
}

void FormBench::loadData(const platform::Bytes& bytes) {
  files.put("/data.bin", bytes);
  dialogs.paths.push_back("/data.bin");
  form.images.panel.comLoadDataFile.press();
}

sim::Chip& FormBench::insertChip(const sim::ChipConfig& config, platform::Millis after) {
  wire.connect(nullptr);
  chip = std::make_unique<sim::Chip>(config);
  wire.connect(chip.get());
  chip->powerOn((loop.now() + after).count());
  return *chip;
}

sim::Chip& FormBench::insertChip(std::uint64_t seed) {
  return insertChip(sim::configFor(*catalogue::findByName(form.model.record.name), 11059200, seed));
}

bool FormBench::press(platform::Button& button) {
  bool done = false;
  loop.post([&] {
    button.press();
    done = true;
  });
  return loop.runUntil([&] { return done; }, std::chrono::hours(1));
}

}  // namespace kvr::support
