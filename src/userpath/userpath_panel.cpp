#include "userpath/userpath_panel.h"

#include <string>
#include <vector>

namespace kvr::userpath {
namespace {

constexpr int kNoParity = 2;
constexpr int kEvenParity = 0;
constexpr int kBaud38400 = 2;

void fillLine(const LineBoxes& line, std::vector<std::string> bauds, int parity) {
  line.baud.setItems(std::move(bauds));
  line.parity.setItems({"Even", "Odd", "None"});
  line.dataBits.setItems({"8", "7", "6", "5"});
  line.stopBits.setItems({"1", "1.5", "2"});
  line.baud.setListIndex(kBaud38400);
  line.parity.setListIndex(parity);
  line.dataBits.setListIndex(0);
  line.stopBits.setListIndex(0);
}

template <std::size_t N>
void captionLine(platform::ControlArray<platform::Label, N>& labels, std::size_t first) {
  labels[first].setCaption("  Baud");
  labels[first + 1].setCaption("Verify");  // the parity
  labels[first + 2].setCaption("  Data");
  labels[first + 3].setCaption("  Stop");
}

}  // namespace

std::string settingsText(const LineBoxes& line) {
  return line.baud.trimmed() + "," + line.parity.text().substr(0, 1) + "," + line.dataBits.trimmed() + "," +
         line.stopBits.trimmed();
}

UserPathPanel::UserPathPanel() {
  const std::vector<std::string> demoBauds{"115200", "57600", "38400", "28800", "19200",
                                           "14400",  "9600",  "4800",  "2400"};
  fillLine(demoLine(), demoBauds, kEvenParity);
  fillLine(demoCommandLine(), demoBauds, kEvenParity);
  fillLine(userCodeLine(),
           {"115200", "57600", "38400", "28800", "19200", "14400", "12800", "11520", "9600", "4800", "2400", "1200"},
           kNoParity);

  com_Demo_DownLoad.setCaption("Program");
  com_Demo_Re_DownLoad.setCaption("Re-Program");
  com_Demo_Stop.setCaption("Stop");
  com_Demo_Stop.setEnabled(false);
  che_Demo_DownLoad.setCaption("Send the self-defined command first");
  labDemo[0].setCaption("   ISP Demo COM setings:");
  captionLine(labDemo, 1);
  labDemo[5].setCaption(" setings:");
  captionLine(labDemo, 6);
  labDemo[10].setCaption("   command:");

  Frame8.setCaption("    ---- Self-defined program command ----");
  comSendUserCode.setCaption("Send self-defined program command");
  comSendUserCode.setEnabled(false);  // until a model has been chosen
  labUserCode[0].setCaption(" setings:");
  captionLine(labUserCode, 1);
  labUserCode[5].setCaption("   command:");
  labUserCode[6].setCaption("Self-defined program command, not need a cold start reset.");
}

void UserPathPanel::addTo(platform::ControlRegistry& registry) {
  registry.addAll(Frame11, com_Demo_DownLoad, com_Demo_Re_DownLoad, com_Demo_Stop, cob_DEMO_DownLoad_Baud,
                  cob_DEMO_DownLoad_Parity, cob_DEMO_DownLoad_DataBits, cob_DEMO_DownLoad_StopBits, che_Demo_DownLoad,
                  txt_DEMO_UserCode, cob_DEMO_UserCode_Baud, cob_DEMO_UserCode_Parity, cob_DEMO_UserCode_DataBits,
                  cob_DEMO_UserCode_StopBits, labDemo);
  registry.addAll(Frame8, comSendUserCode, txtUserCode, cobUserCodeBaud, cobUserCodeParity, cobUserCodeDataBits,
                  cobUserCodeStopBits, labUserCode);
}

}  // namespace kvr::userpath
