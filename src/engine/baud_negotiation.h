// Finds the fastest rate that the chip's UART can make and moves the line there.
#pragma once

#include "engine/baud_plan.h"
#include "engine/run_context.h"

namespace kvr::engine {

class BaudNegotiation {
 public:
  explicit BaudNegotiation(RunContext& context) : c_(context) {}

  // The whole search, from the highest row down, at most four candidates (a pass at the fourth does not count), then
  // the change. True: the line is at the new rate, which the contact holds. False: the user knows why.
  [[nodiscard]] bool searchAndChange(Contact& contact);

  // Asks the chip to answer once at the new rate; the line is back at the first-contact rate afterwards.
  [[nodiscard]] bool test(const TargetInfo& chip, int baud, BaudParameters parameters);
  // Announces the pin of an external watchdog, when one is chosen. False: no answer in three attempts.
  [[nodiscard]] bool announceWatchdog();

 private:
  std::optional<BaudChoice> findCandidate(const TargetInfo& chip);
  bool testThreeTimes(const TargetInfo& chip, const BaudChoice& choice);
  bool changeThreeTimes(const TargetInfo& chip, const BaudChoice& choice);
  bool change(const TargetInfo& chip, int baud, BaudParameters parameters);
  bool failed();
  bool switchesSpeed() const;  // first contact runs at another rate than the maximum
  Bytes baudFrame(const TargetInfo& chip, BaudFrame kind, int baud, BaudParameters parameters) const;
  bool goTo(int baud);
  RunContext& c_;
};

}  // namespace kvr::engine
