#include "comtool/log_area.h"

#include <algorithm>

#include "platform/text.h"

namespace kvr::comtool {

namespace {

constexpr std::uint64_t kMegabyte = 1'000'000;

int numberIn(const platform::TextBox& box, int least, int most) {
  return std::clamp(platform::wholeOf(box.text()), least, most);
}

std::string sizeText(std::uint64_t bytes) {
  if (bytes < kMegabyte) return std::to_string(bytes / 1000) + " KB";
  return platform::fixedText(static_cast<double>(bytes) / kMegabyte, 1) + " MB";
}

}  // namespace

LogArea::LogArea(platform::World world, ToolPanel& panel, platform::UiLock& lock)
    : world_(world),
      panel_(panel),
      log_(world.files),
      timer_(
          world.loop, [this] { tick(); }, platform::Timer::Kind::Periodic) {
  panel_.che_Log.onClick = [this] { startOrStop(); };
  panel_.comLogFile.onClick = [this] { chooseFile(); };
  lockToken_ = lock.changed.watch([this, &lock] { applyLock(lock); });
}

// Nobody is left to be told.
LogArea::~LogArea() {
  const platform::FileResult last = log_.stop();
  if (!last) failure_ = last.error;
}

void LogArea::applyLock(const platform::UiLock& lock) {
  panel_.comLogFile.setEnabled(!lock.busy() && !log_.on());
}

void LogArea::startOrStop() {
  if (panel_.che_Log.value())
    start();
  else
    keep(log_.stop());
  timer_.stop();
  if (log_.on()) timer_.start(kFlushEvery);
  showState();
  tick();
}

// A log without a name gets one, for the user to change.
void LogArea::start() {
  if (panel_.txtLogFile.trimmed().empty())
    panel_.txtLogFile.setText(world_.files.programFolder() + "/KVR-ISP_terminal.log");
  const auto files = static_cast<std::size_t>(numberIn(panel_.txtLogFiles, 1, 1000));
  const auto fileBytes = static_cast<std::uint64_t>(numberIn(panel_.txtLogSize, 1, 2000)) * kMegabyte;
  keep(log_.start(panel_.txtLogFile.trimmed(), world_.clock.dateTime(), {fileBytes, files}));
}

void LogArea::chooseFile() {
  const std::string path = world_.dialogs.saveFile({"Where the log goes; its names get the date",
                                                    "Log (*.log, *.txt)|*.log;*.txt|All Files (*.*)|*.*",
                                                    panel_.txtLogFile.trimmed(), "terminal.log"});
  if (!path.empty()) panel_.txtLogFile.setText(path);
}

void LogArea::bytesCame(std::span<const std::uint8_t> bytes) {
  if (takesBytes()) keep(log_.write(bytes));
}

void LogArea::textCame(std::string_view text) {
  if (takesText()) keep(log_.write(platform::bytesOf(text)));
}

void LogArea::keep(const platform::FileResult& result) {
  if (!result) failure_ = result.error;
}

// A failure is told from here alone: bytes and text come in the middle of other work.
void LogArea::tick() {
  keep(log_.flush());
  showState();
  if (failure_.empty()) return;
  const std::string why = std::exchange(failure_, {});
  timer_.stop();
  panel_.che_Log.setValue(false);
  showState();
  panel_.labLog.setCaption("The log has ended: " + why);
  world_.dialogs.message(platform::kTitle, "The log ends: " + log_.path() + ": " + why, platform::BoxIcon::Warning);
}

void LogArea::showState() {
  const bool on = log_.on();
  const std::string name = log_.path().substr(log_.path().find_last_of('/') + 1);
  panel_.labLog.setCaption(name.empty() ? "" : (on ? "Log: " : "Logged: ") + name + ", " + sizeText(log_.bytes()));
  panel_.labLog.setToolTip(log_.path());
  for (platform::Control* control : std::initializer_list<platform::Control*>{
           &panel_.comb_LogForm, &panel_.txtLogFile, &panel_.comLogFile, &panel_.txtLogSize, &panel_.txtLogFiles})
    control->setEnabled(!on);
}

}  // namespace kvr::comtool
