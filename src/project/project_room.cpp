#include "project/project_room.h"

#include <algorithm>

#include "options/option_table.h"
#include "platform/text.h"
#include "project/project_help.h"

namespace kvr::project {
namespace {

constexpr const char* kSaveTitle = "保存工程文件 *.KVR";
constexpr const char* kFilter = "*.KVR |*.KVR|All Files (*.*)|*.*";
constexpr std::size_t kLargestFile = 4 << 20;  // both images in hexadecimal take a tenth of it

// The bytes that a project keeps of an image: all up to the end of its range.
platform::Bytes keptOf(const images::ImageBuffer& buffer) {
  const auto count = std::clamp<std::int32_t>(buffer.rangeEnd + 1, 1, buffer.size());
  const auto kept = buffer.bytes().first(static_cast<std::size_t>(count));
  return {kept.begin(), kept.end()};
}

void place(images::ImageBuffer& buffer, std::size_t count, std::int32_t sum) {
  buffer.rangeStart = 0;
  buffer.rangeEnd = buffer.fileEnd = static_cast<std::int32_t>(count) - 1;
  buffer.sum = sum;
  buffer.loaded = true;
  buffer.touch();
}

}  // namespace

ProjectRoom::ProjectRoom(const ProjectContext& context) : context_(context), recent_(context.world, "RecentProject") {
  panel.comSaveBatchFile.onClick = [this] { save(); };
  panel.comOpenBatchFile[0].onClick = [this] { chooseAndOpen(); };
  panel.comLockOptions.onClick = [this] { lockOptions(); };
  panel.comUnlockOptions.onClick = [this] { unlockOptions(); };
  panel.Command1.onClick = [this] { showHelp(); };
  panel.comStations.onClick = [this] { showStations(); };
  context_.lock.changed.connect([this] { applyLock(); });
  applyLock();
}

void ProjectRoom::applyLock() {
  const platform::UiLock& lock = context_.lock;
  panel.comLockOptions.setEnabled(lock.free());
  panel.comUnlockOptions.setEnabled(!lock.busy());
  panel.comOpenBatchFile[0].setEnabled(!lock.busy());
  panel.comSaveBatchFile.setEnabled(!lock.busy());
}

void ProjectRoom::say(const std::string& text) {
  context_.world.dialogs.message(platform::kTitle, text);
}

bool ProjectRoom::refuse(const std::string& why) {
  say(why);
  return false;
}

void ProjectRoom::lockOptions() {
  context_.lock.set(platform::UiLock::kLocked);
}

void ProjectRoom::unlockOptions() {
  context_.lock.keepLocked(false);
  context_.lock.set(platform::UiLock::kFree);
}

void ProjectRoom::showHelp() {
  for (const char* page : kProjectHelp) context_.world.dialogs.help("Project File", page);
}

void ProjectRoom::showStations() {
  const std::string path = panel.texBatchFileName.trimmed();
  const std::string project = context_.world.files.fileExists(path) ? path : std::string();
  const std::string why = openStations ? openStations(project) : std::string();
  if (!why.empty()) say(why);
}

// The folder for projects; where it cannot be made, its parent.
std::string ProjectRoom::projectFolder() {
  platform::FileSystem& files = context_.world.files;
  const std::string above = files.programFolder();
  const std::string folder = above + "/KVR_Project";
  return files.folderExists(folder) || files.makeFolder(folder) ? folder : above;
}

ProjectFile ProjectRoom::fromControls() const {
  ProjectFile project;
  for (const options::OptionRow& row : options::optionRows(options::kCommonSlot)) {
    const platform::Control* control = context_.controls.find(row.control, row.index);
    const std::string value = control ? control->property(row.property) : std::string();
    if (row.key == kModelKey) {
      project.model = value;
    } else {
      project.general.push_back({std::string(row.key), value});
    }
  }
  const catalogue::FamilyTraits& traits = context_.selected.traits();
  for (const std::string_view key : optionKeysOf(traits)) {
    const bool onPanel = options::findRow(traits.panelSlot, key) != nullptr;
    project.options.push_back({std::string(key), onPanel ? context_.options.controlValue(key) : "False"});
  }
  const images::ImageState& state = context_.images.state;
  project.code = keptOf(state.CodeBuffer);
  if (state.EepromBuffer.loaded) project.data = keptOf(state.EepromBuffer);
  return project;
}

// The dialog asks about the name as it was typed; the file has the trimmed one.
std::string ProjectRoom::askWhereToSave() {
  const std::string chosen = context_.world.dialogs.saveFile({.title = kSaveTitle,
                                                              .filter = kFilter,
                                                              .initialFolder = projectFolder(),
                                                              .fileName = panel.texBatchFileName.trimmed()});
  const std::string path = platform::trim(chosen);
  if (path == chosen || !context_.world.files.fileExists(path)) return path;
  const std::string name = path.substr(path.find_last_of("/\\") + 1);
  const std::string question = name + " already exists.\nDo you want to replace it?";
  return context_.world.dialogs.askYesNo(kSaveTitle, question) ? path : std::string();
}

void ProjectRoom::save() {
  const auto running = context_.activity.begin();
  if (!running) return;
  if (!context_.images.state.imageValid) return say("Please open code file.");
  const std::string path = askWhereToSave();
  if (path.empty()) return;
  panel.texBatchFileName.setText(path);
  const platform::FileResult saved = context_.world.files.replace(path, textOf(fromControls()));
  if (!saved) return say("The project file was not saved: " + saved.error);
  remember(path);
}

void ProjectRoom::remember(const std::string& path) {
  recent_.add(context_.world.files.absolute(path));
}

void ProjectRoom::chooseAndOpen() {
  const auto running = context_.activity.begin();
  if (!running) return;
  const std::string path = context_.world.dialogs.openFile(
      {.title = "Open Project File *.KVR", .filter = kFilter, .initialFolder = projectFolder(), .fileName = {}});
  if (!path.empty()) take(path);
}

bool ProjectRoom::openProject(const std::string& path) {
  const auto running = context_.activity.begin();
  return running && take(path);
}

bool ProjectRoom::take(const std::string& path) {
  panel.texBatchFileName.setText(path);
  const auto file = context_.world.files.read(path, kLargestFile);
  if (!file) return refuse("The project file cannot be read: " + path);
  const ReadProject read = readProject(*file, context_.codec);
  if (!read.refusal.empty()) return refuse(read.refusal);
  if (read.old) say("What you are using is an old project file, carefully check each options please.");
  if (!applyModel || !applyModel(read.project.model)) return false;
  context_.images.loader.clearBuffers();
  context_.images.counters.forgetArmed();
  setControls(read.project);
  context_.images.state.CodeBuffer.put(0, read.project.code);
  if (!read.codeSound) return refuse("The check sum of code file is incorrect.");
  takeCode(read.project);
  if (read.project.data) context_.images.state.EepromBuffer.put(0, *read.project.data);
  if (read.project.data && !read.dataSound) {
    say("The check sum of EEPROM file is incorrect.");
    return true;
  }
  takeData(read.project);
  if (read.dataMissing) say("The project file names an EEPROM file, but does not hold its data.");
  startCounters();
  lockOptions();
  remember(path);
  return true;
}

void ProjectRoom::setControls(const ProjectFile& project) {
  for (const HeaderLine& line : project.general) {
    const options::OptionRow& row = *options::findRow(options::kCommonSlot, line.key);
    if (platform::Control* control = context_.controls.find(row.control, row.index)) {
      control->setProperty(row.property, line.value);
    }
  }
  for (const HeaderLine& line : project.options) context_.options.setControlValue(line.key, line.value);
  context_.options.applyEnableRules();  // a project that fails further on leaves the page as it is now
  // The page of a data image that the model lacks is closed, so its counter cannot be on.
  if (!catalogue::hasDataFile(context_.selected.record)) {
    context_.images.panel.cheData_Auto_Increase.setValue(false);
  }
}

void ProjectRoom::takeCode(const ProjectFile& project) {
  images::ImageRoom& images = context_.images;
  place(images.state.CodeBuffer, project.code.size(), codeSumOf(project));
  images.state.imageValid = true;
  // Runs use the images as the project filled them, not the file that was open before.
  images.loader.takeProject();
  for (auto* reload : {&images.panel.cekReloadFile, &images.panel.cekReloadFileWhileFileChange,
                       &images.panel.cekReloadFileWhileFileChange1}) {
    reload->setValue(false);
  }
  images.loader.showLengths();
  images.views.showRange(images.slots.code);
  lockOptions();
  context_.lock.keepLocked(true);
}

void ProjectRoom::takeData(const ProjectFile& project) {
  if (!project.data) return;
  images::ImageRoom& images = context_.images;
  place(images.state.EepromBuffer, project.data->size(), dataSumOf(project));
  images.loader.showLengths();
  images.views.showRange(images.slots.data);
  images.loader.tellIfNotProgrammed();
}

// The first chip is to carry the number that the box shows.
void ProjectRoom::startCounters() {
  images::ImageRoom& images = context_.images;
  for (const auto kind : {images::ImageKind::Code, images::ImageKind::Data}) images.counters.followBox(kind);
  if (!images.panel.cheAuto_Increase.value() && !images.panel.cheData_Auto_Increase.value()) return;
  say("The project file has atomatic increment function. \n"
      "Please check the next value whether it is correct or not(10 base).");
}

}  // namespace kvr::project
