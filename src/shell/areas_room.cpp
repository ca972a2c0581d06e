#include "shell/areas_room.h"

#include <utility>

namespace kvr::shell {
AreasRoom::AreasRoom(MainPanel& panel, Settings& settings)
    : panel_(panel),
      settings_(settings),
      upperPage_(panel.TabStrip2.selectedKey()),
      lowerPage_(panel.TabStrip1.selectedKey()) {
  state_.pageNeedsHeight = needsHeight(upperPage_);
  panel_.comTall[0].onClick = [this] { toggle(Area::Upper); };
  panel_.comTall[1].onClick = [this] { toggle(Area::Lower); };
  // A strip changes also when a model renames its tabs.
  const auto watch = [this](platform::TabStrip& strip, std::string& page, Area area) {
    tokens_.push_back(strip.changed.watch([this, &strip, &page, area] {
      if (std::exchange(page, strip.selectedKey()) != strip.selectedKey()) pageChosen(area);
    }));
  };
  watch(panel_.TabStrip2, upperPage_, Area::Upper);
  watch(panel_.TabStrip1, lowerPage_, Area::Lower);
  show(state_);
}

void AreasRoom::load() {
  AreaState loaded = state_;
  loaded.choice = choiceOf(settings_.heightChoice());
  show(loaded);
}

void AreasRoom::screenIs(int height) {
  AreaState moved = state_;
  moved.screenHeight = height;
  show(moved);
}

void AreasRoom::toggle(Area area) {
  wish(heights() == aloneOf(area) ? Heights::Both : aloneOf(area), area);
}

void AreasRoom::pressed(Area area) {
  wasAlone_ = heights() == aloneOf(area);
  pageChosen(area);
}

void AreasRoom::doubleClicked(Area area) {
  wish(wasAlone_ ? Heights::Both : aloneOf(area), area);
}

void AreasRoom::pageChosen(Area area) {
  AreaState next = state_;
  next.latest = area;
  next.pageNeedsHeight = needsHeight(upperPage_);
  show(next);
  if (folded(area)) wish(aloneOf(area), area);
}

void AreasRoom::wish(Heights heights, Area latest) {
  AreaState next = state_;
  next.latest = latest;
  next.choice = choiceFor(heights, next);
  show(next);
  settings_.saveHeightChoice(std::string(wordOf(state_.choice)));
}

void AreasRoom::show(const AreaState& state) {
  const Heights before = heights();
  state_ = state;
  for (const Area area : {Area::Upper, Area::Lower}) panel_.tellHeight(area, heights() == aloneOf(area));
  if (heights() != before) changed.emit();
}

}  // namespace kvr::shell
