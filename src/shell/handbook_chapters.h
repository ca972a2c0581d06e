// Which chapter of the handbook tells of which page of the window.
#pragma once

#include <array>
#include <string_view>
#include <utility>

namespace kvr::shell {

inline constexpr std::array<std::pair<std::string_view, std::string_view>, 14> kChapters = {{
    {"tab_file", "files"},
    {"EEPROM_File", "files"},
    {"Debug_COM", "terminal"},
    {"Batch_quantity", "production"},
    {"Debug1", "terminal"},
    {"Debug2", "terminal"},
    {"options", "options"},
    {"user_code", "own-routine"},
    {"TJXZ", "boards"},
    {"CheckMCUoption", "options"},
    {"AUTO_INCREASE", "production"},
    {"ISP_DEMO", "own-routine"},
    {"store_buffer", "files"},
    {"Hardware_Help", "wiring"},
}};

// By the key of the page's tab; the table of contents for anything else.
constexpr std::string_view chapterOf(std::string_view tab) {
  for (const auto& [key, chapter] : kChapters)
    if (key == tab) return chapter;
  return "index";
}

}  // namespace kvr::shell
