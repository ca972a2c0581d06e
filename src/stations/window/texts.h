// Texts of the rooms without a toolkit, for widgets.
#pragma once

#include <QString>
#include <string>

namespace kvr::tiles {

inline QString text(const std::string& words) {
  return QString::fromStdString(words);
}

}  // namespace kvr::tiles
