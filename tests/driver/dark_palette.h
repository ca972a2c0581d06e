// The colours of a dark desktop, for pictures.
#pragma once

#include <QPalette>

namespace kvr::window {

inline QPalette darkPalette() {
  QPalette dark;
  dark.setColor(QPalette::Window, QColor(45, 45, 48));
  dark.setColor(QPalette::WindowText, QColor(225, 225, 225));
  dark.setColor(QPalette::Base, QColor(30, 30, 32));
  dark.setColor(QPalette::AlternateBase, QColor(45, 45, 48));
  dark.setColor(QPalette::Text, QColor(225, 225, 225));
  dark.setColor(QPalette::Button, QColor(60, 60, 64));
  dark.setColor(QPalette::ButtonText, QColor(225, 225, 225));
  dark.setColor(QPalette::ToolTipBase, QColor(60, 60, 64));
  dark.setColor(QPalette::ToolTipText, QColor(225, 225, 225));
  dark.setColor(QPalette::PlaceholderText, QColor(150, 150, 150));
  dark.setColor(QPalette::Highlight, QColor(42, 130, 218));
  dark.setColor(QPalette::HighlightedText, Qt::white);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    dark.setColor(QPalette::Disabled, role, QColor(125, 125, 125));
  return dark;
}

}  // namespace kvr::window
