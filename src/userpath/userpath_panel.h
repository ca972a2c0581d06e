// The controls of the tabs "ISP DEMO" (downloads through a routine in the user's own program) and "Self-Defined-ISP" (a
// command that makes the user's program reset into the boot firmware).
#pragma once

#include "platform/controls.h"

namespace kvr::userpath {

// Four boxes that say how a serial line is set.
struct LineBoxes {
  platform::ComboBox& baud;
  platform::ComboBox& parity;
  platform::ComboBox& dataBits;
  platform::ComboBox& stopBits;
};

// "38400,E,8,1.5": baud, first letter of the parity, data bits, stop bits.
std::string settingsText(const LineBoxes& line);

struct UserPathPanel {
  UserPathPanel();
  void addTo(platform::ControlRegistry& registry);

  // The page of the demo routine.
  platform::Frame Frame11{"Frame11"};
  platform::Button com_Demo_DownLoad{"com_Demo_DownLoad"};
  platform::Button com_Demo_Re_DownLoad{"com_Demo_Re_DownLoad"};
  platform::Button com_Demo_Stop{"com_Demo_Stop"};
  platform::ComboBox cob_DEMO_DownLoad_Baud{"cob_DEMO_DownLoad_Baud"};
  platform::ComboBox cob_DEMO_DownLoad_Parity{"cob_DEMO_DownLoad_Parity"};
  platform::ComboBox cob_DEMO_DownLoad_DataBits{"cob_DEMO_DownLoad_DataBits"};
  platform::ComboBox cob_DEMO_DownLoad_StopBits{"cob_DEMO_DownLoad_StopBits"};
  platform::CheckBox che_Demo_DownLoad{"che_Demo_DownLoad"};  // send the command before the download
  platform::TextBox txt_DEMO_UserCode{"txt_DEMO_UserCode"};   // the command, hexadecimal
  platform::ComboBox cob_DEMO_UserCode_Baud{"cob_DEMO_UserCode_Baud"};
  platform::ComboBox cob_DEMO_UserCode_Parity{"cob_DEMO_UserCode_Parity"};
  platform::ComboBox cob_DEMO_UserCode_DataBits{"cob_DEMO_UserCode_DataBits"};
  platform::ComboBox cob_DEMO_UserCode_StopBits{"cob_DEMO_UserCode_StopBits"};
  // 0: above the download's line settings; 1..4: before its baud, parity, data bits, stop bits; 5: above the command's
  // line settings; 6..9: before its boxes; 10: before the command.
  platform::ControlArray<platform::Label, 11> labDemo{"labDemo"};

  // The page of the self-defined command.
  platform::Frame Frame8{"Frame8"};
  platform::Button comSendUserCode{"comSendUserCode"};
  platform::TextBox txtUserCode{"txtUserCode"};  // the command, hexadecimal
  platform::ComboBox cobUserCodeBaud{"cobUserCodeBaud"};
  platform::ComboBox cobUserCodeParity{"cobUserCodeParity"};
  platform::ComboBox cobUserCodeDataBits{"cobUserCodeDataBits"};
  platform::ComboBox cobUserCodeStopBits{"cobUserCodeStopBits"};
  // 0: above the line settings; 1..4: before baud, parity, data bits, stop bits; 5: before the command; 6: the note.
  platform::ControlArray<platform::Label, 7> labUserCode{"labUserCode"};

  LineBoxes demoLine() {
    return {cob_DEMO_DownLoad_Baud, cob_DEMO_DownLoad_Parity, cob_DEMO_DownLoad_DataBits, cob_DEMO_DownLoad_StopBits};
  }
  LineBoxes demoCommandLine() {
    return {cob_DEMO_UserCode_Baud, cob_DEMO_UserCode_Parity, cob_DEMO_UserCode_DataBits, cob_DEMO_UserCode_StopBits};
  }
  LineBoxes userCodeLine() { return {cobUserCodeBaud, cobUserCodeParity, cobUserCodeDataBits, cobUserCodeStopBits}; }
};

}  // namespace kvr::userpath
