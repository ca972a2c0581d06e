// Finds the fastest rate that the chip's UART can make and moves the line there.
#pragma once

#include <string>

#include "engine/baud_plan.h"
#include "engine/conversation.h"

namespace kvr::engine {

class BaudNegotiation {
 public:
  explicit BaudNegotiation(Conversation& conversation) : c_(conversation) {}

  // The whole search, from the highest row down, at most four candidates (a pass at the fourth does not count), then
  // the change. True: the line is at the new rate, `baudOut` holds it. False: the words have been said.
  [[nodiscard]] bool searchAndChange(std::string& baudOut);

  // Asks the chip to answer once at the new rate; the line is back at the first-contact rate afterwards.
  [[nodiscard]] bool test_new_baud(int baud, BaudParameters parameters);
  // Asks it to go there, and goes there.
  [[nodiscard]] bool set_new_baud(int baud, BaudParameters parameters);
  // Announces the pin of an external watchdog, when one is chosen. False: no answer in three attempts.
  [[nodiscard]] bool send_extern_WDT_address();

 private:
  std::optional<BaudChoice> findCandidate();
  bool testThreeTimes(const BaudChoice& choice);
  bool changeThreeTimes(const BaudChoice& choice);
  bool failed();
  bool switchesSpeed() const;  // first contact runs at another rate than the maximum
  Bytes baudFrame(BaudFrame kind, int baud, BaudParameters parameters) const;
  bool goTo(int baud);
  Conversation& c_;
};

}  // namespace kvr::engine
