// The rooms that a project file speaks to, put together without a window.
#pragma once

#include <random>
#include <string>

#include "options/option_table.h"
#include "platform/text.h"
#include "platform/virtual/plain_codec.h"
#include "project/project_room.h"
#include "tests/support/engine_bench.h"

namespace kvr::project {

class ProjectBench : public support::EngineBench {
 public:
  ProjectBench() {
    registry.addAll(txtDevice);
    images.panel.addTo(registry);
    optionPanel.addTo(registry);
    room.panel.addTo(registry);
    room.applyModel = [this](const std::string& name) { return select(name); };
  }

  bool select(const std::string& name) {
    const auto* record = catalogue::findByName(name);
    if (!record) return false;
    txtDevice.setText(name);
    model = catalogue::describeModel(*record);
    images.showModel();
    images.loader.clearBuffers();
    images.setDataFileControls(catalogue::hasDataFile(*record));
    options.showFamilyPanel();
    return true;
  }

  // Both images as a load would leave them, with bytes of the seed; the data image only where the model takes one.
  void fill(std::mt19937& random, std::size_t size) {
    place(images.state.CodeBuffer, support::randomBytes(random(), size));
    images.state.imageValid = true;
    images.panel.Frame7.setCaption("Program File: /home/me/中文 " + std::to_string(random()) + ".hex");
    images.panel.txtFileCheckSum.setText("00ABCDEH       ");
    if (!catalogue::hasDataFile(model.record)) return;
    const auto space = static_cast<std::size_t>(model.record.dataEnd - model.record.dataStart + 1);
    place(images.state.EepromBuffer, support::randomBytes(random(), space));
    images.panel.txtDataFileCheckSum.setText("0001234H");
  }

  // Every option of the panel as the seed says, one button of each pair.
  void chooseAtRandom(std::mt19937& random) {
    for (const auto& row : options::optionRows(model.traits().panelSlot)) {
      if (row.key != options::kClew && random() % 2 == 0) options.setControlValue(row.key, "1");
    }
    for (const char* list : {"WDT_Prescalar", "RC30K_Divder", "Low_Voltage_detector"}) {
      options.setControlValue(list, std::to_string(random() % 4));
    }
  }

  void place(images::ImageBuffer& buffer, const platform::Bytes& bytes) {
    buffer.put(0, bytes);
    buffer.rangeStart = 0;
    buffer.rangeEnd = buffer.fileEnd = static_cast<std::int32_t>(bytes.size()) - 1;
    buffer.loaded = true;
  }

  // All that a project keeps but the images' bytes, line by line.
  std::string look() const {
    std::string text = txtDevice.text() + " is " + std::string(model.record.name) + ", valid " +
                       std::to_string(images.state.imageValid);
    for (const auto& row : options::optionRows(options::kCommonSlot)) {
      const auto* control = registry.find(row.control, row.index);
      text += "\n" + std::string(row.key) + " " + platform::trim(control->property(row.property));
    }
    for (const auto& row : options::optionRows(model.traits().panelSlot)) {
      if (row.key != options::kClew) text += "\n" + std::string(row.key) + " " + options.controlValue(row.key);
    }
    return text;
  }
  static platform::Bytes kept(const images::ImageBuffer& buffer) {
    return {buffer.bytes().begin(), buffer.bytes().begin() + buffer.rangeEnd + 1};
  }

  std::string lastMessage() const { return dialogs.shown.empty() ? std::string() : dialogs.shown.back().text; }
  std::string fileText(const std::string& path) const {
    const auto& bytes = files.files.at(path).bytes;
    return {bytes.begin(), bytes.end()};
  }
  void save(const std::string& path) {
    dialogs.paths.push_back(path);
    room.panel.comSaveBatchFile.press();
  }

  images::ImageRoom& images = imageRoom;
  platform::PlainCodec codec;
  platform::ControlRegistry registry;
  platform::TextBox txtDevice{"txtDevice"};
  ProjectRoom room{{world, codec, registry, model, images, options, lock, activity}};
};

}  // namespace kvr::project
