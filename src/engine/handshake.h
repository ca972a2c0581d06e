// From a closed port to a working conversation: first contact, clock, identity, model check, and the way to the fast
// rate.
#pragma once

#include <optional>

#include "engine/baud_negotiation.h"
#include "engine/option_write.h"
#include "engine/rc_trim.h"
#include "engine/run_context.h"

namespace kvr::engine {

// What a handshake learnt. Not connected: stopped or failed, and the user has been told.
struct Learnt {
  bool connected = false;          // the line is at the final rate
  std::optional<Contact> contact;  // a chip has answered
};

class Handshake {
 public:
  Handshake(RunContext& context, OptionWrite& optionWrite);

  [[nodiscard]] Learnt run();
  // The same, only as far as the report of what the chip is and holds.
  [[nodiscard]] Learnt runReadOnly();
  void ping();  // asks for a fresh status frame; what comes is dropped
  // False: the chip is not the selected model (told).
  [[nodiscard]] bool checkModel(const TargetInfo& chip);
  bool modelRefused() const { return modelRefused_; }

 private:
  bool openPort();
  bool openUnpowered();
  bool restUnpowered();
  std::optional<Reply> firstContact();
  bool meet(Learnt& learnt, bool readOnly);
  std::optional<Reply> plainSync();
  std::optional<Reply> fixedLinkSync();
  void readClock(const Reply& reply, TargetInfo& chip);
  void readIdentity(const Reply& reply, TargetInfo& chip);
  bool identify(const Reply& reply, Contact& contact);
  void reportClock(const Contact& contact);
  void readStatusByte(const Reply& reply, TargetInfo& chip);
  void readOptionsOnly(Contact& contact);
  bool secondStage(Contact& contact);
  bool askStatusAgain();
  bool testFixedLink(const TargetInfo& chip);
  void hint();

  RunContext& c_;
  OptionWrite& optionWrite_;
  RcMeasuring rc_;
  BaudNegotiation baud_;
  platform::Timer hintTimer_;  // while the chip stays silent
  bool modelRefused_ = false;
};

}  // namespace kvr::engine
