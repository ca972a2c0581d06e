// The controls of the download: the buttons that start and stop a run, the range of baud rates, the success counter,
// the repeat delay, the beep choice and the verdict.
#pragma once

#include "platform/controls.h"

namespace kvr::download {

// What the operator reads from two metres. It is set from a run's outcome at one place only, and never early.
// PassInPart: everything that fits went through, but bytes of the image were left out.
enum class VerdictKind { Idle, Waiting, Working, Pass, PassInPart, Fail };

class Verdict {
 public:
  VerdictKind value() const { return value_; }
  void set(VerdictKind value);
  platform::Signal changed;

 private:
  VerdictKind value_ = VerdictKind::Idle;
};

struct DownloadPanel {
  DownloadPanel();
  void addTo(platform::ControlRegistry& registry);

  platform::ControlArray<platform::Button, 2> comDownload{"comDownload"};  // 0: once; 1: repeats
  platform::Button comStop_Download{"comStop_Download"};
  platform::Button comReadChipLock{"comReadChipLock"};
  platform::Button comPlan{"comPlan"};  // tells what a run would do
  platform::Button Command2{"Command2"};
  platform::CheckBox cheTL{"cheTL"};  // fixed link; only Command2 ticks it
  platform::ComboBox cobBaudMin{"cobBaudMin"};
  platform::ComboBox cobBaudMax{"cobBaudMax"};
  platform::CheckBox cheSlowAnswers{"cheSlowAnswers"};  // every chip is left 10 ms before each frame
  platform::TextBox txtWrite_OK_Count{"txtWrite_OK_Count"};
  platform::Button comClear_OK_Count{"comClear_OK_Count"};
  platform::ComboBox comDalay_ReDownLoad{"comDalay_ReDownLoad"};  // seconds between two rounds; takes free text
  platform::OptionButton optBeepYes{"optBeepYes"};
  platform::OptionButton optBeepNo{"optBeepNo"};
  platform::OptionGroup beepGroup;
  platform::ComboBox cobPowerLine{"cobPowerLine"};    // what switches the target's supply: none, DTR, RTS
  platform::ComboBox cobPowerLevel{"cobPowerLevel"};  // on while the line is: set, clear
  platform::TextBox txtPowerOff{"txtPowerOff"};       // for so many milliseconds
  platform::Button comLastRun{"comLastRun"};          // shows the picture of the last run
  platform::Button comSelectSeen{"comSelectSeen"};    // offered after a failure; see remedy.h
  platform::Button comLowerBaud{"comLowerBaud"};
  platform::Button comSaveTrace{"comSaveTrace"};
  platform::CheckBox cheTrace{"cheTrace"};  // a trace is kept of each run
  Verdict verdict;
};

}  // namespace kvr::download
