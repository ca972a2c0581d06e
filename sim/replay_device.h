// A device that says what the device of a recorded run said, after the same bytes of the host. When the host says
// something else it notes where, and is silent from there on; power brings it back to the start, and so does the end.
//
// A host that repeats itself while it waits is answered after a few times, however long the recorded one had to wait.
#pragma once

#include <deque>
#include <string>

#include "sim/trace_script.h"

namespace sim {

class ReplayDevice : public Device {
 public:
  explicit ReplayDevice(TraceScript script) : script_(std::move(script)) {}

  void powerOn(Micros at);
  void powerOff(Micros at);
  int plays() const { return plays_; }  // how often it came to its end
  bool begun() const { return step_ > 0 && difference_.empty(); }
  const std::string& difference() const { return difference_; }
  const std::string& model() const { return script_.model; }

  std::optional<Line> line() const override { return std::nullopt; }
  void hear(Micros end, const Heard& heard) override;
  std::optional<Micros> nextDue() const override;
  void advanceTo(Micros now) override;

 private:
  const TraceHeard* expected(std::size_t ahead = 0) const;
  bool isRepetition(std::uint8_t byte) const;
  void complete(Micros at);
  void nextStep(Micros at);

  TraceScript script_;
  std::size_t step_ = 0, item_ = 0, byte_ = 0;  // what it waits for
  int times_ = 0;                               // of the item so far
  Micros beganAt_ = 0;                          // its first byte came
  const TraceHeard* before_ = nullptr;          // the item that was heard last
  Line hostLine_;
  bool on_ = false;
  std::optional<Micros> onAt_;
  std::deque<std::pair<Micros, TraceSaid>> toSay_;
  int plays_ = 0;
  long heard_ = 0;
  std::string difference_;
};

}  // namespace sim
