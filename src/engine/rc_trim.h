// Pine and Quince run from an internal oscillator; Sumac shares the first contact that measures it.
// Host and chip measure it together and find the pair of registers that comes closest to the wanted frequency.
#pragma once

#include "engine/rc_plan.h"
#include "engine/run_context.h"

namespace kvr::engine {

class RcMeasuring {
 public:
  explicit RcMeasuring(RunContext& context) : c_(context) {}

  // First contact. Nothing: stopped, or the chip broke off; the user has been told.
  [[nodiscard]] std::optional<Reply> pulseSync();
  // Two rounds of measuring, into the contact. False: a frame stayed unanswered (told). A reply of another kind ends
  // the measuring without a result, and the run goes on.
  [[nodiscard]] bool measure(Contact& contact, int scanCount);
  // The last frame of the handshake: the line goes to its final rate. False: no answer (told).
  [[nodiscard]] bool goToFixedRate(Contact& contact);

 private:
  std::optional<Reply> sendMeasureFrame(const Bytes& frame, int pulseCount, Millis limit);
  void sendPulses(int count);
  std::optional<Reply> measureRound(const Bytes& frame, int pulseCount);
  std::vector<RcPoint> readPoints(const Reply& reply) const;
  RunContext& c_;
  RcLines lines_;
};

// After programming: the frequency that was reached. False: it is off by more than 0.25 %, or unknown.
[[nodiscard]] bool reportTrim(RunContext& context, const RcResult& result);

}  // namespace kvr::engine
