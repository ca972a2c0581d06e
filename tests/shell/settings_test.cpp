// The settings of the whole form: every setting has its control, a form that was changed everywhere comes back alike,
// and what the form makes of a store that holds less, more or something else.
#include "shell/settings.h"

#include <gtest/gtest.h>

#include <memory>

#include "platform/virtual/plain_codec.h"
#include "shell/main_form.h"
#include "tests/support/absent_records.h"
#include "tests/support/memory_services.h"
#include "tests/support/no_link.h"

namespace kvr::shell {
namespace {

using namespace platform;
using namespace std::chrono_literals;

class SettingsTest : public ::testing::Test, public support::MemoryServices<> {
 protected:
  support::AbsentRecords records;
  std::unique_ptr<MainForm> make() { return std::make_unique<MainForm>(with(link), codec, records); }
  std::unique_ptr<MainForm> start() {
    auto form = make();
    form->load();
    return form;
  }
  static std::string shown(const MainForm& form, const SettingBinding& b) {
    const auto* control = form.registry.find(b.control, b.index);
    if (b.kind == SettingKind::Index) return control->property("ListIndex");
    const bool text = b.kind == SettingKind::Text || b.kind == SettingKind::Number || b.kind == SettingKind::Typed;
    return control->property(text ? "Text" : "Value");
  }
  static void change(MainForm& form, const SettingBinding& b) {
    auto& control = *form.registry.find(b.control, b.index);
    if (auto* box = dynamic_cast<ComboBox*>(&control); box && b.kind == SettingKind::Index) {
      const int last = static_cast<int>(box->items().size()) - 1;
      box->setListIndex(box->listIndex() == last ? 0 : last);
    } else if (b.kind == SettingKind::Typed) {
      control.setProperty("Text", "2.5");
    } else if (b.kind == SettingKind::Text || b.kind == SettingKind::Number) {
      control.setProperty("Text", b.kind == SettingKind::Text && !dynamic_cast<ComboBox*>(&control) ? "a b;c" : "17");
    } else if (b.kind == SettingKind::Pair || b.kind == SettingKind::YesNo) {
      form.registry.find(b.other, b.otherIndex)->setProperty("Value", "True");
    } else {
      control.setProperty("Value", control.property("Value") == "1" ? "0" : "1");
    }
  }
  static ComboBox& combo(MainForm& form, const char* name) { return *form.registry.findAs<ComboBox>(name); }
  std::optional<std::string> stored(const std::string& key) const { return store.get("Settings", key); }
  void put(const std::string& key, const std::string& value) {
    store.values()[{"Settings", key}] = value;
    store.refresh();
  }

