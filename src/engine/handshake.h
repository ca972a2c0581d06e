// From a closed port to a working conversation: first contact, clock, identity, model check, and the way to the fast
// rate.
#pragma once

#include <functional>
#include <string>

#include "engine/baud_negotiation.h"
#include "engine/conversation.h"
#include "engine/frames.h"
#include "engine/option_write.h"
#include "engine/rc_trim.h"

namespace kvr::engine {

class Handshake {
 public:
  enum class Result { Ok, BrokenFirstContact, Failed };

  Handshake(Conversation& conversation, OptionWrite& optionWrite, RcMeasuring& rc);

  // The whole of it. `readOnly` ends behind the report. On Ok `baudOut` holds the final rate (unless read only). All
  // words of a failure have been said, but for those of the caller.
  [[nodiscard]] Result handshake(std::string& baudOut, bool readOnly);

  void pingTarget(Millis timeout);  // asks for a fresh status frame; 0: 200 ms
  [[nodiscard]] bool checkTargetModel();
  void reportClock();

  platform::Timer hintTimer;           // `Timer9`: the hint while the chip stays silent
  std::function<void()> onFirstFrame;  // the chip has answered

 private:
  bool openPort();
  bool firstContact();
  void plainSync();
  void fixedLinkSync();
  void readClock();
  void readIdentity();
  const catalogue::McuRecord* lookUp();
  bool readAndReport(bool readOnly);
  bool idReadFailed() const;
  void readStatusByte();
  Result readOptionsOnly();
  bool secondStage(std::string& baudOut);
  bool askStatusAgain();
  bool testFixedLink();
  void hint();

  Conversation& c_;
  OptionWrite& optionWrite_;
  RcMeasuring& rc_;
  BaudNegotiation baud_;
};

}  // namespace kvr::engine
