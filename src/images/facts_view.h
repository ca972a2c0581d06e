// What the images are, beside their files: a line about each, and what the user should look at before sending it. It
// follows the buffers by itself.
#pragma once

#include <vector>

#include "catalogue/selected_model.h"
#include "images/image_slot_panel.h"

namespace kvr::images {

class FactsView {
 public:
  FactsView(const catalogue::SelectedModel& selected, ImageSlots& slots);
  void show();  // after a model was applied

 private:
  void show(ImageSlot& slot);
  const catalogue::SelectedModel& selected_;
  ImageSlots& slots_;
  std::vector<platform::Signal::Token> tokens_;
};

// The lines of `warnings` of a slot: facts that look wrong, and the notes of `info`, which `infoText` has made.
std::vector<std::string> warningsOf(const ImageBuffer& buffer, const catalogue::SelectedModel& model,
                                    const std::string& info);

}  // namespace kvr::images
