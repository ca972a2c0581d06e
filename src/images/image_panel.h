// The controls of the images: files, views, serial numbers, and the store/compare/reload page.
#pragma once

#include "images/hex_pane_view.h"
#include "platform/controls.h"

namespace kvr::images {

struct ImagePanel {
  ImagePanel();
  void addTo(platform::ControlRegistry& registry);

  // Files.
  platform::Button comLoadFile{"comLoadFile"};
  platform::Button comLoadDataFile{"comLoadDataFile"};
  platform::TextBox txtAP_FileStart{"txtAP_FileStart"};  // hexadecimal start address
  platform::TextBox txtDataFileStart{"txtDataFileStart"};
  platform::TextBox txtFileCheckSum{"txtFileCheckSum"};
  platform::TextBox txtDataFileCheckSum{"txtDataFileCheckSum"};
  platform::CheckBox cheClearAP_Buffer{"cheClearAP_Buffer"};
  platform::CheckBox cheClearDataBuffer{"cheClearDataBuffer"};
  platform::Frame Frame7{"Frame7"};                             // "Program File: " and the path
  platform::Frame frmDataFlash{"frmDataFlash"};                 // "Data File: " and the path
  platform::ControlArray<platform::Label, 3> Label7{"Label7"};  // 1, 2: effective lengths; 0: on the options page
  platform::ControlArray<platform::Label, 2> LabISP_reange{"LabISP_reange"};  // address range of the application
  platform::Label labFileInfo{"labFileInfo"};  // size, CRC-32, time and notes of the code file
  platform::Label labDataFileInfo{"labDataFileInfo"};
  platform::Label labFileFacts{"labFileFacts"};        // what the code image is, in a line
  platform::Label labFileWarnings{"labFileWarnings"};  // what looks wrong about it, a line each
  platform::Label labDataFileFacts{"labDataFileFacts"};
  platform::Label labDataFileWarnings{"labDataFileWarnings"};

  // Views: 0 code, 1 data. A scroll value counts lines of 16 bytes from the start of the range.
  HexPane txtBuffer2{"txtBuffer2"};
  HexPane tetDataFlash2{"tetDataFlash2"};
  platform::ControlArray<platform::ScrollBar, 2> vscFile{"vscFile"};

  // Serial numbers. Boxes: 0 address (hexadecimal), 1 bytes, 2 next value, 3 step. Buttons: 0 HEX, 1 BCD, 2 ASCII.
  platform::CheckBox cheAuto_Increase{"cheAuto_Increase"};
  platform::ControlArray<platform::TextBox, 4> texAuto_Increase{"texAuto_Increase"};
  platform::ControlArray<platform::OptionButton, 3> optAuto_Increase{"optAuto_Increase"};
  platform::CheckBox cheData_Auto_Increase{"cheData_Auto_Increase"};
  platform::ControlArray<platform::TextBox, 4> texData_Auto_Increase{"texData_Auto_Increase"};
  platform::ControlArray<platform::OptionButton, 3> optData_Auto_Increase{"optData_Auto_Increase"};

  // Store, compare, reload.
  platform::TextBox txt_Start_Address{"txt_Start_Address"};  // hexadecimal
  platform::TextBox txt_length{"txt_length"};                // hexadecimal; also the length of the view drawn last
  platform::Button comStoreFile{"comStoreFile"};
  platform::Button comComp{"comComp"};
  platform::CheckBox cekReloadFile{"cekReloadFile"};
  platform::CheckBox cekReloadFileWhileFileChange{"cekReloadFileWhileFileChange"};
  platform::CheckBox cekReloadFileWhileFileChange1{"cekReloadFileWhileFileChange1"};

 private:
  platform::OptionGroup radix_;
  platform::OptionGroup dataRadix_;
};

}  // namespace kvr::images
