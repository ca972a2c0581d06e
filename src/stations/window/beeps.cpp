#include "stations/window/beeps.h"

namespace kvr::tiles {
namespace {

constexpr int kWithinMs = 150, kBetweenMs = 600;
constexpr std::size_t kMostPatterns = 4;  // what a user can still tell apart

}  // namespace

Beeps::Beeps(std::function<void()> sound) : sound_(std::move(sound)) {
  gap_.setSingleShot(true);
  QObject::connect(&gap_, &QTimer::timeout, &gap_, [this] { next(); });
}

void Beeps::play(signs::Sign verdict) {
  if (left_.size() >= kMostPatterns) return;
  left_.push_back(verdict == signs::Sign::Pass ? 1 : verdict == signs::Sign::PassInPart ? 2 : 3);
  if (!gap_.isActive()) next();
}

void Beeps::next() {
  if (left_.empty()) return;
  sound_();
  const bool ends = --left_.front() == 0;
  if (ends) left_.pop_front();
  gap_.start(ends ? kBetweenMs : kWithinMs);
}

}  // namespace kvr::tiles
