// What the program itself has had to say since its start, such as that a log was written or an adapter is gone. Beside
// the message pane, which belongs to the runs.
#pragma once

#include <deque>
#include <string>

namespace kvr::shell {

class Notices {
 public:
  static constexpr std::size_t kMost = 200;
  // `time`: of the day. A text becomes one line; the same text again has its time renewed.
  void add(const std::string& time, const std::string& text);
  const std::string& latest() const { return latest_; }
  std::string history() const;  // a line each, the newest first

 private:
  std::deque<std::string> lines_;
  std::string latest_;
};

}  // namespace kvr::shell
