#include "offline/offline_panel.h"

namespace kvr::offline {

OfflinePanel::OfflinePanel() {
  Frame18.setCaption("Off-Line ISP-Programming board is used to replace the PC.");
  comTJXZ.setCaption("Programming user code to Off-Line ISP-Programming board");
  com_TJXZ_help.setCaption("Help");
  labTJXZ[0].setCaption(
      "It's used in mass production or to update user-code. not need PC, not need giving source code to anybody.");
  labTJXZ[1].setCaption(
      "Firstly, program user code and options into the board, then program the code into target MCU from this board.");
  labTJXZ[2].setCaption("Limit the number of programmed MCU");
  labTJXZ[3].setCaption("Pins");
  txt_download_max.setText("1000000");

  combPins.setItems({"8", "14", "16", "18", "20", "24", "28", "32", "36", "40", "44", "48", "64"});
  combPins.setListIndex(9);
  che_staple[0].setCaption("自动分选机     先上电后点击下载");
  che_staple[1].setCaption("仅检查 MCU 选项");
  che_staple[2].setCaption("忽略<5uA漏电流");
  che_staple[3].setCaption("忽略<2uA漏电流");
  // A board without a sorting machine needs the first two; nobody can reach them in the window.
  che_staple[0].setValue(true);
  che_staple[1].setValue(true);
  for (std::size_t i = 0; i < che_staple.size(); ++i) che_staple[i].setVisible(false);
  labTJXZ[3].setVisible(false);
  labTJXZ[3].setEnabled(false);
  combPins.setVisible(false);
  combPins.setEnabled(false);
}

void OfflinePanel::addTo(platform::ControlRegistry& registry) {
  registry.addAll(Frame18, comTJXZ, com_TJXZ_help, txt_download_max, labTJXZ, combPins, che_staple);
}

}  // namespace kvr::offline
