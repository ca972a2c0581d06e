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
  setSendAreas(*this);
}

void ToolPanel::addTo(platform::ControlRegistry& registry) {
  registry.addAll(fraDebug, frmCOM_Setings, com_Debug_COM, com_Debug_Baud, com_Debug_DataBits, com_Debug_ParityCheck,
                  com_Debug_StopBits, labDebugPort, che_DTR, che_RTS);
  registry.addAll(frmOpenCloseCOM, comOpenCOM, imgOpen, comDebugClear, comDebugHelp, che_AutoOpenPort);
  registry.addAll(frmReceive, texReceive, optReceiveHex, labReceiveCount, labSendCount, comClearCount, comb_TimeStamp,
                  che_AutoScroll, che_KeepNewest, comSaveReceive, texFind, comFindNext, comFindPrevious, labFind);
  registry.addAll(frmSend, texSend, optHexSend, comb_LineEnd, comDebugSend, comClearSend, comAutoSend, texSendCycle,
                  labSendCycle);
  registry.addAll(Frame24, texSpreadSend, comSpreadSendCom, cheSpreadHex, comSpreadAutoSend, texSpreadSendCycle,
                  labSpreadSendCycle);
}

}  // namespace kvr::comtool
