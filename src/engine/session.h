// One press of a download button, from the press to the word "OK" or to the words of a failure: prepares, waits for a
// chip, connects, checks, erases, programs, writes the options, counts, and stops or starts over with the next chip.
#pragma once

#include <functional>
#include <string>

#include "engine/conversation.h"
#include "engine/handshake.h"
#include "engine/option_write.h"
#include "engine/programming.h"
#include "engine/rc_trim.h"
#include "platform/activity.h"
#include "platform/ui_lock.h"

namespace kvr::engine {

// One end of a run (of each round, when it repeats), for the batch log.
struct RunRecord {
  std::string time;   // "yyyy-mm-dd hh:mm:ss"
  std::string model;  // selected
  bool passed = false;
  std::string failure;  // words; empty when it passed
  std::int32_t codeSum = 0, dataSum = 0;
  std::string firmware;      // "6.3I"; empty: no chip answered
  std::string serialNumber;  // what the chip carries; empty without auto-increment
  std::string factoryId;
  int seconds = 0;  // since the chip's first answer
};

// What belongs to other rooms. One that is not connected does nothing and says "go on".
struct SessionHooks {
  std::function<void()> imgOpen_Click;     // the terminal gives up the port
  std::function<void()> imgNotOpen_Click;  // the terminal takes the port
  std::function<bool()> autoOpenPort;      // `che_AutoOpenPort`: it does so after a good run
  std::function<bool()> reloadIfAsked;     // loads the file anew when the operator wants that; false: no good image
  std::function<bool()> armCounters;       // false: a serial number could not be put into the image
  std::function<bool()> advanceCounters;   // false: the next one could not
  std::function<std::string()> serialNumber;
  std::function<void()> relock;                    // `comLockOptions_Click` when `lockAfterRun`
  std::function<bool()> closeAsked;                // the window was asked to close once
  std::function<void(const RunRecord&)> onRunEnd;  // before the verdict is shown
};

class Session {
 public:
  Session(Conversation& conversation, platform::UiLock& lock, platform::Activity& activity, SessionHooks& hooks);

  void comDownload_Click(int index);  // 0: once; 1: repeats
  void comStop_Download_Click();      // the button; the run ends where it waits and lets go of the lock itself
  void comReadChipLock_Click();       // reports a chip without touching it
  void Command2_Click();              // a download on the fixed link
  void comClear_OK_Count_Click();

  // The common end of every sequence on this port: port closed, lock let go. For the one exit of a sequence.
  void stopOperation();
  // False after three beeps and words, or after Stop: the port is closed then.
  bool connectTarget(bool readOnly);

  Programming& programming() { return programming_; }
  Handshake& handshake() { return handshake_; }
  OptionWrite& optionWrite() { return optionWrite_; }
  RcMeasuring& rc() { return rc_; }

 private:
  enum class RoundEnd { Failed, Done, Again };
  bool prepare(int index);
  bool refuse(const std::string& words);
  RoundEnd round(int index);
  bool programChip();
  bool firmwareSupported();
  bool settleConnection(const std::string& baud, bool readOnly);
  bool erase();
  bool writeChipOptions();
  void countSuccess();
  void countDown();
  void finishRun();
  void haltLine();
  void record(bool passed);
  void applyLock();

  Conversation& c_;
  platform::UiLock& lock_;
  platform::Activity& activity_;
  SessionHooks& hooks_;
  OptionWrite optionWrite_;
  RcMeasuring rc_;
  Handshake handshake_;
  Programming programming_;
  platform::Signal::Token lockToken_;
  platform::Instant firstAnswer_{0};
  bool answered_ = false;
};

}  // namespace kvr::engine
