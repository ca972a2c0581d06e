// The settings of the whole form: every setting has its control, and a form that was changed everywhere comes back
// alike.
#include <gtest/gtest.h>

#include "platform/text.h"
#include "platform/virtual/plain_codec.h"
#include "platform/virtual/virtual_loop.h"
#include "platform/virtual/virtual_world.h"
#include "shell/main_form.h"
#include "tests/support/no_link.h"

namespace kvr::shell {
namespace {

using namespace platform;
using namespace std::chrono_literals;

class FormSettings : public ::testing::Test {
 protected:
  std::unique_ptr<MainForm> start() {
    auto form = std::make_unique<MainForm>(World{loop, link, dialogs, store, files, clock}, codec);
    form->load();
    return form;
  }
  static std::string shown(const MainForm& form, const SettingBinding& b) {
    const auto* control = form.registry.find(b.control, b.index);
    if (!control) return "no such control";
    if (b.kind == SettingKind::Index) return control->property("ListIndex");
    return control->property(b.kind == SettingKind::Text || b.kind == SettingKind::Number ? "Text" : "Value");
  }
  static void change(MainForm& form, const SettingBinding& b) {
    auto& control = *form.registry.find(b.control, b.index);
    if (auto* box = dynamic_cast<ComboBox*>(&control); box && b.kind == SettingKind::Index) {
      const int last = static_cast<int>(box->items().size()) - 1;
      box->setListIndex(box->listIndex() == last ? 0 : last);
    } else if (b.kind == SettingKind::Text || b.kind == SettingKind::Number) {
      control.setProperty("Text", b.kind == SettingKind::Text && !dynamic_cast<ComboBox*>(&control) ? "a b;c" : "17");
    } else if (b.kind == SettingKind::Pair || b.kind == SettingKind::YesNo) {
      form.registry.find(b.other, b.otherIndex)->setProperty("Value", "True");
    } else {
      control.setProperty("Value", control.property("Value") == "1" ? "0" : "1");
    }
  }

  VirtualLoop loop;
  MemoryStore store;
  MemoryFiles files;
  ScriptedDialogs dialogs{loop};
  VirtualClock clock{loop};
  support::NoLink link;
  PlainCodec codec;
};

TEST_F(FormSettings, HaveAControlEach) {
  const auto form = start();
  for (const SettingBinding& b : settingBindings()) {
    EXPECT_NE(form->registry.find(b.control, b.index), nullptr) << b.key;
    if (!b.other.empty()) {
      EXPECT_NE(form->registry.find(b.other, b.otherIndex), nullptr) << b.key;
    }
    if (b.kind == SettingKind::Index && b.read) {
      const auto* box = form->registry.findAs<ComboBox>(b.control, b.index);
      ASSERT_NE(box, nullptr) << b.key;
      // The default is a choice of the list, wherever the list is not the model's.
      if (!b.key.starts_with("com_RC")) {
        EXPECT_EQ(box->listIndex(), wholeOf(b.fallback)) << b.key;
      }
    }
  }
  EXPECT_EQ(form->model.name(), "Hazel-H04");
  EXPECT_EQ(store.writes, 0);
}

TEST_F(FormSettings, ComeBackAfterARestart) {
  auto form = start();
  form->main.TreeViewDevice.userPick("Ivy-HF0S");
  for (const SettingBinding& b : settingBindings()) change(*form, b);
  form->main.TreeViewDevice.userPick("FamilyKauri");  // a look into a series is no choice
  loop.runFor(1s);
  std::map<std::string, std::string> before;
  for (const SettingBinding& b : settingBindings()) before[b.key] = shown(*form, b);
  form.reset();
  form = start();
  EXPECT_EQ(form->model.name(), "Ivy-HF0S");
  for (const SettingBinding& b : settingBindings()) {
    if (b.read && b.key != "com_RC_frequency_4") {
      EXPECT_EQ(shown(*form, b), before[b.key]) << b.key;
    }
  }
}

TEST_F(FormSettings, LeaveTheOptionsOfTheModelAtTheirDefaults) {
  auto form = start();
  form->main.TreeViewDevice.userPick("Pine-H07E");
  ASSERT_EQ(form->options.com_RC_frequency[4].text(), "4.05");
  form->options.com_RC_frequency[4].userPick(2);
  form->options.com_RC_frequency[5].setText("22.1184");
  loop.runFor(1s);
  ASSERT_EQ(store.getOr("Settings", "com_RC_frequency_4", ""), "2");

  form = start();
  EXPECT_EQ(form->model.name(), "Pine-H07E");
  EXPECT_EQ(form->options.com_RC_frequency[4].text(), "4.05");
  EXPECT_EQ(form->options.com_RC_frequency[5].text(), "22.1184");
}

TEST_F(FormSettings, SurviveAProjectThatIsOpened) {
  const auto form = start();
  files.put("/p.KVR",
            "VER: 1.2\r\nMCU_Type: Cedar-H10R\r\nDouble_speed_YES: True\r\nbuffer_check_sum: 3\r\nEND\r\n0102");
  dialogs.paths.push_back("/p.KVR");
  form->images.panel.comLoadFile.press();
  EXPECT_EQ(form->model.name(), "Cedar-H10R");
  EXPECT_EQ(form->main.Label2[6].caption(), "MCU Type: Cedar-H10R");
  EXPECT_EQ(form->main.TabStrip2.selectedKey(), "Batch_quantity");
  EXPECT_TRUE(form->images.state.imageValid);
  EXPECT_TRUE(form->optionsRoom.chosen("Double_speed_YES"));
  EXPECT_EQ(form->lock.state(), options::UiLock::kLocked);
  EXPECT_FALSE(form->main.txtDevice.enabled());
  EXPECT_TRUE(form->download.comDownload[0].enabled());
  loop.runFor(1s);
  EXPECT_EQ(store.get("Settings", "DeviceProducts"), "Hazel-H04");  // a model without a node is no choice to start with
  form->project.panel.comUnlockOptions.press();
  EXPECT_TRUE(form->main.txtDevice.enabled());
}

}  // namespace
}  // namespace kvr::shell
