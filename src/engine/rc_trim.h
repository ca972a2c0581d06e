// Pine and Quince run from an internal oscillator; Sumac shares the first contact that measures it.
// Host and chip measure it together and find the pair of registers that comes closest to the wanted frequency.
#pragma once

#include <string>

#include "engine/conversation.h"
#include "engine/frames.h"
#include "engine/rc_plan.h"

namespace kvr::engine {

class RcMeasuring {
 public:
  explicit RcMeasuring(Conversation& conversation) : c_(conversation) {}

  void reset();           // a new run: no result yet
  void pulseSyncFirst();  // first contact; ends with a frame in or a stop, or with words said
  // Two rounds of measuring. False: a frame stayed unanswered (words said). A reply of another kind ends the measuring
  // without a result, and the run goes on.
  [[nodiscard]] bool measureRc(int scanCount);
  // The last frame of the handshake: the line goes to its final rate. False: no answer (words said).
  [[nodiscard]] bool fixedRateBaud(std::string& baudOut);
  // After programming: the frequency that was reached. False: it is off by more than 0.25 %, or unknown.
  [[nodiscard]] bool reportRcResult();

  const RcResult& result() const { return result_; }

 private:
  bool sendMeasureFrame(const Bytes& frame, int pulseCount, Millis limit, int trailCount);
  void sendPulses(std::uint8_t value, int count);
  bool measureRound(const Bytes& frame, int pulseCount);
  std::vector<RcPoint> readPoints() const;
  double baseHz() const;
  Conversation& c_;
  RcLines lines_;
  RcResult result_;
};

}  // namespace kvr::engine
