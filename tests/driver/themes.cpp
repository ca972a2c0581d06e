#include "tests/driver/themes.h"

#include <QApplication>

#include "shell/qt/clear_marks.h"
#include "tests/driver/dark_palette.h"

namespace kvr::window {
namespace {

struct Colours {
  QColor page, text, field, button, faint, off, chosen, chosenText;
};

QPalette paletteOf(const Colours& c) {
  QPalette palette(c.button, c.page);
  palette.setColor(QPalette::Base, c.field);
  palette.setColor(QPalette::AlternateBase, c.page);
  palette.setColor(QPalette::ToolTipBase, c.button);
  palette.setColor(QPalette::ToolTipText, c.text);
  palette.setColor(QPalette::PlaceholderText, c.faint);
  palette.setColor(QPalette::Highlight, c.chosen);
  palette.setColor(QPalette::HighlightedText, c.chosenText);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(role, c.text);
    palette.setColor(QPalette::Disabled, role, c.off);
  }
  return palette;
}

}  // namespace

QPalette themeOf(const QString& name) {
  if (name == QLatin1String("dark")) return darkPalette();
  if (name == QLatin1String("contrast"))
    return paletteOf({Qt::black, Qt::white, Qt::black, Qt::black, QColor(200, 200, 200), QColor(63, 242, 63),
                      QColor(26, 235, 255), Qt::black});
  return paletteOf({QColor(239, 239, 239), Qt::black, Qt::white, QColor(239, 239, 239), QColor(120, 120, 120),
                    QColor(150, 150, 150), QColor(48, 140, 198), Qt::white});
}

void useTheme(const QString& name) {
  QApplication::setStyle(new ClearMarks(QStringLiteral("Fusion")));
  QApplication::setPalette(themeOf(name));
}

}  // namespace kvr::window
