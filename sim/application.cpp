#include "sim/application.h"

#include <algorithm>
#include <cstdio>

namespace sim {

namespace {

constexpr int kLinesAtOnce = 64;
constexpr Micros kLeastPause = kMillisecond;  // where bytes take no time, this is what keeps the stream finite

}  // namespace

std::string ChatterApplication::lineText(std::uint64_t n) {
  char head[24];
  std::snprintf(head, sizeof head, "%010llu ", static_cast<unsigned long long>(n));
  std::string text = head;
  for (int i = 0; text.size() < 62; ++i) text += static_cast<char>('!' + (n + static_cast<std::uint64_t>(i)) % 94);
  return text + "\r\n";
}

void ChatterApplication::advanceTo(Micros now) {
  while (due_ <= now) {
    std::string text;
    for (int i = 0; i < kLinesAtOnce; ++i) text += lineText(next_++);
    const std::vector<std::uint8_t> bytes(text.begin(), text.end());
    due_ = std::max(say(due_, bytes), due_ + kLeastPause);
  }
}

void TriggerApplication::start(Micros) {
  heard_.clear();
}

void TriggerApplication::hear(Micros end, std::uint8_t byte) {
  heard_.push_back(byte);
  if (heard_.size() > command_.size()) heard_.erase(heard_.begin());
  if (heard_ == command_) resetIntoBoot(end);
}

}  // namespace sim
