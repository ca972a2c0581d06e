// The rest of the virtual world's platform: a store and files in memory, a user who answers from a script, a clock
// that follows the simulated time.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/dialogs.h"
#include "platform/event_loop.h"
#include "platform/file_system.h"
#include "platform/settings_store.h"
#include "platform/wall_clock.h"

namespace kvr::platform {

// A settings file in memory and the claims on it; the windows of one user share it.
struct MemoryDisk {
  std::map<std::pair<std::string, std::string>, std::string> values;
  std::set<std::string> claimed;
};

// One window's store. Like a real one it reads the file when it is first asked, and then only when it writes or is told
// to look again.
class MemoryStore : public SettingsStore {
 public:
  explicit MemoryStore(std::shared_ptr<MemoryDisk> disk = std::make_shared<MemoryDisk>()) : disk_(std::move(disk)) {}
  std::optional<std::string> get(const std::string& section, const std::string& key) const override;
  [[nodiscard]] std::optional<std::string> fresh(const std::string& section, const std::string& key) override;
  void set(const std::string& section, const std::string& key, const std::string& value) override;
  [[nodiscard]] FileResult flush() override;
  [[nodiscard]] std::unique_ptr<SettingsClaim> claim(const std::string& name) override;

  // --- The tester's side. ---
  const std::shared_ptr<MemoryDisk>& disk() const { return disk_; }  // for a second window
  auto& values() { return disk_->values; }                           // what the file holds
  void refresh() { seen_ = disk_->values; }  // takes in what was put into the file after the window's first look
  std::string failure;                       // why every flush fails; empty: none does
  int writes = 0;
  int flushes = 0;

 private:
  using Values = std::map<std::pair<std::string, std::string>, std::string>;
  std::shared_ptr<MemoryDisk> disk_;
  mutable std::optional<Values> seen_;
  Values pending_;
};

class MemoryFiles : public FileSystem {
 public:
  std::optional<Bytes> read(const std::string& path, std::size_t limit = 0) const override;
  [[nodiscard]] FileResult replace(const std::string& path, std::span<const std::uint8_t> bytes) override;
  [[nodiscard]] FileResult appendLine(const std::string& path, std::string_view line, std::string_view header) override;
  std::unique_ptr<GrowingFile> grow(const std::string& path, FileResult& why) override;
  [[nodiscard]] FileResult remove(const std::string& path) override;
  bool fileExists(const std::string& path) const override { return files.count(path) > 0; }
  bool folderExists(const std::string& path) const override { return folders.count(path) > 0; }
  [[nodiscard]] FileResult makeFolder(const std::string& path) override;
  std::optional<std::string> stamp(const std::string& path) const override;
  std::string changedAt(const std::string& path) const override;
  std::string absolute(const std::string& path) const override {
    return path.empty() || path.front() == '/' ? path : "/current/" + path;
  }
  std::string programFolder() const override { return "/program"; }
  std::string stateFolder() const override { return "/state"; }
  std::vector<std::string> filesIn(const std::string& folder) const override;

  void put(const std::string& path, const Bytes& bytes);
  void put(const std::string& path, const std::string& text) { put(path, Bytes(text.begin(), text.end())); }

  struct File {
    Bytes bytes;
    int version = 0;
  };
  std::map<std::string, File> files;
  std::set<std::string> folders{"/program"};
  std::function<void()> afterRead;  // what happens to the files while they are read
  bool diskFull = false;            // every write fails and leaves what was there

 private:
  int versions_ = 0;
};

// Answers come from the script, each after its time; what no script foresees is answered No or with an empty path at
// once. Everything that was shown is kept.
class ScriptedDialogs : public Dialogs {
 public:
  explicit ScriptedDialogs(EventLoop& loop) : loop_(loop) {}
  void message(const std::string& title, const std::string& text, BoxIcon icon) override;
  bool askYesNo(const std::string& title, const std::string& text) override;
  void help(const std::string& title, const std::string& text) override;
  std::string openFile(const FileQuestion& question) override;
  std::string saveFile(const FileQuestion& question) override;
  void beep() override { beeps.push_back(loop_.now()); }
  void setBusy(bool on) override { busy = on; }

  struct Shown {
    std::string kind;  // "message", "yesno", "help", "open", "save"
    std::string title;
    std::string text;
    bool warning = false;
  };
  std::vector<Shown> shown;
  std::vector<Instant> beeps;
  std::deque<bool> yesNo;         // answers to come
  std::deque<std::string> paths;  // answers of file dialogs to come
  Millis thinking{0};             // how long the user takes for each answer
  bool busy = false;

 private:
  void think() { delay(loop_, thinking); }
  EventLoop& loop_;
};

// Noon of a fixed day at simulated time zero.
class VirtualClock : public WallClock {
 public:
  explicit VirtualClock(const EventLoop& loop) : loop_(loop) {}
  std::string timeOfDay() const override;
  std::string timeOfDayMillis() const override;
  std::string dateTime() const override;

 private:
  const EventLoop& loop_;
};

}  // namespace kvr::platform
