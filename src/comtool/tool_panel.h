// The controls of the terminal page: port settings, receive pane, send areas.
//
// Captions are state here: "Open COM" / "Close COM", "Repeat Send" / "Stop Repeat", "Round Send" / "Stop Round" tell
// whether the port is open and which automatic send runs. Use the constants below to compare.
#pragma once

#include "comtool/receive_pane.h"
#include "platform/controls.h"
#include "platform/text_codec.h"

namespace kvr::comtool {

inline constexpr const char* kOpenCaption = "Open COM";
inline constexpr const char* kCloseCaption = "Close COM";
inline constexpr const char* kRepeatCaption = "Repeat Send";
inline constexpr const char* kStopRepeatCaption = "Stop Repeat";
inline constexpr const char* kRoundCaption = "Round Send";
inline constexpr const char* kStopRoundCaption = "Stop Round";
// What `texSend` holds at the first start.
inline constexpr const char* kSampleSendText = "KVR-ISP 0123456789 The quick brown fox jumps over the lazy dog.";

struct ToolPanel {
  static constexpr std::size_t kPages = 3;     // pages that show the port's state: terminal, two monitor pages
  static constexpr std::size_t kStrings = 25;  // strings of the round

  ToolPanel();
  void addTo(platform::ControlRegistry& registry);

  platform::Frame fraDebug{"fraDebug"};  // the page

  // Port settings.
  platform::Frame frmCOM_Setings{"frmCOM_Setings"};
  platform::ComboBox com_Debug_COM{"com_Debug_COM"};  // "COM1" .. "COM16"
  platform::ComboBox com_Debug_Baud{"com_Debug_Baud"};
  platform::ComboBox com_Debug_DataBits{"com_Debug_DataBits"};
  platform::ComboBox com_Debug_ParityCheck{"com_Debug_ParityCheck"};
  platform::ComboBox com_Debug_StopBits{"com_Debug_StopBits"};
  platform::ControlArray<platform::Label, 5> labDebugPort{"labDebugPort"};  // before the five boxes, in their order
  platform::CheckBox che_DTR{"che_DTR"};                                    // modem lines of the open port
  platform::CheckBox che_RTS{"che_RTS"};
  platform::ComboBox comb_Flow{"comb_Flow"};                     // none, RTS/CTS, XON/XOFF
  platform::Button comBreak{"comBreak"};                         // holds the line low for a moment
  platform::ControlArray<platform::Lamp, 4> imgLine{"imgLine"};  // CTS, DSR, DCD, RI
  platform::ControlArray<platform::Label, 4> labLine{"labLine"};
  platform::CheckBox che_Reopen{"che_Reopen"};  // opens again when its adapter comes back
  platform::Label labPort{"labPort"};           // what the terminal waits for

  // Open and close; one element on each page, changed together. A lamp is on while the port is open.
  platform::Frame frmOpenCloseCOM{"frmOpenCloseCOM"};
  platform::ControlArray<platform::Button, kPages> comOpenCOM{"comOpenCOM"};
  platform::ControlArray<platform::Lamp, kPages> imgOpen{"imgOpen"};
  platform::ControlArray<platform::Button, kPages> comDebugClear{"comDebugClear"};  // 1, 2: the monitor's lists
  platform::ControlArray<platform::Button, kPages> comDebugHelp{"comDebugHelp"};
  platform::CheckBox che_AutoOpenPort{"che_AutoOpenPort"};  // the terminal takes the port at the end of a download

