#include "images/image_room.h"

#include "platform/text.h"

namespace kvr::images {

ImageRoom::ImageRoom(platform::World& world, const catalogue::SelectedModel& selected, platform::TextBox& textMsg)
    : views(world, panel, state),
      counters(world, selected, panel, state, views),
      loader(world, selected, panel, state, views, counters),
      storeCompare(world, panel, state, textMsg),
      watcher(world, panel, state, loader),
      selected_(selected) {
  loader.clearBuffers();
}

void ImageRoom::showModel() {
  const auto digits = [](std::int32_t address) {
    return platform::padLeft(platform::hexText(static_cast<std::uint32_t>(address)), 4);
  };
  panel.LabISP_reange[0].setCaption(digits(selected_.range.apStart));
  panel.LabISP_reange[1].setCaption(digits(selected_.range.top));
}

void ImageRoom::setDataFileControls(bool enable) {
  dataOffered_ = enable;
  const auto& model = selected_.record;
  panel.comLoadDataFile.setEnabled(enable && model.dataEnd - model.dataStart >= 100);
  panel.txtDataFileStart.setEnabled(enable);
  panel.txtDataFileCheckSum.setEnabled(enable);
  panel.cheClearDataBuffer.setEnabled(enable);
  counters.enableControls(codeOffered_, dataOffered_);
}

void ImageRoom::applyLock(int uiLockState) {
  const bool free = uiLockState == 0;
  for (platform::Control* control :
       std::initializer_list<platform::Control*>{&panel.txtAP_FileStart, &panel.txtFileCheckSum,
                                                 &panel.cheClearAP_Buffer, &panel.comLoadFile, &panel.comStoreFile})
    control->setEnabled(free);
  codeOffered_ = free;
  setDataFileControls(free && catalogue::hasDataFile(selected_.record));
  views.setReadOnly(uiLockState == 1 || uiLockState == 3);
}

}  // namespace kvr::images
