// Which of the right side's two areas has the whole height, the other one being folded to its tab bar.
#pragma once

#include <string_view>

namespace kvr::shell {

enum class Area { Upper, Lower };
enum class Heights { Both, Upper, Lower };  // who is shown: both areas, or one of them alone

// What the user chose. Automatic: the screen and the page that is shown decide.
enum class HeightChoice { Automatic, Both, Upper, Lower };

struct AreaState {
  static constexpr int kLowScreen = 820;  // pixels of a plain screen; a lower one has no room for two pages
  HeightChoice choice = HeightChoice::Automatic;
  Area latest = Area::Upper;  // whose page was chosen last
  int screenHeight = 1080;
  bool pageNeedsHeight = false;  // the one that the upper area shows
};

constexpr Heights aloneOf(Area area) {
  return area == Area::Upper ? Heights::Upper : Heights::Lower;
}

// The pages of the upper area that show many lines of one text.
bool needsHeight(std::string_view upperTab);

Heights heightsOf(const AreaState& state);

// What to keep so that `wished` is shown: no choice at all where that is what comes by itself.
HeightChoice choiceFor(Heights wished, const AreaState& state);

// As the settings keep it; an unknown word is no choice.
std::string_view wordOf(HeightChoice choice);
HeightChoice choiceOf(std::string_view word);

}  // namespace kvr::shell