  // Receive area.
  platform::Frame frmReceive{"frmReceive"};
  ReceivePane texReceive{"texReceive"};
  platform::ControlArray<platform::OptionButton, 2> optReceiveHex{"optReceiveHex"};  // 0: text, 1: hexadecimal
  platform::Label labReceiveCount{"labReceiveCount"};
  platform::Label labSendCount{"labSendCount"};
  platform::Button comClearCount{"comClearCount"};
  platform::ComboBox comb_TimeStamp{"comb_TimeStamp"};  // off, per line, per burst
  platform::CheckBox che_AutoScroll{"che_AutoScroll"};  // the pane follows what comes in
  platform::CheckBox che_KeepNewest{"che_KeepNewest"};  // at the display limit the oldest text goes
  platform::Button comSaveReceive{"comSaveReceive"};
  platform::TextBox texFind{"texFind"};
  platform::Button comFindNext{"comFindNext"};
  platform::Button comFindPrevious{"comFindPrevious"};
  platform::Label labFind{"labFind"};                 // "Not found" and the like
  platform::ComboBox comb_Encoding{"comb_Encoding"};  // in the order of platform::Encoding
  platform::CheckBox che_Escapes{"che_Escapes"};      // escape sequences are passed over
  platform::CheckBox che_HexLines{"che_HexLines"};    // in hexadecimal: a new line after a silence of ...
  platform::TextBox txtHexSilence{"txtHexSilence"};   // ... so many milliseconds
  platform::Label labHexSilence{"labHexSilence"};

  // Log of what comes.
  platform::CheckBox che_Log{"che_Log"};
  platform::ComboBox comb_LogForm{"comb_LogForm"};  // as received, as shown
  platform::TextBox txtLogFile{"txtLogFile"};       // names get the date, see rolling_log.h
  platform::Button comLogFile{"comLogFile"};
  platform::TextBox txtLogSize{"txtLogSize"};                         // of one file, MB
  platform::TextBox txtLogFiles{"txtLogFiles"};                       // that are kept
  platform::ControlArray<platform::Label, 3> labLogBox{"labLogBox"};  // before the three boxes
  platform::Label labLog{"labLog"};                                   // where it goes and how much it is

  // Paste.
  platform::Button comPaste{"comPaste"};
  platform::Button comPasteStop{"comPasteStop"};
  platform::ProgressBar barPaste{"barPaste"};
  platform::Label labPaste{"labPaste"};            // how the last one ended
  platform::TextBox txtPasteChar{"txtPasteChar"};  // pause after each character, milliseconds
  platform::TextBox txtPasteLine{"txtPasteLine"};  // pause after each line, milliseconds
  platform::ControlArray<platform::Label, 2> labPasteBox{"labPasteBox"};
  platform::CheckBox che_LocalEcho{"che_LocalEcho"};  // what is sent shows, too

  // Single string.
  platform::Frame frmSend{"frmSend"};
  platform::TextBox texSend{"texSend"};
  platform::ControlArray<platform::OptionButton, 2> optHexSend{"optHexSend"};  // 0: text, 1: hexadecimal
  platform::ComboBox comb_LineEnd{"comb_LineEnd"};                             // added to every text that is sent
  platform::Button comDebugSend{"comDebugSend"};
  platform::Button comSendOlder{"comSendOlder"};  // keys of the send line: what was sent before
  platform::Button comSendNewer{"comSendNewer"};
  platform::Button comClearSend{"comClearSend"};
  platform::Button comAutoSend{"comAutoSend"};
  platform::TextBox texSendCycle{"texSendCycle"};                           // milliseconds
  platform::ControlArray<platform::Label, 2> labSendCycle{"labSendCycle"};  // before and after the box

  // The list of strings.
  platform::Frame Frame24{"Frame24"};
  platform::ControlArray<platform::TextBox, kStrings> texSpreadSend{"texSpreadSend"};
  platform::ControlArray<platform::Button, kStrings> comSpreadSendCom{"comSpreadSendCom"};  // caption: its number
  platform::ControlArray<platform::CheckBox, kStrings> cheSpreadHex{"cheSpreadHex"};
  platform::Button comSpreadAutoSend{"comSpreadAutoSend"};
  platform::TextBox texSpreadSendCycle{"texSpreadSendCycle"};                           // milliseconds
  platform::ControlArray<platform::Label, 2> labSpreadSendCycle{"labSpreadSendCycle"};  // before and after the box

 private:
  platform::OptionGroup receiveForm_;
  platform::OptionGroup sendForm_;
};

// Of what comes and of what is sent.
inline platform::Encoding encodingOf(const ToolPanel& panel) {
  const int index = panel.comb_Encoding.listIndex();
  return index < 0 || index > 3 ? platform::Encoding::System : static_cast<platform::Encoding>(index);
}

}  // namespace kvr::comtool
