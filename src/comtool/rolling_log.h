// A log of bounded size: a file that gets a successor when it is full, of which only so many are kept. Names hold the
// date: of "/logs/terminal.log" the first file is "/logs/terminal-2030-01-31-123456.log", the second one ends with
// "-123456-2.log".
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <span>
#include <string>

#include "platform/file_system.h"

namespace kvr::comtool {

// `dateTime` is "yyyy-mm-dd hh:mm:ss"; `part` counts from 1.
std::string logName(const std::string& base, const std::string& dateTime, int part);

class RollingLog {
 public:
  struct Limits {
    std::uint64_t fileBytes = 10'000'000;
    std::size_t files = 10;  // the oldest ones go
  };
  explicit RollingLog(platform::FileSystem& files) : files_(files) {}

  // A failure leaves the log off; so does one of the writes below.
  [[nodiscard]] platform::FileResult start(const std::string& base, const std::string& dateTime, Limits limits);
  [[nodiscard]] platform::FileResult write(std::span<const std::uint8_t> bytes);  // collected, see `flush`
  [[nodiscard]] platform::FileResult flush();                                     // to be called each second
  [[nodiscard]] platform::FileResult stop();

  bool on() const { return file_ != nullptr; }
  const std::string& path() const { return path_; }  // of the present file, or of the last one
  std::uint64_t bytes() const { return bytes_; }     // in all files of this log

 private:
  static constexpr std::size_t kCollect = 256 * 1024;
  platform::FileResult nextFile();
  platform::FileResult giveUp(platform::FileResult why);

  platform::FileSystem& files_;
  std::unique_ptr<platform::GrowingFile> file_;
  std::unique_ptr<platform::GrowingFile> full_;  // the one before, which nobody waits for
  std::deque<std::string> kept_;
  platform::Bytes collected_;
  std::string base_;
  std::string dateTime_;
  std::string path_;
  Limits limits_;
  std::uint64_t inFile_ = 0;
  std::uint64_t bytes_ = 0;
  int part_ = 0;
};

}  // namespace kvr::comtool
