#include "platform/virtual/virtual_world.h"

#include <algorithm>
#include <cstdio>

#include "platform/text.h"

namespace kvr::platform {

std::optional<std::string> MemoryStore::get(const std::string& section, const std::string& key) const {
  if (const auto waiting = pending_.find({section, key}); waiting != pending_.end()) return waiting->second;
  if (!seen_) seen_ = disk_->values;
  const auto found = seen_->find({section, key});
  return found == seen_->end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::string> MemoryStore::fresh(const std::string& section, const std::string& key) {
  refresh();
  const auto found = seen_->find({section, key});
  return found == seen_->end() ? std::nullopt : std::optional(found->second);
}

void MemoryStore::set(const std::string& section, const std::string& key, const std::string& value) {
  pending_[{section, key}] = value;
  ++writes;
}

FileResult MemoryStore::flush() {
  if (!failure.empty()) return {false, failure};
  for (const auto& [key, value] : pending_) disk_->values[key] = value;
  pending_.clear();
  refresh();
  ++flushes;
  return {};
}

std::unique_ptr<SettingsClaim> MemoryStore::claim(const std::string& name) {
  struct Claim : SettingsClaim {
    Claim(std::shared_ptr<MemoryDisk> where, std::string what) : disk(std::move(where)), name(std::move(what)) {}
    ~Claim() override { disk->claimed.erase(name); }
    std::shared_ptr<MemoryDisk> disk;
    std::string name;
  };
  if (!disk_->claimed.insert(name).second) return nullptr;
  return std::make_unique<Claim>(disk_, name);
}

std::optional<Bytes> MemoryFiles::read(const std::string& path, std::size_t limit) const {
  const auto found = files.find(path);
  if (found == files.end()) return std::nullopt;
  Bytes bytes = found->second.bytes;
  if (limit != 0) bytes.resize(std::min(bytes.size(), limit));
  if (afterRead) afterRead();
  return bytes;
}

FileResult MemoryFiles::replace(const std::string& path, std::span<const std::uint8_t> bytes) {
  if (diskFull) return {false, "disk full"};
  put(path, Bytes(bytes.begin(), bytes.end()));
  return {};
}

FileResult MemoryFiles::appendLine(const std::string& path, std::string_view line, std::string_view header) {
  if (diskFull) return {false, "disk full"};
  File& file = files[path];
  const std::string_view lead = file.bytes.empty() ? header : file.bytes.back() != '\n' ? "\r\n" : "";
  file.bytes.insert(file.bytes.end(), lead.begin(), lead.end());
  file.bytes.insert(file.bytes.end(), line.begin(), line.end());
  file.version = ++versions_;
  return {};
}

std::unique_ptr<GrowingFile> MemoryFiles::grow(const std::string& path, FileResult& why) {
  struct Growing : GrowingFile {
    Growing(MemoryFiles& to, std::string name) : files(to), path(std::move(name)) {}
    FileResult write(std::span<const std::uint8_t> bytes) override {
      if (files.diskFull) return {false, "disk full"};
      Bytes& all = files.files[path].bytes;
      all.insert(all.end(), bytes.begin(), bytes.end());
      return {};
    }
    MemoryFiles& files;
    std::string path;
  };
  why = diskFull ? FileResult{false, "disk full"} : FileResult{};
  if (!why) return nullptr;
  files[path].version = ++versions_;
  return std::make_unique<Growing>(*this, path);
}

FileResult MemoryFiles::remove(const std::string& path) {
  if (files.erase(path) == 0) return {false, "no such file"};
  return {};
}

FileResult MemoryFiles::makeFolder(const std::string& path) {
  if (diskFull) return {false, "disk full"};
  folders.insert(path);
  return {};
}

std::vector<std::string> MemoryFiles::filesIn(const std::string& folder) const {
  std::vector<std::string> names;
  for (const auto& [path, file] : files)
    if (const std::size_t slash = path.rfind('/'); path.substr(0, slash) == folder)
      names.push_back(path.substr(slash + 1));
  return names;
}

std::optional<std::string> MemoryFiles::stamp(const std::string& path) const {
  const auto found = files.find(path);
  if (found == files.end()) return std::nullopt;
  return std::to_string(found->second.version) + "/" + std::to_string(found->second.bytes.size());
}

std::string MemoryFiles::changedAt(const std::string& path) const {
  return fileExists(path) ? "2030-01-01 12:00:00" : std::string();
}

void MemoryFiles::put(const std::string& path, const Bytes& bytes) {
  files[path] = {bytes, ++versions_};
}

void ScriptedDialogs::message(const std::string& title, const std::string& text, BoxIcon icon) {
  shown.push_back({"message", title, text, icon == BoxIcon::Warning});
  think();
}

bool ScriptedDialogs::askYesNo(const std::string& title, const std::string& text) {
  shown.push_back({"yesno", title, text, false});
  think();
  if (yesNo.empty()) return false;
  const bool answer = yesNo.front();
  yesNo.pop_front();
  return answer;
}

void ScriptedDialogs::help(const std::string& title, const std::string& text) {
  shown.push_back({"help", title, text, false});
}

std::string ScriptedDialogs::openFile(const FileQuestion& question) {
  shown.push_back({"open", question.title, question.initialFolder + "|" + question.fileName, false});
  think();
  if (paths.empty()) return {};
  const std::string path = paths.front();
  paths.pop_front();
  return path;
}

std::string ScriptedDialogs::saveFile(const FileQuestion& question) {
  const std::string path = openFile(question);
  shown.back().kind = "save";
  return path;
}

std::string VirtualClock::timeOfDay() const {
  const auto seconds = 12 * 3600 + std::chrono::duration_cast<std::chrono::seconds>(loop_.now()).count();
  char text[16];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d", static_cast<int>(seconds / 3600 % 24),
                static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60));
  return text;
}

std::string VirtualClock::timeOfDayMillis() const {
  const auto millis = std::chrono::duration_cast<Millis>(loop_.now()).count() % 1000;
  return timeOfDay() + "." + padLeft(std::to_string(millis), 3);
}

std::string VirtualClock::dateTime() const {
  return "2030-01-01 " + timeOfDay();
}

}  // namespace kvr::platform
