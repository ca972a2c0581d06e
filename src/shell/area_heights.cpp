#include "shell/area_heights.h"

#include <array>
#include <utility>

namespace kvr::shell {
namespace {

constexpr std::array<std::pair<HeightChoice, std::string_view>, 3> kWords = {
    {{HeightChoice::Both, "both"}, {HeightChoice::Upper, "upper"}, {HeightChoice::Lower, "lower"}}};

Heights byItself(const AreaState& state) {
  if (state.screenHeight >= AreaState::kLowScreen) return Heights::Both;
  if (state.latest == Area::Lower) return Heights::Lower;
  return state.pageNeedsHeight ? Heights::Upper : Heights::Both;
}

}  // namespace

bool needsHeight(std::string_view upperTab) {
  return upperTab != "Batch_quantity";
}

Heights heightsOf(const AreaState& state) {
  switch (state.choice) {
    case HeightChoice::Both:
      return Heights::Both;
    case HeightChoice::Upper:
      return Heights::Upper;
    case HeightChoice::Lower:
      return Heights::Lower;
    case HeightChoice::Automatic:
      break;
  }
  return byItself(state);
}

HeightChoice choiceFor(Heights wished, const AreaState& state) {
  if (wished == byItself(state)) return HeightChoice::Automatic;
  if (wished == Heights::Both) return HeightChoice::Both;
  return wished == Heights::Upper ? HeightChoice::Upper : HeightChoice::Lower;
}

std::string_view wordOf(HeightChoice choice) {
  for (const auto& [known, word] : kWords)
    if (known == choice) return word;
  return {};
}

HeightChoice choiceOf(std::string_view word) {
  for (const auto& [choice, known] : kWords)
    if (known == word) return choice;
  return HeightChoice::Automatic;
}

}  // namespace kvr::shell
