#include "shell/main_panel.h"

namespace kvr::shell {

MainPanel::MainPanel() {
  std::vector<std::string> ports;
  for (int number = 1; number <= 16; ++number) ports.push_back("COM" + std::to_string(number));
  combCommPort.setItems(std::move(ports));
  combCommPort.setListIndex(0);
  FrameX[0].setCaption("Step1: Select MCU Type");
  FrameX[1].setCaption("Step2: Open code file and EEPROM file");
  FrameX[2].setCaption("Step3: Select Serial Port and Max and Min Baud Rate");
  FrameX[3].setCaption("Step4: Set Options");
  FrameX[4].setCaption("Step5: Click the Programming button then supply MCU power.");
  TabStrip2.setTabs({{"tab_file", "Code File Buffer"},
                     {"EEPROM_File", "EEPROM File Buffer"},
                     {"Debug_COM", "COM Tool"},
                     {"Batch_quantity", "Project File"},
                     {"Debug1", "Debug_SFR"},
                     {"Debug2", "Debug_xdata"}});
  TabStrip1.setTabs({{"options", "options"},
                     {"user_code", "Self-Defined-ISP"},
                     {"TJXZ", "Off-Line-ISP"},
                     {"CheckMCUoption", "Check MCU Option"},
                     {"AUTO_INCREASE", "Auto Increment"},
                     {"ISP_DEMO", "ISP DEMO"},
                     {"store_buffer", "Store Buffer"},
                     {"Hardware_Help", "Hardware Help"}});
  ProgressBar1.setVisible(false);  // a run shows it
  comMastWindow.setCaption("Shrink");
  comMastWindow.setToolTip("Hide the left column and keep the working pages");
  comTall[0].setCaption("Whole height for the upper pages");
  comTall[1].setCaption("Whole height for the lower pages");
  cheStripOnly.setCaption("Strip only");
  cheStripOnly.setToolTip("Show this strip alone, above other windows: it fits a corner of the screen");
  comHelp[0].setCaption("Help");
  comHelp[1].setCaption(" About ISP Hardware      Not occupy any resource");
  Command3.setCaption("...");
  Command3.setToolTip("Choose the model from the list");
  txtDevice.setToolTip("The model to program; type a part of its name to find it");
  combCommPort.setToolTip("The serial port that the chip is connected to");
  textMsg.setToolTip("What the tool and the chip tell during a run");
  comNotices.setCaption("History");
  comNotices.setToolTip("All that the program has had to say, with the time");
  cheBatchLog.setCaption("Write a batch log");
  cheBatchLog.setToolTip("Adds one line to a CSV file at the end of every run");
  txtBatchLog.setToolTip("The CSV file of the batch log");
}

void MainPanel::tellHeight(Area area, bool alone) {
  const bool upper = area == Area::Upper;
  comTall[upper ? 0 : 1].setToolTip(alone   ? "Share the height with the other pages again (F11)"
                                    : upper ? "Give buffers, terminal and registers the whole height (F11)"
                                            : "Give the options and their neighbours the whole height (F11)");
}

void MainPanel::addTo(platform::ControlRegistry& registry) {
  registry.addAll(textMsg, labNotice, comNotices, txtDevice, Command3, TreeViewDevice, combCommPort, portStatus,
                  imgOpen_sys, ProgressBar1, labKbyte, TabStrip1, TabStrip2, comMastWindow, cheStripOnly, cheBatchLog,
                  txtBatchLog);
  registry.add(FrameX);
  registry.add(comTall);
  registry.add(comHelp);
  registry.add(Label2);
}

}  // namespace kvr::shell
