#include "images/buffer_view.h"

#include <algorithm>

#include "platform/text.h"

namespace kvr::images {

namespace {
constexpr platform::Millis kApprovalLasts{20000};
}  // namespace

BufferViews::BufferViews(platform::World& world, platform::Activity& activity, const platform::UiLock& lock,
                         ImagePanel& panel, ImageSlots& slots, const ImageState& state)
    : world_(world), activity_(activity), lock_(lock), panel_(panel), state_(state), approval_(world.loop, [this] {
        editApproved_ = false;
      }) {
  approval_.setInterval(kApprovalLasts);
  for (ImageSlot* slot : slots.both()) connect(*slot);
}

void BufferViews::connect(ImageSlot& slot) {
  HexPane& pane = slot.pane;
  pane.model.show(slot.buffer);
  pane.onKey = [this, &slot](HexKey what, bool selecting) { key(slot, what, selecting); };
  pane.onType = [this, &slot](char32_t character) { type(slot, character); };
  pane.onClick = [this, &slot](HexSpot spot, bool selecting) { click(slot, spot, selecting); };
  pane.onUndo = [this, &slot](bool again) { undo(slot, again); };
  pane.undoOffered = [&slot](bool again) { return slot.history.offers(slot.buffer, again); };
  pane.onMoved = [this, &slot] { follow(slot); };
  slot.bar.onChange = [this, &slot] { redraw(slot); };
  slot.buffer.changed.connect([&slot] {
    slot.pane.model.keepInRange();
    slot.pane.model.compareAnew();
    slot.pane.refresh();
  });
}

void BufferViews::redraw(ImageSlot& slot) {
  HexViewModel& model = slot.pane.model;
  model.scrollTo(slot.bar.value());
  const bool marked = slot.kind == ImageKind::Code ? slot.counterBox.value() : slot.counter.armed;
  model.setField(marked ? slot.counter.field() : catalogue::AddressRange{});
  panel_.txt_length.setText(platform::hexText(static_cast<std::uint32_t>(slot.buffer.rangeEnd + 1)));
  slot.pane.refresh();
}

void BufferViews::showRange(ImageSlot& slot) {
  const AutoIncrement& counter = slot.counter;
  slot.buffer.mergeFile();
  if (counter.armed) slot.buffer.takeIn(std::max(0, counter.address - counter.bytes), counter.address);
  slot.bar.setRange(0, slot.pane.model.scrollMaximum());
  slot.buffer.touch();
  redraw(slot);
}

void BufferViews::showEnd(ImageSlot& slot) {
  slot.bar.setRange(0, 32767);
  slot.bar.setValue(32767);
  redraw(slot);
}

void BufferViews::showCleared(ImageSlot& slot) {
  slot.pane.model.endComparison();
  slot.bar.setRange(0, 64);
  slot.bar.setValue(0);
  redraw(slot);
}

void BufferViews::follow(ImageSlot& slot) {
  const bool scrolled = slot.bar.value() != slot.pane.model.topLine();
  slot.bar.setValue(slot.pane.model.topLine());
  if (scrolled)
    redraw(slot);
  else
    slot.pane.refresh();
}

void BufferViews::key(ImageSlot& slot, HexKey key, bool selecting) {
  slot.pane.model.move(key, selecting);
  follow(slot);
}

void BufferViews::click(ImageSlot& slot, HexSpot spot, bool selecting) {
  slot.pane.model.click(spot, selecting);
  if (selecting) slot.pane.model.reveal();  // a selection that is drawn over the edge scrolls on
  follow(slot);
}

// While a run takes the image, a typed digit must not change what goes into the chip.
void BufferViews::type(ImageSlot& slot, char32_t character) {
  if (lock_.busy() || !slot.pane.model.digit(character)) return;
  if (!editApproved_ && !approve()) return;
  // The question took its time: the digit is worked out on what the image holds now.
  const auto edit = slot.pane.model.digit(character);
  if (!edit) return;
  slot.history.edit(slot.buffer, edit->address, edit->value, slot.pane.model.caret().lowDigit);
  approval_.start();
  slot.pane.model.stepOn();
  follow(slot);
}

// An edit like any other, so the same question stands before it.
void BufferViews::undo(ImageSlot& slot, bool again) {
  if (lock_.busy() || !slot.history.offers(slot.buffer, again)) return;
  if (!editApproved_ && !approve()) return;
  const auto address = slot.history.step(slot.buffer, again);
  if (!address) return;
  approval_.start();
  slot.pane.model.click({*address, false}, false);
  slot.pane.model.reveal();
  follow(slot);
}

bool BufferViews::approve() {
  const auto running = activity_.begin();
  if (!running) return false;
  const bool yes = world_.dialogs.askYesNo(platform::kTitle, "Update the buffer ?");
  if (yes && !state_.imageValid) world_.dialogs.message(platform::kTitle, " Please open code file.");
  editApproved_ = yes && state_.imageValid && !lock_.busy();
  if (editApproved_) approval_.start();
  return editApproved_;
}

}  // namespace kvr::images
