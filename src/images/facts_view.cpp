#include "images/facts_view.h"

#include <sstream>

#include "images/image_facts.h"

namespace kvr::images {
namespace {

// What was blanked at the load, because the model has no place for it, is in no range any more.
AreaFit fitOf(const ImageFacts& facts, const ImageBuffer& buffer, const catalogue::SelectedModel& model) {
  AreaFit fit = fitOf(facts, model, buffer.kind);
  if (buffer.blanked() > 0) fit.beyondFrom = 0;
  fit.beyond += buffer.blanked();
  return fit;
}

}  // namespace

std::vector<std::string> warningsOf(const ImageBuffer& buffer, const catalogue::SelectedModel& model,
                                    const std::string& info) {
  const ImageFacts facts = factsOf(buffer.held());
  std::vector<std::string> lines = oddities(facts, buffer.kind);
  if (const std::string beyond = beyondText(fitOf(facts, buffer, model), model); !beyond.empty())
    lines.push_back(beyond);
  constexpr std::string_view kNote = "Note: ";
  std::istringstream notes(info);
  for (std::string line; std::getline(notes, line);)
    if (line.starts_with(kNote)) lines.push_back(line.substr(kNote.size()));
  return lines;
}

FactsView::FactsView(const catalogue::SelectedModel& selected, ImageSlots& slots) : selected_(selected), slots_(slots) {
  for (ImageSlot* slot : slots_.both()) {
    tokens_.push_back(slot->buffer.changed.watch([this, slot] { show(*slot); }));
    tokens_.push_back(slot->info.changed.watch([this, slot] { show(*slot); }));
  }
}

void FactsView::show() {
  for (ImageSlot* slot : slots_.both()) show(*slot);
}

void FactsView::show(ImageSlot& slot) {
  if (selected_.record.name.empty()) return;
  const ImageFacts facts = factsOf(slot.buffer.held());
  slot.facts.setCaption(briefText(facts, fitOf(facts, slot.buffer, selected_), slot.kind));
  std::string text;
  for (const std::string& line : warningsOf(slot.buffer, selected_, slot.info.caption()))
    text += (text.empty() ? "" : "\n") + line;
  slot.warnings.setCaption(text);
}

}  // namespace kvr::images
