#include "images/image_panel.h"

namespace kvr::images {

ImagePanel::ImagePanel() {
  comLoadFile.setCaption("Open-Code-File");
  comLoadDataFile.setCaption("Open-EEPROM-File");
  for (auto* box : {&txtAP_FileStart, &txtDataFileStart, &txt_Start_Address, &txt_length}) box->setText("0");
  // A new file replaces the old one unless the user wants two files merged: the tail of a longer old build must not
  // stay after a shorter new one.
  for (auto* box : {&cheClearAP_Buffer, &cheClearDataBuffer}) {
    box->setCaption("Clear the Buffer");
    box->setValue(true);
  }
  for (auto* view : {&txtBuffer2, &tetDataFlash2})
    view->setToolTip("You can modify any single highlight character in this buffer.");
  Frame7.setCaption("Program File: ");
  frmDataFlash.setCaption("Data File: ");
  Label7[1].setCaption("AP File effective length: ");
  Label7[2].setCaption("Data File effective length: ");

  for (auto* group : {&optAuto_Increase, &optData_Auto_Increase}) {
    (*group)[0].setCaption("HEX");
    (*group)[1].setCaption("BCD");
    (*group)[2].setCaption("ASCII");
  }
  for (std::size_t i = 0; i < 3; ++i) {
    radix_.add(optAuto_Increase[i]);
    dataRadix_.add(optData_Auto_Increase[i]);
  }
  optAuto_Increase[1].setValue(true);
  optData_Auto_Increase[1].setValue(true);
  cheAuto_Increase.setCaption("Code Auto Increment");
  cheData_Auto_Increase.setCaption("EEPROM Auto Increment");

  comStoreFile.setCaption("Save File");
  comComp.setCaption("Compare");
  comComp.setVisible(false);  // the dump it needs comes from a firmware of its own; not offered in the window
  comComp.setEnabled(false);
  cekReloadFile.setCaption("Reload the file before each programming");
  cekReloadFileWhileFileChange.setCaption("Reload the file when the file is changed and program automatically");
  cekReloadFileWhileFileChange1.setCaption(
      "Reload the file when the file is changed and send the Command automaticlly.");
}

void ImagePanel::addTo(platform::ControlRegistry& registry) {
  registry.addAll(comLoadFile, comLoadDataFile, txtAP_FileStart, txtDataFileStart, txtFileCheckSum, txtDataFileCheckSum,
                  cheClearAP_Buffer, cheClearDataBuffer, Frame7, frmDataFlash, Label7, LabISP_reange, labFileInfo,
                  labDataFileInfo, labFileFacts, labFileWarnings, labDataFileFacts, labDataFileWarnings);
  registry.addAll(txtBuffer2, tetDataFlash2, vscFile);
  registry.addAll(cheAuto_Increase, texAuto_Increase, optAuto_Increase, cheData_Auto_Increase, texData_Auto_Increase,
                  optData_Auto_Increase);
  registry.addAll(txt_Start_Address, txt_length, comStoreFile, comComp, cekReloadFile, cekReloadFileWhileFileChange,
                  cekReloadFileWhileFileChange1);
}

}  // namespace kvr::images
