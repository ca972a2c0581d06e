#include "tests/soak/user.h"

#include <algorithm>

#include "tests/support/hex_record.h"

namespace kvr::soak {

using platform::Millis;

UserFile binaryFile(Random& random, const std::string& path, std::size_t size) {
  UserFile file{path, platform::Bytes(size), Meant(size)};
  for (std::size_t i = 0; i < size; ++i) file.bytes[i] = static_cast<std::uint8_t>(random());
  if (file.bytes[0] == ':') file.bytes[0] = 2;  // it would be read as a HEX file
  std::copy(file.bytes.begin(), file.bytes.end(), file.meant.begin());
  return file;
}

UserFile hexFile(Random& random, const std::string& path, std::size_t size) {
  UserFile file{path, {}, Meant(size)};
  std::string text;
  for (std::size_t at = 0; at < size; at += 16) {
    if (at > 0 && at + 16 < size && random() % 8 == 0) continue;
    platform::Bytes data(std::min<std::size_t>(16, size - at));
    for (std::size_t i = 0; i < data.size(); ++i) file.meant[at + i] = data[i] = static_cast<std::uint8_t>(random());
    text += support::hexRecord(static_cast<int>(at), data) + "\r\n";
  }
  text += support::kEndRecord + "\r\n";
  file.bytes.assign(text.begin(), text.end());
  return file;
}

User::User(sim::WireConfig wireConfig) : FormBench(std::move(wireConfig)) {
  form.images.panel.cheClearAP_Buffer.userSet(true);
  form.images.panel.cheClearDataBuffer.userSet(true);
}

void User::pick(const McuRecord& model) {
  form.main.TreeViewDevice.userPick("Ivy-H20S");  // empties both images
  select(std::string(model.name));                // the tree does not offer every series
  model_ = &model;
  code_.clear();
  data_.clear();
}

void User::openBy(platform::Button& button, const std::string& path) {
  dialogs.paths = {path};
  button.press();
  EXPECT_TRUE(dialogs.paths.empty()) << "the button for " << path << " is off";
  dialogs.paths.clear();
}

void User::openCode(const UserFile& file) {
  files.put(file.path, file.bytes);
  openBy(form.images.panel.comLoadFile, file.path);
  codePath_ = file.path;
  code_ = file.meant;
  codeIsCut_ = std::any_of(dialogs.shown.begin(), dialogs.shown.end(), [](const auto& box) {
    return box.text.find("the exceeding part has been cleared") != std::string::npos;
  });
}

void User::openData(const UserFile& file) {
  files.put(file.path, file.bytes);
  openBy(form.images.panel.comLoadDataFile, file.path);
  data_ = file.meant;
}

void User::openBad(const std::string& path, const std::optional<std::string>& content) {
  if (content) files.put(path, *content);
  openBy(form.images.panel.comLoadFile, path);
}

void User::openProject(const std::string& path) {
  form.openDropped(path);
}

void User::rewriteCode(const UserFile& file) {
  files.put(codePath_, file.bytes);
  code_ = file.meant;
}

std::string User::start(platform::Button& button, platform::Button& stopButton) {
  const auto done = std::make_shared<bool>(false);
  loop.post([&button, done] {
    button.press();
    *done = true;
  });
  loop.after(std::chrono::minutes(4), [&stopButton, done] {  // a user who has had enough
    if (!*done) stopButton.press();
  });
  return loop.runUntil([&] { return *done; }, std::chrono::minutes(5)) ? "" : "hangs; ";
}

std::string User::notAtRest() const {
  std::string faults;
  if (link.isOpen()) faults += "the port is open; ";
  if (!form.download.comDownload[0].enabled()) faults += "Program is off; ";
  if (form.download.comStop_Download.enabled()) faults += "Stop is on; ";
  if (form.main.ProgressBar1.visible()) faults += "the progress bar is shown; ";
  return faults;
}

}  // namespace kvr::soak
