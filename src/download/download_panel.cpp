#include "download/download_panel.h"

#include <string>
#include <vector>

namespace kvr::download {

void Verdict::set(VerdictKind value) {
  if (value_ == value) return;
  value_ = value;
  changed.emit();
}

DownloadPanel::DownloadPanel() {
  const std::vector<std::string> rates = {"115200", "57600", "38400", "28800", "19200",
                                          "14400",  "9600",  "4800",  "2400",  "1200"};
  cobBaudMin.setItems(rates);
  cobBaudMin.setListIndex(8);
  cobBaudMax.setItems(rates);
  cobBaudMax.setListIndex(0);
  cheSlowAnswers.setCaption("Slow answers");
  cheSlowAnswers.setToolTip("Leaves the chip 10 ms after each of its answers, for chips that are slow to listen again");
  std::vector<std::string> seconds;
  for (int i = 0; i <= 20; ++i) seconds.push_back(std::to_string(i));
  for (const char* longer : {"30", "45", "60", "90", "120"}) seconds.emplace_back(longer);
  comDalay_ReDownLoad.setEditable(true);
  comDalay_ReDownLoad.setItems(seconds);
  comDalay_ReDownLoad.setListIndex(4);
  comDownload[0].setCaption("Program");
  comDownload[1].setCaption("Re-Program");
  comStop_Download.setCaption("Stop");
  comStop_Download.setEnabled(false);
  comReadChipLock.setCaption("Check MCU Option");
  comPlan.setCaption("What will happen");
  Command2.setCaption("TL");
  comClear_OK_Count.setCaption("Clear");
  txtWrite_OK_Count.setText("0");
  beepGroup.add(optBeepYes);
  beepGroup.add(optBeepNo);
  optBeepYes.setCaption("Yes");
  optBeepNo.setCaption("No");
  optBeepYes.setValue(true);
  cobPowerLine.setItems({"none", "DTR", "RTS"});
  cobPowerLine.setListIndex(0);
  cobPowerLevel.setItems({"high", "low"});
  cobPowerLevel.setListIndex(0);
  txtPowerOff.setText("500");
  comLastRun.setCaption("Last run");
  comLastRun.setEnabled(false);
  comSelectSeen.setCaption("Select");
  comSelectSeen.setVisible(false);
  comLowerBaud.setCaption("Lower Max Baud and try again");
  comLowerBaud.setVisible(false);
  comSaveTrace.setCaption("Save trace");
  cheTrace.setCaption("Keep a trace of each run");
  cheTrace.setToolTip(
      "What goes over the line, the firmware included, is kept for \"Save trace\", and written to a file when a run "
      "fails");
  cheTrace.setValue(true);
}

void DownloadPanel::addTo(platform::ControlRegistry& registry) {
  registry.add(comDownload);
  registry.addAll(comStop_Download, comReadChipLock, comPlan, Command2, cheTL, cobBaudMin, cobBaudMax, cheSlowAnswers,
                  txtWrite_OK_Count, comClear_OK_Count, comDalay_ReDownLoad, optBeepYes, optBeepNo, cobPowerLine,
                  cobPowerLevel, txtPowerOff, comLastRun, comSelectSeen, comLowerBaud, comSaveTrace, cheTrace);
}

}  // namespace kvr::download
