#include "sim/target.h"

namespace sim {

namespace {

// A session may rightly be silent for as long as the longest erase takes.
constexpr Micros kLongestSilence = 11 * kSecond;

WireConfig wireOf(const TargetOptions& options) {
  WireConfig config;
  config.byteTimeScale = options.paced ? 1 : 0;
  config.keepLog = false;
  config.wakeEvery = 16;
  return config;
}

Micros micros(double seconds) {
  return static_cast<Micros>(seconds * kSecond);
}

}  // namespace

Target::Target(TargetOptions options, Micros now) : options_(std::move(options)), wire_(wireOf(options_)) {
  putIn(now);
}

bool Target::putIn(Micros now) {
  const int index = static_cast<int>(devices_.size());
  auto device = makeTargetDevice(options_, index, error_);
  if (!device) return false;
  devices_.push_back(std::move(device));
  wire_.connect(&devices_.back()->device());
  devices_.back()->powerOn(now + micros(options_.powerOnSeconds));
  releasesSeen_ = 0;
  return true;
}

bool Target::isLast() const {
  return options_.device == "board" || static_cast<int>(devices_.size()) >= options_.chips;
}

std::optional<Micros> Target::nextDue() const {
  const auto due = wire_.nextDue();
  return cycleAt_ && (!due || *cycleAt_ < *due) ? cycleAt_ : due;
}

void Target::advanceTo(Micros now) {
  wire_.advanceTo(now);
  if (cycleAt_ && *cycleAt_ <= now) powerCycle(now);
  watchForSilence(now);
}

void Target::watchForSilence(Micros now) {
  const TargetDevice& device = current();
  const bool released = device.releases() > releasesSeen_;
  const bool spoken = wire_.unitsCarried() != unitsSeen_;
  unitsSeen_ = wire_.unitsCarried();
  if (released) {
    releasesSeen_ = device.releases();
    reportDue_ = true;
    ended_ = options_.once && isLast();
  }
  if (options_.powerCycleSeconds < 0) return;
  if (released)
    cycleAt_ = now + micros(options_.powerCycleSeconds);
  else if (device.inSession() && spoken)
    cycleAt_ = now + kLongestSilence + micros(options_.powerCycleSeconds);
}

void Target::powerCycle(Micros now) {
  cycleAt_.reset();
  reportDue_ = true;
  if (!isLast()) {
    putIn(now);
    return;
  }
  devices_.back()->powerOff(now);
  devices_.back()->powerOn(now + 1 + micros(options_.powerOnSeconds));
}

std::string Target::report() const {
  std::string text = current().report();
  std::vector<std::string> earlier;
  for (std::size_t i = 0; i + 1 < devices_.size(); ++i) earlier.push_back(devices_[i]->report());
  if (earlier.empty()) return text;
  text.pop_back();
  text += ",\n \"earlier\": [";
  for (std::size_t i = 0; i < earlier.size(); ++i) text += (i ? ",\n  " : "") + earlier[i];
  return text + "]}";
}

}  // namespace sim
