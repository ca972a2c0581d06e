// Light, dark and bright on black, from the start and while the window is open; larger fonts.
#include <QCheckBox>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <cmath>

#include "shell/qt/clear_marks.h"
#include "shell/qt/hex_paint.h"
#include "tests/driver/themes.h"
#include "tests/window/desk.h"

namespace kvr::window {
namespace {

double luminance(const QColor& colour) {
  const auto linear = [](double c) { return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& a, const QColor& b) {
  const double one = luminance(a) + 0.05;
  const double other = luminance(b) + 0.05;
  return std::max(one, other) / std::min(one, other);
}

// How many pixels differ from the page as much as marks must.
int clearPixels(QWidget& widget) {
  widget.resize(40, 30);
  const QImage picture = widget.grab().toImage();
  const QColor page = widget.palette().color(QPalette::Window);
  int clear = 0;
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x) clear += contrast(picture.pixelColor(x, y), page) >= 3.0;
  return clear;
}

QRect difference(const QImage& a, const QImage& b) {
  if (a.size() != b.size()) return a.rect();
  QRect around;
  for (int y = 0; y < a.height(); ++y)
    for (int x = 0; x < a.width(); ++x)
      if (a.pixel(x, y) != b.pixel(x, y)) around |= QRect(x, y, 1, 1);
  return around;
}

class Themes : public Desk {
 protected:
  void SetUp() override { useTheme(QStringLiteral("light")); }
  std::vector<std::pair<std::string, QImage>> pictures() {
    std::vector<std::pair<std::string, QImage>> all;
    tab("TabStrip1", "options");
    for (const char* strip : {"TabStrip2", "TabStrip1"})
      onEachPage(strip, [&] {
        program->window->setFocus();  // no caret, which blinks
        settle();
        all.emplace_back(widget<QTabBar>(strip).tabText(widget<QTabBar>(strip).currentIndex()).toStdString(),
                         program->window->grab().toImage());
      });
    return all;
  }
  void openLarge() {
    open();
    program->window->resize(1500, 860);
    program->form.areas.screenIs(1080);
    program->portWatch.look();
    program->form.portLine.follow();
    settle();
  }
};

TEST_F(Themes, AnEmptyBoxIsAsEasyToSeeAsATickedOne) {
  for (const char* theme : {"light", "dark", "contrast"}) {
    useTheme(QLatin1String(theme));
    QCheckBox box;
    QRadioButton button;
    // On black the other boxes need an edge of their own, too.
    QLineEdit line;
    QPushButton press;
    QTabBar tabs;
    for (const char* name : {"one", "two"}) tabs.addTab(QLatin1String(name));
    const bool black = QLatin1String(theme) == QLatin1String("contrast");
    for (QWidget* other : std::initializer_list<QWidget*>{&line, &press})
      EXPECT_TRUE(!black || clearPixels(*other) >= 60) << other->metaObject()->className();
    tabs.resize(tabs.sizeHint());
    const QImage first = tabs.grab(tabs.tabRect(0)).toImage();
    tabs.setCurrentIndex(1);
    EXPECT_NE(difference(first, tabs.grab(tabs.tabRect(0)).toImage()), QRect()) << theme;
    for (QAbstractButton* mark : std::initializer_list<QAbstractButton*>{&box, &button}) {
      mark->setAutoExclusive(false);
      for (const bool on : {false, true}) {
        mark->setChecked(on);
        EXPECT_GE(clearPixels(*mark), 30) << theme << (mark == &box ? " box " : " button ") << on;  // about its outline
      }
    }
  }
}

TEST_F(Themes, EveryByteOfAnImageIsReadableWhateverItIsMarkedAs) {
  for (const char* theme : {"light", "dark", "contrast"}) {
    const HexColours colours(themeOf(QLatin1String(theme)));
    for (const QColor& ink : {colours.text, colours.faint, colours.changed})
      for (const QColor& back : {colours.base, colours.differs, colours.field, colours.head})
        EXPECT_GE(contrast(ink, back), 4.5) << theme << ' ' << ink.name().toStdString() << back.name().toStdString();
  }
}

TEST_F(Themes, ADesktopThatChangesItsColoursChangesTheOpenWindowAsIfItHadBeenOpenedSo) {
  for (const char* theme : {"dark", "contrast"}) {
    useTheme(QStringLiteral("light"));
    openLarge();
    const auto light = pictures();
    QApplication::setPalette(themeOf(QLatin1String(theme)));
    settle();
    const auto changed = pictures();
    closeAndWait();
    program.reset();
    openLarge();
    const auto fresh = pictures();
    ASSERT_EQ(changed.size(), fresh.size());
    for (std::size_t i = 0; i < fresh.size(); ++i) {
      EXPECT_EQ(difference(changed[i].second, fresh[i].second), QRect()) << theme << ": " << fresh[i].first;
      EXPECT_FALSE(changed[i].second == light[i].second) << theme << ": " << fresh[i].first;
    }
    closeAndWait();
    program.reset();
  }
}

TEST_F(Themes, WithAFontOfOneAndAHalfNothingScrollsSideways) {
  const QFont usual = QApplication::font();
  QFont large = usual;
  large.setPointSizeF(usual.pointSizeF() * 1.5);
  QApplication::setFont(large);
  open();
  program->window->resize(1920, 1020);
  for (const char* strip : {"TabStrip2", "TabStrip1"})
    onEachPage(strip, [&] {
      for (auto* area : program->window->findChildren<QScrollArea*>())
        EXPECT_FALSE(area->isVisible() && area->horizontalScrollBar()->isVisible())
            << area->widget()->objectName().toStdString();
    });
  EXPECT_LE(program->window->width(), 1920);
  QApplication::setFont(usual);
}

}  // namespace
}  // namespace kvr::window
