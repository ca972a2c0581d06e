#include "images/image_room.h"

#include "platform/text.h"

namespace kvr::images {

ImageRoom::ImageRoom(platform::World& world, const catalogue::SelectedModel& selected, platform::Activity& activity,
                     platform::UiLock& lock, platform::TextBox& textMsg)
    : slots(panel, state),
      facts(selected, slots),
      views(world, activity, lock, panel, slots, state),
      counters(world, activity, selected, slots, views),
      loader(world, selected, slots, state, views, counters),
      opener(world, activity, slots, loader),
      compareFile(world, activity, selected, slots, loader),
      reloader(world, slots, loader, counters),
      watcher(world, activity, panel, state, loader, reloader),
      storeCompare(world, activity, panel, state, textMsg),
      selected_(selected),
      lock_(lock) {
  loader.clearBuffers();
  lock.changed.connect([this] { applyLock(); });
}

void ImageRoom::showModel() {
  const auto digits = [](std::int32_t address) {
    return platform::padLeft(platform::hexText(static_cast<std::uint32_t>(address)), 4);
  };
  panel.LabISP_reange[0].setCaption(digits(selected_.range.apStart));
  panel.LabISP_reange[1].setCaption(digits(selected_.range.top));
  facts.show();
}

void ImageRoom::setDataFileControls(bool enable) {
  const auto& model = selected_.record;
  panel.comLoadDataFile.setEnabled(enable && model.dataEnd - model.dataStart >= 100);
  panel.txtDataFileStart.setEnabled(enable);
  panel.txtDataFileCheckSum.setEnabled(enable);
  panel.cheClearDataBuffer.setEnabled(enable);
  counters.enableControls(codeOffered_, enable);
}

void ImageRoom::applyLock() {
  codeOffered_ = lock_.free();
  for (platform::Control* control :
       std::initializer_list<platform::Control*>{&panel.txtAP_FileStart, &panel.txtFileCheckSum,
                                                 &panel.cheClearAP_Buffer, &panel.comLoadFile, &panel.comStoreFile})
    control->setEnabled(codeOffered_);
  setDataFileControls(codeOffered_ && catalogue::hasDataFile(selected_.record));
}

}  // namespace kvr::images
