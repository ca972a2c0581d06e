#include "tests/support/form_bench.h"

namespace kvr::support {

FormBench::FormBench(sim::WireConfig wireConfig, records::RecordDesk* desk)
    : VirtualWorld(std::move(wireConfig)), form(world, codec, desk ? *desk : absent) {
  form.load();
}

void FormBench::select(const std::string& model) {
  form.main.txtDevice.setText(model);
  form.picker.applyDevice();
}

void FormBench::open(const char* path, const platform::Bytes& bytes, platform::Button& button) {
  files.put(path, bytes);
  dialogs.paths.push_back(path);
  button.press();
}

sim::Chip& FormBench::insertChip(std::uint64_t seed) {
  return insertChip(sim::configFor(*catalogue::findByName(form.model.record.name), 11059200, seed));
}

}  // namespace kvr::support
