// How the option tables are written: one line a label, a button or a list, from which the rows are made.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "options/option_table.h"

namespace kvr::options::rows {

inline constexpr std::array<std::string_view, 14> kOptionNames = {
    "Option0", "Option1", "Option2", "Option3",  "Option4",  "Option5",  "Option6",
    "Option7", "Option8", "Option9", "Option10", "Option11", "Option12", "Option13"};
inline constexpr bool kYes = true;  // chosen when a model is selected
inline constexpr bool kNo = false;

constexpr OptionRow captionRow(std::string_view control, int index, std::string_view text) {
  return {.control = control, .index = index, .property = "Caption", .text = text};
}

// The text at the head of an option line.
constexpr std::array<OptionRow, 1> label(int line, std::string_view text) {
  return {captionRow("LabOption", line, text)};
}

// A button of an option line: element `index` of `Option<line>`.
constexpr std::array<OptionRow, 2> button(int line, int index, std::string_view caption, std::string_view key,
                                          BitPlace place, bool chosen, std::string_view report = {}) {
  const std::string_view control = kOptionNames[static_cast<std::size_t>(line)];
  return {captionRow(control, index, caption), OptionRow{.key = key,
                                                         .control = control,
                                                         .index = index,
                                                         .property = "Value",
                                                         .text = chosen ? "1" : "0",
                                                         .enabledBusy = false,
                                                         .enabledLocked = false,
                                                         .report = report,
                                                         .place = place}};
}

// A button that only shows how the chip will be set: the boot firmware takes no other value.
constexpr std::array<OptionRow, 2> shown(int line, int index, std::string_view caption, std::string_view key,
                                         BitPlace place, bool chosen, std::string_view report = {}) {
  auto made = button(line, index, caption, key, place, chosen, report);
  made[1].enabledFree = false;
  return made;
}

constexpr std::array<OptionRow, 1> list(std::string_view control, int index, std::string_view key,
                                        std::string_view text) {
  return {OptionRow{.key = key,
                    .control = control,
                    .index = index,
                    .property = "Text",
                    .text = text,
                    .enabledBusy = false,
                    .enabledLocked = false}};
}

template <std::size_t... N>
constexpr auto table(const std::array<OptionRow, N>&... parts) {
  std::array<OptionRow, (N + ...)> all{};
  std::size_t at = 0;
  const auto append = [&](const auto& part) {
    for (const auto& row : part) all[at++] = row;
  };
  (append(parts), ...);
  return all;
}

}  // namespace kvr::options::rows
