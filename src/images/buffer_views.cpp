#include "images/buffer_views.h"

#include <algorithm>

#include "platform/text.h"

namespace kvr::images {

using platform::Millis;

namespace {
constexpr Millis kApprovalLasts{20000};
}  // namespace

BufferViews::BufferViews(platform::World& world, ImagePanel& panel, ImageState& state)
    : world_(world), panel_(panel), state_(state), Timer11_(world.loop, [this] { editApproved_ = false; }) {
  Timer11_.setInterval(kApprovalLasts);
  for (int i = 0; i < 2; ++i) {
    pane(i).model.show(buffer(i));
    pane(i).onKey = [this, i](HexKey key, bool selecting) { this->key(i, key, selecting); };
    pane(i).onType = [this, i](char32_t character) { type(i, character); };
    pane(i).onClick = [this, i](HexSpot spot, bool selecting) {
      pane(i).model.click(spot, selecting);
      if (selecting) pane(i).model.reveal();  // a selection that is drawn over the edge scrolls on
      follow(i);
    };
    pane(i).onMoved = [this, i] { follow(i); };
    panel_.vscFile[static_cast<std::size_t>(i)].onChange = [this, i] { vscFile_Change(i); };
    buffer(i).changed.connect([this, i] {
      pane(i).model.keepInRange();
      pane(i).refresh();
    });
  }
}

void BufferViews::vscFile_Change(int index) {
  HexViewModel& model = pane(index).model;
  model.scrollTo(panel_.vscFile[static_cast<std::size_t>(index)].value());
  if (readCounter && counterOn) model.setField(counterOn(index) ? readCounter(index).field() : AddressSpan{});
  panel_.txt_length.setText(platform::hexText(static_cast<std::uint32_t>(buffer(index).rangeEnd + 1)));
  pane(index).refresh();
}

void BufferViews::showRange(int index, const AutoIncrement& counter) {
  ImageBuffer& image = buffer(index);
  image.mergeFile();
  if (counter.armed) image.takeIn(std::max(0, counter.address - counter.bytes), counter.address);
  panel_.vscFile[static_cast<std::size_t>(index)].setRange(0, pane(index).model.scrollMaximum());
  image.touch();
  vscFile_Change(index);
}

void BufferViews::showEnd(int index) {
  auto& bar = panel_.vscFile[static_cast<std::size_t>(index)];
  bar.setRange(0, 32767);
  bar.setValue(32767);
  vscFile_Change(index);
}

void BufferViews::showCleared(int index) {
  auto& bar = panel_.vscFile[static_cast<std::size_t>(index)];
  bar.setRange(0, 64);
  bar.setValue(0);
  vscFile_Change(index);
}

void BufferViews::follow(int index) {
  auto& bar = panel_.vscFile[static_cast<std::size_t>(index)];
  const bool scrolled = bar.value() != pane(index).model.topLine();
  bar.setValue(pane(index).model.topLine());
  if (scrolled)
    vscFile_Change(index);
  else
    pane(index).refresh();
}

void BufferViews::key(int index, HexKey key, bool selecting) {
  pane(index).model.move(key, selecting);
  follow(index);
}

void BufferViews::type(int index, char32_t character) {
  if (readOnly_ || asking_ || !pane(index).model.digit(character)) return;
  if (!editApproved_ && !approve()) return;
  // The question took its time: the digit is worked out on what the image holds now.
  const auto edit = pane(index).model.digit(character);
  if (!edit) return;
  const std::uint8_t value = edit->value;
  buffer(index).edit(edit->address, {&value, 1});
  Timer11_.start();
  pane(index).model.stepOn();
  follow(index);
}

bool BufferViews::approve() {
  asking_ = true;
  runAlone(alone, [this] {
    const bool yes = world_.dialogs.askYesNo(platform::kTitle, "Update the buffer ?");
    if (yes && !state_.imageValid) world_.dialogs.message(platform::kTitle, " Please open code file.");
    editApproved_ = yes && state_.imageValid && !readOnly_;
  });
  asking_ = false;
  if (editApproved_) Timer11_.start();
  return editApproved_;
}

}  // namespace kvr::images
