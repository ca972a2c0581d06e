#include "tests/options/options_page.h"

namespace kvr::options {
namespace {

constexpr std::string_view kWatchdogKeys[] = {"Idle_Run_WDT_YES", "Idle_Run_WDT_NO", "WDT_Prescalar"};

bool neverTakesInput(const OptionRow& row, const catalogue::FamilyTraits& traits) {
  return row.key.starts_with("Unchangeable_WDT") || (row.key.starts_with("EN810") && traits.measuresOscillator());
}

// The report of a chip that holds the wanted bytes.
std::vector<std::string> reportOf(const OptionsPage& page) {
  const auto& record = page.model.record;
  return describeTarget({.modelName = std::string(record.name),
                         .stepping = traitsOf(record).letters.front(),
                         .reported = page.room.set().wanted})
      .lines;
}

TEST(OptionsPage, EveryChoiceGoesToItsBitAndComesBackAsItsLine) {
  int reported = 0, keys = 0;
  for (const auto* record : modelsWithOptions()) {
    OptionsPage page;
    page.select(*record);
    for (std::size_t i = 0; i < page.rows().size(); ++i) {
      const auto& row = page.rows()[i];
      if (!row.place.known()) continue;
      SCOPED_TRACE(std::string(record->name) + " " + std::string(row.key));
      page.room.showFamilyPanel();
      ASSERT_TRUE(page.room.setControlValue("Power_On_Run_WDT_YES", "1") || record->family < catalogue::Family::Elm ||
                  traitsOf(*record).panelSlot == 2);
      page.room.applyEnableRules();
      if (neverTakesInput(row, traitsOf(*record)))
        page.room.setControlValue(row.key, "True");
      else
        page.button(row.key).userChoose();
      page.room.composeOptions();
      auto bytes = page.room.set().wanted;
      if (page.model.traits().allOptions()) std::swap(bytes[8], bytes[12]);
      EXPECT_EQ(wordOf(traitsOf(*record), row.key, bytes), "1");
      ++keys;
      const auto text = reportText(traitsOf(*record).panelSlot, i, catalogue::voltageClass(*record));
      const auto lines = reportOf(page);
      if (lines.size() <= 2) continue;  // this letter's report has no rows
      EXPECT_EQ(std::count(lines.begin(), lines.end(), text), text.empty() ? 0 : 1) << text;
      reported += text.empty() ? 0 : 1;
    }
  }
  EXPECT_GT(keys, 250);
  EXPECT_GT(reported, 170);
}

TEST(OptionsPage, TakesInputAsTheLockSaysAndLabelsStayOn) {
  for (const auto* record : modelsWithOptions())
    for (int state = 0; state <= 3; ++state) {
      OptionsPage page;
      page.select(*record);
      page.lock.set(state);
      EXPECT_EQ(page.panel.com_RC_frequency[5].enabled(), state == 0 || state == 2);
      for (const auto& row : page.rows()) {
        const bool label = row.control == "LabOption";
        const bool idle =
            std::find(std::begin(kWatchdogKeys), std::end(kWatchdogKeys), row.key) != std::end(kWatchdogKeys);
        if (!label && row.key == kClew) continue;  // a button's caption: its own row decides
        const bool takesInput = label || (state == 0 && !neverTakesInput(row, traitsOf(*record)) && !idle);
        EXPECT_EQ(page.panel.find(row.control, row.index)->enabled(), takesInput)
            << record->name << " " << row.key << row.control << " state " << state;
      }
    }
}

TEST(OptionsPage, IdleChoiceAndPrescalerFollowTheAutomaticStartAndKeepTheirValues) {
  OptionsPage page;
  for (const char* name : {"Elm-H02A", "Quince-H03", "Rowan-H20"}) {
    page.select(name);
    page.button("Power_On_Run_WDT_YES").userChoose();
    page.panel.comWDT_Prescalar[0].userPick(2);
    for (const auto key : kWatchdogKeys) EXPECT_TRUE(page.control(key).enabled()) << name;
    page.lock.set(platform::UiLock::kLocked);
    for (const auto key : kWatchdogKeys) EXPECT_FALSE(page.control(key).enabled()) << name;
    page.lock.set(platform::UiLock::kFree);
    page.button("Power_On_Run_WDT_NO").userChoose();
    EXPECT_FALSE(page.panel.comWDT_Prescalar[0].enabled());
    EXPECT_FALSE(page.button("Idle_Run_WDT_YES").enabled());
    EXPECT_EQ(page.panel.comWDT_Prescalar[0].text(), "8");
  }
}

TEST(OptionsPage, ClockAndResetPinKeepEachOtherPossible) {
  OptionsPage page;
  for (const char* name : {"Ivy-HF0S", "Larch-H20Y"}) {
    page.select(name);
    page.button("P4_7_As_RESET_NO").userChoose();
    page.button("Interior_Oscillate").userChoose();
    EXPECT_TRUE(page.room.chosen("P4_7_As_RESET_YES")) << name;
    page.button("P4_7_As_RESET_NO").userChoose();
    EXPECT_TRUE(page.room.chosen("Exterior_Oscillate")) << name;
  }
  page.select("Hazel-H04");  // the same buttons mean another thing: no tie
  page.button("Interior_Oscillate").userChoose();
  page.button("EN810_200mS_YES").userChoose();
  EXPECT_TRUE(page.room.chosen("Interior_Oscillate"));
}

TEST(OptionsPage, ModelsWithoutOptionsShowWhatIsFixedAndIgnoreTheLock) {
  int models = 0;
  for (const auto& record : catalogue::allRows()) {
    if (!record.noOptions) continue;
    ++models;
    OptionsPage page;
    page.select("Rowan-H40");
    page.select(record);
    page.lock.set(platform::UiLock::kLocked);
    const auto& groups = page.room.groups();
    ASSERT_GE(groups.size(), 5u) << record.name;
    for (const auto& group : groups) EXPECT_TRUE(group.label->visible() && group.buttons.empty());
    EXPECT_EQ(groups[0].label->caption(), "Next Power-Up-Reset, use External Crystal/Clock");
    EXPECT_TRUE(groups[0].label->enabled());
    for (int row = 0; row < OptionPanel::kRows; ++row)
      for (const auto* button : page.panel.optionButtons(row)) EXPECT_FALSE(button->visible());
  }
  EXPECT_GT(models, 20);
  const auto texts = fixedOptionTexts({.family = catalogue::Family::Sumac, .name = "Sumac-L0E", .noOptions = true});
  EXPECT_EQ(texts[texts.size() - 2], "Low Voltage Reset, when MCU-VCC < 2.5V") << "of its family and class";
}

TEST(OptionsPage, SmallRowanPartsHaveNoUnusedAreaToChooseAbout) {
  for (const int apEnd : {16383, 16384}) {
    OptionsPage page;
    page.select(catalogue::McuRecord{.family = catalogue::Family::Rowan, .name = "Rowan-H40", .apEnd = apEnd});
    EXPECT_EQ(page.button("Clear_Unused_AP_YES").visible(), apEnd == 16384);
  }
}

TEST(OptionsPage, CaptionsAndListsFollowTheVoltageClass) {
  OptionsPage page;
  for (const auto& [name, caption] : {std::pair{"Ivy-LF0S", "<1.31V"}, {"Ivy-HF0S", "<1.33V"}}) {
    page.select(name);
    EXPECT_EQ(page.button("LowU_Reset_YES").caption(), std::string(caption) + " Voltage Reset");
  }
  page.select("Pine-H03");
  page.panel.com_RC_frequency[4].userPick(3);
  page.select("Pine-L03");
  EXPECT_EQ(page.panel.com_RC_frequency[4].text(), "2.61");
}

TEST(OptionsPage, FrequencyBoxHoldsItsLimits) {
  OptionsPage page;
  page.select("Pine-H03");
  auto& box = page.panel.com_RC_frequency[5];
  const struct {
    const char *typed, *left;
    int hz;
    const char* words = nullptr;
  } cases[] = {{"11,0592", "11,0592", 11059200},
               {"4.5", "4.5", 4500000},
               {"45", "45", 45000000},
               {"4,4999", "4.5000", 4500000, "4.5MHz"},
               {"45.0001", "45.0000", 45000000, "45MHz"},
               {"fast", "4.5000", 4500000, "4.5MHz"}};
  for (const auto& c : cases) {
    page.dialogs.shown.clear();
    box.userType(c.typed);
    box.userLeave();
    EXPECT_EQ(box.text(), c.left);
    EXPECT_EQ(page.room.wantedFrequencyHz(), c.hz) << c.typed;
    ASSERT_EQ(page.dialogs.shown.size(), c.words ? 1u : 0u) << c.typed;
    EXPECT_TRUE(!c.words || page.dialogs.shown[0].text.find(c.words) != std::string::npos);
  }
}

TEST(OptionsPage, TheWatchdogPinIsOneChoiceOnTwoPages) {
  OptionsPage page;
  EXPECT_FALSE(page.room.externalWatchdogPin());
  page.panel.opt_External_WDT[1].userChoose();
  page.panel.comb_External_WDT.userPick(10);
  EXPECT_TRUE(page.panel.opt_ISP_DEMO_WDT[1].value());
  EXPECT_EQ(page.panel.comb_WDT.text(), "P1.2");
  EXPECT_EQ(page.room.externalWatchdogPin(), 33);
  page.panel.opt_ISP_DEMO_WDT[0].userChoose();
  EXPECT_TRUE(page.panel.opt_External_WDT[0].value());
  EXPECT_FALSE(page.panel.comb_External_WDT.enabled());
}

}  // namespace
}  // namespace kvr::options