  support::NoLink link;
  PlainCodec codec;
};

TEST_F(SettingsTest, ComeBackAfterARestart) {
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

TEST_F(SettingsTest, AreSavedOnceHalfASecondAfterTheFirstOfSeveralChanges) {
  const auto form = start();
  EXPECT_EQ(form->windowPlace(), (WindowPlace{0, 0, 12000, 9045}));
  combo(*form, "combCommPort").setListIndex(3);
  loop.runFor(300ms);
  combo(*form, "combCommPort").setListIndex(5);
  loop.runFor(199ms);
  EXPECT_EQ(store.writes, 0);
  loop.runFor(1ms);
  EXPECT_EQ(stored("COM_port"), "5");
  EXPECT_EQ(store.flushes, 1);
  // All keys of all groups are there now, those that are never read, too.
  for (const SettingBinding& binding : settingBindings()) EXPECT_TRUE(stored(binding.key)) << binding.key;
  EXPECT_EQ(stored("fillbyte"), "00");
  EXPECT_EQ(stored("DeviceProducts"), "Hazel-H04");
  combo(*form, "com_Debug_Baud").setListIndex(7);
  form->settings.savePending();
  EXPECT_EQ(stored("DebugBaud"), "7");
  form->saveWindowPlace({150, 300, 15000, 10000});
  form->settings.saveFrame24Width(777);
  loop.runFor(501ms);
  EXPECT_EQ(start()->windowPlace(), (WindowPlace{150, 300, 15000, 10000}));
  EXPECT_EQ(start()->settings.frame24Width(), 777);
}

TEST_F(SettingsTest, LeaveAControlAloneWhenAStoredValueDoesNotFit) {
  constexpr int kSingle = Control::kSingle;
  const struct {
    const char *key, *stored, *control;
    int index;
    const char *property, *expected;
  } cases[] = {{"COM_port", "4000", "combCommPort", kSingle, "ListIndex", "0"},
               {"Dalay_ReDownLoad", "-7", "comDalay_ReDownLoad", kSingle, "ListIndex", "2"},
               {"Write_OK_Count", "", "txtWrite_OK_Count", kSingle, "Text", "0"},
               {"logic_of_control_485", "0", "opt_485_logic", 1, "Value", "True"},
               {"BeepYesNo", "yes", "optBeepNo", kSingle, "Value", "True"},
               {"DebugDTR", "maybe", "che_DTR", kSingle, "Value", "1"},
               {"DebugTimeStamp", "3", "comb_TimeStamp", kSingle, "ListIndex", "0"},
               {"DebugBaud", "-1", "com_Debug_Baud", kSingle, "ListIndex", "2"},
               {"DebugParity", "-1", "com_Debug_ParityCheck", kSingle, "ListIndex", "2"},
               {"UserCodeBaud", "-1", "cobUserCodeBaud", kSingle, "ListIndex", "2"},
               {"pin_address_External_WDT", "-1", "comb_External_WDT", kSingle, "ListIndex", "1"},
               {"DebugRTS", "FALSE", "che_RTS", kSingle, "Value", "0"},
               {"cheSpreadHex_0", "TRUE", "cheSpreadHex", 0, "Value", "1"},
               {"txt_RC_frequency", "nan", "txt_RC_frequency", kSingle, "Text", ""},
               {"DeviceProducts", "FamilyHazel", "txtDevice", kSingle, "Text", "Hazel-H04"}};
  put("pin_for_485", "maybe");
  for (const auto& c : cases) put(c.key, c.stored);
  const auto form = make();
  combo(*form, "comDalay_ReDownLoad").setListIndex(2);
  form->load();
  for (const auto& c : cases)
    EXPECT_EQ(form->registry.find(c.control, c.index)->property(c.property), c.expected) << c.key;
}

TEST_F(SettingsTest, TakeNoNumberThatIsNoneOrBeyondReason) {
  for (const char* text : {"-1", "+-1", "1e", "nan", "inf", "-inf", "1e-999x", "1e999", "900000000000", "0x10", ""}) {
    put("Write_OK_Count", text);
    put("MainWidth", text);
    put("Frame24_Width", text);
    const auto form = start();
    EXPECT_EQ(form->download.txtWrite_OK_Count.text(), "0") << text;
    EXPECT_EQ(form->windowPlace().width, 12000) << text;
    EXPECT_EQ(form->settings.frame24Width(), 2000) << text;
  }
  put("MainWidth", "900000");
  put("MainHeight", "2147483647");
  put("MainLeft", "-3000");
  put("MainTop", "-99999999");
  EXPECT_EQ(start()->windowPlace(), (WindowPlace{-3000, 0, 12000, 9045}));
  start()->saveWindowPlace({0, 0, 251658225, 9000});
  EXPECT_EQ(start()->windowPlace().width, 12000);
}

TEST_F(SettingsTest, KeepATypedDelayBetweenTwoChips) {
  auto form = start();
  combo(*form, "comDalay_ReDownLoad").userType("25");
  loop.runFor(1s);
  form = start();
  EXPECT_EQ(combo(*form, "comDalay_ReDownLoad").text(), "25");
  combo(*form, "comDalay_ReDownLoad").userPick(3);
  loop.runFor(1s);
  EXPECT_EQ(combo(*start(), "comDalay_ReDownLoad").listIndex(), 3);
  EXPECT_EQ(stored("Dalay_ReDownLoad"), "3");
}

TEST_F(SettingsTest, NeverReadWhatIsOnlyWritten) {
  const std::string before = combo(*start(), "cobBaudMin").text();
  put("DebugAutoOpenPort", "1");
  put("optHexSend_0", "True");
  put("BaudMin", "5");
  put("安全锁", "7");
  const auto form = start();
  EXPECT_EQ(form->registry.find("che_AutoOpenPort")->property("Value"), "0");
  EXPECT_EQ(combo(*form, "cobBaudMin").text(), before);
  for (const auto& [option, value] : {std::pair("Option0", "True"), {"Option1", "False"}, {"Option2", "True"}})
    form->registry.find(option, 0)->setProperty("Value", value);
  loop.runFor(1s);
  EXPECT_EQ(stored("安全锁"), "5");
}

TEST_F(SettingsTest, OfTwoWindowsOnOneFileWriteOnlyWhatChangedInEach) {
  const auto first = start();
  first->settings.saveMainSettings();
  MemoryStore otherStore(store.disk());
  const auto second = std::make_unique<MainForm>(World{loop, link, dialogs, otherStore, files, clock}, codec, records);
  second->load();
  const auto inFile = [&](const char* key) { return store.values().at({"Settings", key}); };
  first->download.txtWrite_OK_Count.setText(" 41");
  loop.runFor(1s);
  combo(*second, "combCommPort").setListIndex(6);
  loop.runFor(1s);
  EXPECT_EQ(inFile("Write_OK_Count"), "41");
  EXPECT_EQ(inFile("COM_port"), "6");
  second->download.txtWrite_OK_Count.setText("3");
  loop.runFor(1s);
  EXPECT_EQ(inFile("Write_OK_Count"), "3");
}

TEST_F(SettingsTest, ThatCannotBeSavedAreToldOnceAndBroughtToTheDiskByTheNextSave) {
  const auto form = start();
  const auto told = [&] {
    const std::string& pane = form->main.textMsg.text();
    const std::size_t first = pane.find("disk full");
    return first == std::string::npos ? 0 : pane.find("disk full", first + 1) == std::string::npos ? 1 : 2;
  };
  store.failure = "disk full";
  combo(*form, "combCommPort").setListIndex(2);
  loop.runFor(1s);
  combo(*form, "combCommPort").setListIndex(3);
  loop.runFor(1s);
  EXPECT_EQ(told(), 1) << form->main.textMsg.text();
  store.failure.clear();
  form->settings.saveMainSettings();
  EXPECT_EQ(store.values().at({"Settings", "COM_port"}), "3");
  const int before = store.flushes;
  form->settings.saveMainSettings();
  EXPECT_EQ(store.flushes, before);
  store.failure = "disk full";
  combo(*form, "combCommPort").setListIndex(1);
  loop.runFor(1s);
  EXPECT_EQ(told(), 2);
}

}  // namespace
}  // namespace kvr::shell
