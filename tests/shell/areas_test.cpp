// Which of the right side's two areas has the height.
#include <gtest/gtest.h>

#include "tests/support/form_bench.h"

namespace kvr::shell {
namespace {

struct Areas : ::testing::Test {
  void start(int screenHeight) {
    bench = std::make_unique<support::FormBench>();
    bench->store.set("Settings", "AreaHeights", kept);
    form().areas.load();
    form().areas.screenIs(screenHeight);
  }
  MainForm& form() { return bench->form; }
  Heights shown() { return form().areas.heights(); }
  void pick(platform::TabStrip& strip, const char* key) {
    for (std::size_t i = 0; i < strip.tabs().size(); ++i)
      if (strip.tabs()[i].key == key) strip.userSelect(static_cast<int>(i));
  }
  void doubleClick(Area area) {
    form().areas.pressed(area);
    form().areas.doubleClicked(area);
  }
  void restart(int screenHeight) {
    kept = bench->store.getOr("Settings", "AreaHeights", "");
    start(screenHeight);
  }
  std::string kept;
  std::unique_ptr<support::FormBench> bench;
};

TEST_F(Areas, OnALowScreenThePageInUseTakesTheHeightByItself) {
  start(768);
  EXPECT_EQ(shown(), Heights::Upper);
  pick(form().main.TabStrip2, "Batch_quantity");
  EXPECT_EQ(shown(), Heights::Both);
  pick(form().main.TabStrip1, "ISP_DEMO");
  EXPECT_EQ(shown(), Heights::Lower);
  pick(form().main.TabStrip2, "Debug_COM");
  EXPECT_EQ(shown(), Heights::Upper);
  form().areas.pressed(Area::Lower);  // the tab that is chosen already
  EXPECT_EQ(shown(), Heights::Lower);
  restart(820);
  EXPECT_EQ(shown(), Heights::Both);
  pick(form().main.TabStrip2, "Debug_COM");
  EXPECT_EQ(shown(), Heights::Both);
}

TEST_F(Areas, OnePressGivesTheHeightAnotherTakesItBackAndTheNextStartKnows) {
  for (const int screen : {768, 1080}) {
    kept.clear();
    start(screen);
    auto& upper = form().main.comTall[0];
    form().main.comTall[1].press();
    EXPECT_EQ(shown(), Heights::Lower);
    upper.press();
    EXPECT_EQ(shown(), Heights::Upper);
    upper.press();
    EXPECT_EQ(shown(), Heights::Both);
    restart(screen);
    EXPECT_EQ(shown(), Heights::Both) << screen;
    form().main.comTall[0].press();
    restart(screen);
    EXPECT_EQ(shown(), Heights::Upper) << screen;
    // A page that was chosen is shown, by whatever way.
    form().main.TabStrip1.select("store_buffer");
    EXPECT_EQ(shown(), Heights::Lower);
  }
  kept = "sideways";
  start(1080);
  EXPECT_EQ(shown(), Heights::Both);
}

TEST_F(Areas, ADoubleClickCountsFromBeforeItsFirstPress) {
  for (const int screen : {768, 1080}) {
    start(screen);
    doubleClick(Area::Lower);
    EXPECT_EQ(shown(), Heights::Lower);
    doubleClick(Area::Lower);
    EXPECT_EQ(shown(), Heights::Both);
    doubleClick(Area::Upper);
    doubleClick(Area::Lower);  // folded until its first press
    EXPECT_EQ(shown(), Heights::Lower);
    form().main.comTall[1].press();
  }
}

}  // namespace
}  // namespace kvr::shell
