// Reads the chip's option bytes, and brings them in line with what the operator chose.
#pragma once

#include "engine/conversation.h"

namespace kvr::engine {

class OptionWrite {
 public:
  explicit OptionWrite(Conversation& conversation) : c_(conversation) {}

  // Asks for status and options, up to three times; sets `optionsRead`. True: a frame came and was stored.
  bool readOptions();
  // Stores the frame in the receive buffer and reports it.
  void parseOptionStatus();
  // The write step by family. True: the chip holds what was wanted, or needed nothing. False: the words have been said.
  [[nodiscard]] bool writeOptions();

 private:
  bool optionsFailed();
  bool optionsOk();
  bool nothingToWrite();
  bool sendAndWait(const Bytes& frame, Millis limit);
  bool sendTwice(const Bytes& frame, Millis limit);
  bool sendUntilDone(const Bytes& frame, Millis limit);
  bool writeAlder();
  bool writeCedarLike();
  bool writeLater(bool allTold);  // false: bytes to compare are not known of this chip
  void leaveWatchdogAlone();
  bool sendLater();
  bool readBackLater();
  bool writeRowan();
  Conversation& c_;
};

}  // namespace kvr::engine
