#include "sim/journal.h"

namespace sim {

void Journal::violation(Micros at, std::string text) {
  notes_.push_back({at, "VIOLATION " + text});
  violations_.push_back({at, std::move(text)});
}

Micros Journal::statedTotal() const {
  Micros total = 0;
  for (const StatedTime& stated : stated_) total += stated.to - stated.from;
  return total;
}

std::string Journal::violationText() const {
  std::string text;
  for (const Note& note : violations_) text += std::to_string(note.at) + " us: " + note.text + "\n";
  return text;
}

}  // namespace sim
