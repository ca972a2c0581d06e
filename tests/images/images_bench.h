// The images' room with a model selected and nothing loaded: in the virtual world, or on a loop of the real one.
#pragma once

#include <string>

#include "catalogue/selected_model.h"
#include "images/image_room.h"
#include "tests/support/hex_record.h"
#include "tests/support/memory_services.h"
#include "tests/support/no_link.h"

namespace kvr::images {

template <class Loop>
struct ImagesBenchOn : support::MemoryServices<Loop> {
  using Services = support::MemoryServices<Loop>;
  using Services::dialogs, Services::files, Services::store;

  // `disk`: the settings file, for a second window on it.
  explicit ImagesBenchOn(std::string_view model,
                         std::shared_ptr<platform::MemoryDisk> disk = std::make_shared<platform::MemoryDisk>())
      : Services(std::move(disk)), selected(catalogue::describeModel(*catalogue::findByName(model))) {
    room.showModel();
    lock.set(platform::UiLock::kFree);
    dialogs.shown.clear();
  }

  // Puts the file into the file system and presses the button for it.
  void openCode(const std::string& path, const platform::Bytes& bytes) {
    files.put(path, bytes);
    choose(path, room.panel.comLoadFile);
  }
  void openCode(const std::string& path, const std::string& text) {
    openCode(path, platform::Bytes(text.begin(), text.end()));
  }
  void openData(const std::string& path, const platform::Bytes& bytes) {
    files.put(path, bytes);
    choose(path, room.panel.comLoadDataFile);
  }
  void choose(const std::string& path, platform::Button& button) {
    dialogs.paths.push_back(path);
    button.press();
  }
  bool reload() { return room.reloader.reload({}) == ReloadResult::Ready; }
  // The texts of the message boxes and questions so far, file dialogs left out.
  std::vector<std::string> boxes() const {
    std::vector<std::string> texts;
    for (const auto& shown : dialogs.shown)
      if (shown.kind == "message" || shown.kind == "yesno") texts.push_back(shown.text);
    return texts;
  }
  std::string lastBox() const { return boxes().empty() ? std::string() : boxes().back(); }
  void counterBoxes(const std::string& address, const std::string& bytes, const std::string& next, Radix radix,
                    const std::string& step = "1") {
    fill(room.panel.texAuto_Increase, {address, bytes, next, step});
    room.panel.optAuto_Increase[static_cast<std::size_t>(radix)].setValue(true);
  }
  void dataCounterBoxes(const std::string& address, const std::string& bytes, const std::string& next) {
    fill(room.panel.texData_Auto_Increase, {address, bytes, next, "1"});
    room.panel.optData_Auto_Increase[static_cast<std::size_t>(Radix::Ascii)].setValue(true);
    room.panel.cheData_Auto_Increase.userSet(true);
  }
  static void fill(platform::ControlArray<platform::TextBox, 4>& boxes, const std::array<std::string, 4>& texts) {
    for (std::size_t i = 0; i < texts.size(); ++i) boxes[i].setText(texts[i]);
  }

  support::NoLink link;
  platform::World world = this->with(link);
  catalogue::SelectedModel selected;
  platform::Activity activity;
  platform::UiLock lock;
  platform::TextBox textMsg{"textMsg"};
  ImageRoom room{world, selected, activity, lock, textMsg};
};
using ImagesBench = ImagesBenchOn<platform::VirtualLoop>;

using support::hexRecord, support::kEndRecord;

}  // namespace kvr::images
