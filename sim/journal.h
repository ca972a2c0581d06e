// What a device notes down: what the host did wrong, what happened when, and where its own time went.
#pragma once

#include <string>
#include <vector>

#include "sim/device.h"

namespace sim {

struct Note {
  Micros at = 0;
  std::string text;
};

// Time in which the device itself was the one that took time: flash work, the wait for the host to change its speed.
struct StatedTime {
  Micros from = 0;
  Micros to = 0;
  std::string what;
};

class Journal {
 public:
  void note(Micros at, std::string text) { notes_.push_back({at, std::move(text)}); }
  void violation(Micros at, std::string text);
  void stated(Micros from, Micros to, std::string what) { stated_.push_back({from, to, std::move(what)}); }

  const std::vector<Note>& notes() const { return notes_; }
  const std::vector<Note>& violations() const { return violations_; }
  const std::vector<StatedTime>& statedTimes() const { return stated_; }
  Micros statedTotal() const;
  // One line a violation, for a test's message.
  std::string violationText() const;

 private:
  std::vector<Note> notes_;
  std::vector<Note> violations_;
  std::vector<StatedTime> stated_;
};

}  // namespace sim
