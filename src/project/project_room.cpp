#include "project/project_room.h"

#include <algorithm>

#include "platform/text.h"
#include "project/project_help.h"

namespace kvr::project {
namespace {

using platform::UiLock;

constexpr const char* kFilter = "*.KVR |*.KVR|All Files (*.*)|*.*";
constexpr std::size_t kLargestFile = 4 << 20;  // both images in hexadecimal take a tenth of it

// The bytes that a project keeps of an image: all up to the end of its range.
std::span<const std::uint8_t> keptOf(const images::ImageBuffer& buffer) {
  const auto count = std::clamp<std::int32_t>(buffer.rangeEnd + 1, 1, buffer.size());
  return buffer.bytes().first(static_cast<std::size_t>(count));
}

void setBounds(images::ImageBuffer& buffer, std::size_t count) {
  buffer.rangeStart = 0;
  buffer.rangeEnd = buffer.fileEnd = static_cast<std::int32_t>(count) - 1;
  buffer.loaded = true;
  buffer.touch();
}

}  // namespace

ProjectRoom::ProjectRoom(platform::World& world, const platform::TextCodec& codec,
                         const platform::ControlRegistry& controls, const catalogue::SelectedModel& selected,
                         images::ImageRoom& images, options::OptionsRoom& options, platform::UiLock& lock,
                         platform::Activity& activity)
    : world_(world),
      codec_(codec),
      controls_(controls),
      selected_(selected),
      images_(images),
      options_(options),
      lock_(lock),
      activity_(activity) {
  panel.comSaveBatchFile.onClick = [this] { comSaveBatchFile_Click(); };
  panel.comOpenBatchFile[0].onClick = [this] { comOpenBatchFile_Click(); };
  panel.comLockOptions.onClick = [this] { comLockOptions_Click(); };
  panel.comUnlockOptions.onClick = [this] { comUnlockOptions_Click(); };
  panel.Command1.onClick = [this] { Command1_Click(); };
  lock_.changed.connect([this] { applyLock(); });
  applyLock();
}

void ProjectRoom::applyLock() {
  panel.comLockOptions.setEnabled(lock_.free());
  panel.comUnlockOptions.setEnabled(!lock_.busy());
  panel.comOpenBatchFile[0].setEnabled(!lock_.busy());
  panel.comSaveBatchFile.setEnabled(!lock_.busy());
}

void ProjectRoom::say(const std::string& text) {
  world_.dialogs.message(platform::kTitle, text);
}

bool ProjectRoom::refuse(const std::string& text) {
  say(text);
  return false;
}

// The folder for projects; where it cannot be made, the one that it would lie in.
std::string ProjectRoom::projectFolder() {
  const std::string above = world_.files.programFolder();
  const std::string folder = above + "/KVR_Project";
  return world_.files.folderExists(folder) || world_.files.makeFolder(folder) ? folder : above;
}

platform::Control* ProjectRoom::controlOf(const options::OptionRow& row) const {
  return controls_.find(row.control, row.index);
}

platform::Bytes ProjectRoom::projectBytes() const {
  const auto common = [this](const options::OptionRow& row) {
    const platform::Control* control = controlOf(row);
    return control ? control->property(row.property) : std::string();
  };
  const auto option = [this](std::string_view key) { return options_.controlValue(key); };
  const Header header = headerFor(selected_.traits(), common, option);
  const auto& state = images_.state;
  using Part = std::optional<std::span<const std::uint8_t>>;
  return formatProject(header, keptOf(state.CodeBuffer),
                       state.EepromBuffer.loaded ? Part(keptOf(state.EepromBuffer)) : std::nullopt);
}

void ProjectRoom::comSaveBatchFile_Click() {
  const auto running = activity_.begin();
  if (!running) return;
  if (!images_.state.imageValid) return say("Please open code file.");
  const std::string path = platform::trim(world_.dialogs.saveFile({.title = "保存工程文件 *.KVR",
                                                                   .filter = kFilter,
                                                                   .initialFolder = projectFolder(),
                                                                   .fileName = panel.texBatchFileName.trimmed()}));
  if (path.empty()) return;
  panel.texBatchFileName.setText(path);
  const platform::FileResult saved = world_.files.replace(path, projectBytes());
  if (!saved) say("The project file was not saved: " + saved.error);
}

void ProjectRoom::comOpenBatchFile_Click() {
  if (activity_.busy()) return;
  const std::string path = world_.dialogs.openFile(
      {.title = "Open Project File *.KVR", .filter = kFilter, .initialFolder = projectFolder(), .fileName = {}});
  if (!path.empty()) openProject(path);
}

void ProjectRoom::comLockOptions_Click() {
  lock_.set(platform::UiLock::kLocked);
}

void ProjectRoom::comUnlockOptions_Click() {
  lock_.keepLocked(false);
  lock_.set(platform::UiLock::kFree);
}

void ProjectRoom::Command1_Click() {
  for (const char* page : kProjectHelp) world_.dialogs.help("Project File", page);
}

bool ProjectRoom::openProject(const std::string& path) {
  const auto running = activity_.begin();
  if (!running) return false;
  panel.texBatchFileName.setText(path);
  const auto file = world_.files.read(path, kLargestFile);
  if (!file) return refuse("The project file cannot be read: " + path);
  const ProjectText text = parseProject(*file, images::kCodeBufferSize, images::kEepromBufferSize);
  const OpenPlan plan = planOpening(text);
  if (!plan.refusal.empty()) return refuse(plan.refusal);
  if (plan.old) say("What you are using is an old project file, carefully check each options please.");
  if (!applyModel || !applyModel(std::string(plan.model->name))) return false;
  images_.loader.clearBuffers();
  images_.counters.forgetArmed();
  setControls(plan.lines);
  if (!takeCode(text.code)) return refuse("The check sum of code file is incorrect.");
  if (text.data && !takeData(*text.data)) return refuse("The check sum of EEPROM file is incorrect.");
  startCounters();
  lock_.set(platform::UiLock::kLocked);
  return true;
}

void ProjectRoom::setControls(const Header& lines) {
  for (const HeaderLine& line : lines) {
    const std::string value = platform::utf8Of(line.value, codec_);
    if (const options::OptionRow* row = options::findRow(options::kCommonSlot, line.key)) {
      if (platform::Control* control = controlOf(*row)) control->setProperty(row->property, value);
    } else {
      options_.setControlValue(line.key, value);  // a key of another family means nothing here
    }
  }
  options_.applyEnableRules();  // a project that fails further on leaves the page as it is now
  // The page of a data image that the model lacks is closed, so its counter cannot be on.
  if (!catalogue::hasDataFile(selected_.record)) images_.panel.cheData_Auto_Increase.setValue(false);
}

bool ProjectRoom::takeCode(const HexSection& code) {
  auto& buffer = images_.state.CodeBuffer;
  buffer.put(0, code.bytes);
  if (!code.sound()) return false;
  setBounds(buffer, code.bytes.size());
  images_.state.imageValid = true;
  // Runs use the images as the project filled them, not the file that was open before.
  images_.loader.takeProject();
  for (auto* reload : {&images_.panel.cekReloadFile, &images_.panel.cekReloadFileWhileFileChange,
                       &images_.panel.cekReloadFileWhileFileChange1}) {
    reload->setValue(false);
  }
  images_.loader.showLengths();
  images_.views.showRange(images_.slots.code);
  comLockOptions_Click();
  lock_.keepLocked(true);
  return true;
}

bool ProjectRoom::takeData(const HexSection& data) {
  auto& buffer = images_.state.EepromBuffer;
  buffer.put(0, data.bytes);
  if (!data.sound()) return false;
  setBounds(buffer, data.bytes.size());
  images_.loader.showLengths();
  images_.views.showRange(images_.slots.data);
  images_.loader.tellIfNotProgrammed();
  return true;
}

// The first chip is to carry the number that the box shows.
void ProjectRoom::startCounters() {
  for (const auto kind : {images::ImageKind::Code, images::ImageKind::Data}) images_.counters.followBox(kind);
  if (!images_.panel.cheAuto_Increase.value() && !images_.panel.cheData_Auto_Increase.value()) return;
  say("The project file has atomatic increment function. \n"
      "Please check the next value whether it is correct or not(10 base).");
}

}  // namespace kvr::project
