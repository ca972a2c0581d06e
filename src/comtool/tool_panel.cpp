#include "comtool/tool_panel.h"

namespace kvr::comtool {

namespace {

void fillPortBoxes(ToolPanel& p) {
  std::vector<std::string> ports;
  for (int n = 1; n <= 16; ++n) ports.push_back("COM" + std::to_string(n));
  p.com_Debug_COM.setItems(std::move(ports));
  p.com_Debug_COM.setListIndex(0);
  p.com_Debug_Baud.setItems({"256000", "128000", "115200", "57600", "38400", "28800", "19200", "14400", "9600", "4800",
                             "2400", "1200", "600"});
  p.com_Debug_Baud.setListIndex(2);
  p.com_Debug_Baud.setEditable(true);
  p.com_Debug_DataBits.setItems({"8", "7", "6", "5", "4"});
  p.com_Debug_DataBits.setListIndex(0);
  p.com_Debug_ParityCheck.setItems({"Even", "Odd", "None"});
  p.com_Debug_ParityCheck.setListIndex(2);
  p.com_Debug_StopBits.setItems({"1", "2"});
  p.com_Debug_StopBits.setListIndex(0);
  const char* captions[] = {"  COM", "  Baud", "  Data", "  Parity", "  Stop"};
  for (std::size_t i = 0; i < p.labDebugPort.size(); ++i) p.labDebugPort[i].setCaption(captions[i]);
}

void nameButtons(ToolPanel& p) {
  p.fraDebug.setCaption("COM Tool");
  p.frmCOM_Setings.setCaption("COM settings");
  p.frmOpenCloseCOM.setCaption("Open/Close COM");
  for (std::size_t i = 0; i < ToolPanel::kPages; ++i) {
    p.comOpenCOM[i].setCaption(kOpenCaption);
    p.comDebugClear[i].setCaption(i == 0 ? "Clear Receive" : "Clear");
    p.comDebugHelp[i].setCaption("Help");
  }
  p.che_AutoOpenPort.setCaption("Open COM after the download");
  p.che_DTR.setCaption("DTR");
  p.che_RTS.setCaption("RTS");
  p.comb_Flow.setItems({"No flow control", "RTS/CTS", "XON/XOFF"});
  p.comb_Flow.setListIndex(0);
  p.comBreak.setCaption("Break");
  p.comBreak.setToolTip("Holds the line low for a quarter of a second");
  p.che_Reopen.setCaption("Open again when the adapter comes back");
  p.che_DTR.setToolTip("Also before the port is opened");
  p.che_RTS.setToolTip("Also before the port is opened; with RTS/CTS the driver sets it");
  const char* lines[] = {"CTS", "DSR", "DCD", "RI"};
  for (std::size_t i = 0; i < p.labLine.size(); ++i) p.labLine[i].setCaption(lines[i]);
  p.che_DTR.setValue(true);
  p.che_RTS.setValue(true);
}

void setReceiveArea(ToolPanel& p) {
  p.frmReceive.setCaption("Receive display buffer/keyboard send area");
  p.optReceiveHex[0].setCaption("Text");
  p.optReceiveHex[1].setCaption("HEX");
  p.labReceiveCount.setCaption("Receive counter:0");
  p.labSendCount.setCaption("Send counter:0");
  p.comClearCount.setCaption("Clear counters");
  p.comb_TimeStamp.setItems({"No time stamp", "Time stamp per line", "Time stamp per burst"});
  p.comb_TimeStamp.setListIndex(0);
  p.che_AutoScroll.setCaption("Auto scroll");
  p.che_AutoScroll.setValue(true);
  p.che_KeepNewest.setCaption("Keep the newest");
  p.che_KeepNewest.setToolTip("When the pane is full, the oldest text goes instead of the port being closed.");
  p.comSaveReceive.setCaption("Save text");
  p.comFindNext.setCaption("Find next");
  p.comFindPrevious.setCaption("Find previous");
  p.comb_Encoding.setItems({"System's own encoding", "UTF-8", "Latin-1", "GBK"});
  p.comb_Encoding.setListIndex(0);
  p.comb_Encoding.setToolTip("Of the text that comes and of the text that is sent");
  p.che_Escapes.setCaption("Hide escape sequences");
  p.che_Escapes.setToolTip("Passes over what firmware sends for colours and cursor moves");
  p.che_HexLines.setCaption("HEX: new line after");
  p.txtHexSilence.setText("100");
  p.labHexSilence.setCaption("ms of silence");
}

void setLog(ToolPanel& p) {
  p.che_Log.setCaption("Log to file");
  p.che_Log.setToolTip("Writes all that comes to a file with the date in its name, also while the pane is cleared");
  p.comb_LogForm.setItems({"Bytes as received", "Text as shown"});
  p.comb_LogForm.setListIndex(0);
  p.comLogFile.setCaption("Browse...");
  p.txtLogSize.setText("10");
  p.txtLogFiles.setText("10");
  p.txtLogFiles.setToolTip("When there are more, the oldest one is deleted");
  const char* captions[] = {"File", "MB in a file", "Files kept"};
  for (std::size_t i = 0; i < p.labLogBox.size(); ++i) p.labLogBox[i].setCaption(captions[i]);
}

void setPaste(ToolPanel& p) {
  p.comPaste.setCaption("Paste");
  p.comPaste.setToolTip("Sends the text of the clipboard (Ctrl+Shift+V or Shift+Insert in the pane)");
  p.comPasteStop.setCaption("Cancel paste");
  p.txtPasteChar.setText("0");
  p.txtPasteLine.setText("0");
  p.labPasteBox[0].setCaption("Pause after a character");
  p.labPasteBox[1].setCaption("Pause after a line");
  p.che_LocalEcho.setCaption("Local echo");
  p.che_LocalEcho.setToolTip("Shows what is sent among what comes");
}

void nameInterval(platform::ControlArray<platform::Label, 2>& labels) {
  labels[0].setCaption("Interval");
  labels[1].setCaption("mS");
}

void setSendAreas(ToolPanel& p) {
  p.frmSend.setCaption("Send");
  p.optHexSend[0].setCaption("Text");
  p.optHexSend[1].setCaption("HEX");
  p.comb_LineEnd.setItems({"No line end", "CR", "LF", "CR LF"});
  p.comb_LineEnd.setListIndex(0);
  p.comb_LineEnd.setToolTip("What is added to every text that is sent");
  p.texSend.setText(kSampleSendText);
  p.texSend.setToolTip("Enter sends; the up and down keys bring back what was sent before");
  p.comDebugSend.setCaption("Send");
  p.comClearSend.setCaption("Clear");
  p.comAutoSend.setCaption(kRepeatCaption);
  p.texSendCycle.setText("1000");
  nameInterval(p.labSendCycle);
  p.Frame24.setCaption("Strings");
  for (std::size_t i = 0; i < ToolPanel::kStrings; ++i) {
    p.comSpreadSendCom[i].setCaption(std::to_string(i + 1));
    p.cheSpreadHex[i].setCaption("HEX");
  }
  p.comSpreadAutoSend.setCaption(kRoundCaption);
  p.texSpreadSendCycle.setText("1000");
  nameInterval(p.labSpreadSendCycle);
}

}  // namespace

ToolPanel::ToolPanel() {
  for (std::size_t i = 0; i < 2; ++i) {
    receiveForm_.add(optReceiveHex[i]);
    sendForm_.add(optHexSend[i]);
  }
  optReceiveHex[0].setValue(true);
  optHexSend[0].setValue(true);
  fillPortBoxes(*this);
  nameButtons(*this);
  setReceiveArea(*this);
  setLog(*this);
  setPaste(*this);
  setSendAreas(*this);
}

void ToolPanel::addTo(platform::ControlRegistry& registry) {
  registry.addAll(fraDebug, frmCOM_Setings, com_Debug_COM, com_Debug_Baud, com_Debug_DataBits, com_Debug_ParityCheck,
                  com_Debug_StopBits, labDebugPort, che_DTR, che_RTS, comb_Flow, comBreak, imgLine, labLine, che_Reopen,
                  labPort);
  registry.addAll(frmOpenCloseCOM, comOpenCOM, imgOpen, comDebugClear, comDebugHelp, che_AutoOpenPort);
  registry.addAll(frmReceive, texReceive, optReceiveHex, labReceiveCount, labSendCount, comClearCount, comb_TimeStamp,
                  che_AutoScroll, che_KeepNewest, comSaveReceive, texFind, comFindNext, comFindPrevious, labFind,
                  comb_Encoding, che_Escapes, che_HexLines, txtHexSilence, labHexSilence);
  registry.addAll(che_Log, comb_LogForm, txtLogFile, comLogFile, txtLogSize, txtLogFiles, labLogBox, labLog);
  registry.addAll(comPaste, comPasteStop, barPaste, labPaste, txtPasteChar, txtPasteLine, labPasteBox, che_LocalEcho);
  registry.addAll(frmSend, texSend, optHexSend, comb_LineEnd, comDebugSend, comSendOlder, comSendNewer, comClearSend,
                  comAutoSend, texSendCycle, labSendCycle);
  registry.addAll(Frame24, texSpreadSend, comSpreadSendCom, cheSpreadHex, comSpreadAutoSend, texSpreadSendCycle,
                  labSpreadSendCycle);
}

}  // namespace kvr::comtool
