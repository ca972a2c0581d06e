// The right side's two areas: one press gives an area the whole height and takes it back; a page that is chosen is
// shown, also when its area was folded to its tab bar.
#pragma once

#include <string>

#include "shell/area_heights.h"
#include "shell/main_panel.h"
#include "shell/settings.h"

namespace kvr::shell {

class AreasRoom {
 public:
  AreasRoom(MainPanel& panel, Settings& settings);

  // What the last window kept. From now on choices are saved.
  void load();
  void screenIs(int height);  // pixels of a plain screen

  Heights heights() const { return heightsOf(state_); }
  bool folded(Area area) const { return heights() != Heights::Both && heights() != aloneOf(area); }
  platform::Signal changed;

  void toggle(Area area);
  // Gestures on the area's tab bar. A double click is the second press of two, and counts from before the first.
  void pressed(Area area);
  void doubleClicked(Area area);

 private:
  void pageChosen(Area area);
  void wish(Heights heights, Area latest);
  void show(const AreaState& state);
  MainPanel& panel_;
  Settings& settings_;
  AreaState state_;
  std::string upperPage_;
  std::string lowerPage_;
  bool wasAlone_ = false;  // before the last press
  std::vector<platform::Signal::Token> tokens_;
};

}  // namespace kvr::shell
