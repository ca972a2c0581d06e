// The whole program on a bench: the main form in the virtual world, with a simulated chip on its wire.
#pragma once

#include <string>

#include "platform/virtual/plain_codec.h"
#include "shell/main_form.h"
#include "tests/support/absent_records.h"
#include "tests/support/virtual_world.h"

namespace kvr::support {

class FormBench : public VirtualWorld {
 public:
  explicit FormBench(sim::WireConfig wireConfig = {}, records::RecordDesk* desk = nullptr);

  void select(const std::string& model);
  // Through a file, the button and its dialog.
  void loadCode(const platform::Bytes& bytes) { open("/image.bin", bytes, form.images.panel.comLoadFile); }
  void loadData(const platform::Bytes& bytes) { open("/data.bin", bytes, form.images.panel.comLoadDataFile); }
  using VirtualWorld::insertChip;
  sim::Chip& insertChip(std::uint64_t seed = 1);  // an ordinary chip of the selected model
  bool passed() const { return form.download.verdict.value() == download::VerdictKind::Pass; }
  const std::string& pane() const { return form.main.textMsg.text(); }

  platform::PlainCodec codec;
  AbsentRecords absent;
  shell::MainForm form;

 private:
  void open(const char* path, const platform::Bytes& bytes, platform::Button& button);
};

}  // namespace kvr::support
