#include "shell/settings.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "platform/virtual/virtual_loop.h"
#include "platform/virtual/virtual_world.h"

namespace kvr::shell {
namespace {

using namespace platform;
using namespace std::chrono_literals;

// A window with a control for every binding, on a store that several windows may share.
class Window {
 public:
  Window(VirtualLoop& loop, SettingsStore& store) : settings_(loop, store, registry_) {
    for (const SettingBinding& binding : settingBindings()) make(binding);
    auto tree = std::make_unique<Tree>("TreeViewDevice");
    tree->setNodes({{"FamilyHazel", "", "Hazel series"},
                    {"Hazel-H04", "FamilyHazel", "Hazel-H04"},
                    {"Hazel-H08", "FamilyHazel", "Hazel-H08"}});
    keep(std::move(tree));
    for (const char* name : {"Option0", "Option1", "Option2"}) keep(std::make_unique<OptionButton>(name, 0));
    combo("combCommPort").setListIndex(-1);
    settings_.hooks.modelSelected = [this] { models.push_back(tree_().selectedKey()); };
    settings_.hooks.rangeShown = [this] { ++ranges; };
  }

  void start() {
    settings_.connect();
    settings_.loadMainSettings();
    settings_.loadDemoSettings();
    settings_.loadToolSettings();
    settings_.loadUserCodeSettings();
    settings_.startDone();
  }

  Control& at(const std::string& name, int index = Control::kSingle) { return *registry_.find(name, index); }
  ComboBox& combo(const std::string& name, int index = Control::kSingle) {
    return *registry_.findAs<ComboBox>(name, index);
  }
  Tree& tree_() { return *registry_.findAs<Tree>("TreeViewDevice"); }
  Settings& settings() { return settings_; }

  // What a person would see, control by control.
  std::vector<std::string> look() const {
    std::vector<std::string> all;
    for (const SettingBinding& b : settingBindings()) {
      if (b.read) all.push_back(b.key + "=" + property(b));
    }
    return all;
  }
  std::string property(const SettingBinding& b) const {
    const Control& control = *registry_.find(b.control, b.index);
    if (b.kind == SettingKind::Index) return control.property("ListIndex");
    const bool isText = b.kind == SettingKind::Text || b.kind == SettingKind::Number;
    return control.property(isText ? "Text" : "Value");
  }
  void changeEverything() {
    int i = 0;
    for (const SettingBinding& b : settingBindings()) {
      Control& control = *registry_.find(b.control, b.index);
      ++i;
      switch (b.kind) {
        case SettingKind::Index:
          control.setProperty("ListIndex", std::to_string(4 + i % 5));
          break;
        case SettingKind::Number:
          control.setProperty("Text", std::to_string(1000 + i));
          break;
        case SettingKind::Text:
          control.setProperty("Text", "line " + std::to_string(i) + "\nwith = ; \"signs\" 中");
          break;
        case SettingKind::Check:
          control.setProperty("Value", "1");
          break;
        case SettingKind::Option:
          control.setProperty("Value", "True");
          break;
        default:
          registry_.find(b.other, b.otherIndex)->setProperty("Value", "True");
      }
    }
    tree_().selectKey("Hazel-H08");
  }

  std::vector<std::string> models;
  int ranges = 0;

 private:
  void keep(std::unique_ptr<Control> control) {
    registry_.add(*control);
    controls_.push_back(std::move(control));
  }
  void make(const SettingBinding& b) {
    if (registry_.find(b.control, b.index)) return;
    if (b.kind == SettingKind::Index || b.control == "com_RC_frequency") {
      auto box = std::make_unique<ComboBox>(b.control, b.index);
      box->setItems({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"});
      box->setEditable(b.kind == SettingKind::Text);
      keep(std::move(box));
    } else if (b.kind == SettingKind::Check) {
      keep(std::make_unique<CheckBox>(b.control, b.index));
    } else if (b.kind == SettingKind::Text || b.kind == SettingKind::Number) {
      keep(std::make_unique<TextBox>(b.control, b.index));
    } else {
      makeButtons(b);
    }
  }
  void makeButtons(const SettingBinding& b) {
    auto first = std::make_unique<OptionButton>(b.control, b.index);
    if (!b.other.empty()) {
      auto second = std::make_unique<OptionButton>(b.other, b.otherIndex);
      groups_.push_back(std::make_unique<OptionGroup>());
      groups_.back()->add(*first);
      groups_.back()->add(*second);
      keep(std::move(second));
    }
    keep(std::move(first));
  }

  ControlRegistry registry_;
  std::vector<std::unique_ptr<OptionGroup>> groups_;
  std::vector<std::unique_ptr<Control>> controls_;
  Settings settings_;
};

class SettingsTest : public ::testing::Test {
 protected:
  std::optional<std::string> stored(const std::string& key) const { return store.get("Settings", key); }
  void put(const std::string& key, const std::string& value) { store.values[{"Settings", key}] = value; }
  VirtualLoop loop;
  MemoryStore store;
};

TEST_F(SettingsTest, StartWithTheirDefaultsOnAnEmptyStoreAndWriteNothing) {
  Window window(loop, store);
  window.start();
  loop.runFor(2s);
  EXPECT_EQ(window.models, std::vector<std::string>{"Hazel-H04"});
  EXPECT_EQ(window.combo("combCommPort").listIndex(), 0);
  EXPECT_EQ(window.at("optBeepYes").property("Value"), "True");
  EXPECT_EQ(window.combo("comDalay_ReDownLoad").listIndex(), 4);
  EXPECT_EQ(window.at("com_RC_frequency", 0).property("Text"), "18.432");
  EXPECT_EQ(window.at("com_RC_frequency", 5).property("Text"), "11.059");
  EXPECT_EQ(window.at("opt_485_logic", 0).property("Value"), "True");
  EXPECT_EQ(window.combo("com_Debug_ParityCheck").listIndex(), 2);
  EXPECT_EQ(window.combo("cob_DEMO_UserCode_Parity").listIndex(), 0);
  EXPECT_FALSE(window.at("texSend").property("Text").empty());
  EXPECT_EQ(window.settings().windowPlace(), (WindowPlace{0, 0, 12000, 9045}));
  EXPECT_EQ(store.writes, 0);
}

TEST_F(SettingsTest, BringBackEverythingThatWasChanged) {
  Window before(loop, store);
  before.start();
  before.changeEverything();
  before.settings().saveWindowPlace({150, 300, 15000, 10000});
  before.settings().saveFrame24Width(777);
  loop.runFor(501ms);
  Window after(loop, store);
  after.start();
  EXPECT_EQ(after.look(), before.look());
  EXPECT_EQ(after.models, std::vector<std::string>{"Hazel-H08"});
  EXPECT_EQ(after.settings().windowPlace(), (WindowPlace{150, 300, 15000, 10000}));
  EXPECT_EQ(after.settings().frame24Width(), 777);
}

TEST_F(SettingsTest, AreSavedOnceHalfASecondAfterTheFirstOfSeveralChanges) {
  Window window(loop, store);
  window.start();
  window.combo("combCommPort").setListIndex(3);
  loop.runFor(300ms);
  window.combo("combCommPort").setListIndex(5);
  loop.runFor(199ms);
  EXPECT_EQ(store.writes, 0);
  loop.runFor(1ms);
  EXPECT_EQ(stored("COM_port"), "5");
  EXPECT_EQ(store.flushes, 1);
  EXPECT_EQ(window.ranges, 1);
  // All keys of all groups are there now, those that are never read, too.
  for (const SettingBinding& binding : settingBindings()) EXPECT_TRUE(stored(binding.key)) << binding.key;
  EXPECT_EQ(stored("fillbyte"), "00");
  EXPECT_EQ(stored("DeviceProducts"), "Hazel-H04");
  loop.runFor(5s);
  EXPECT_EQ(store.flushes, 1);
  window.combo("com_Debug_Baud").setListIndex(7);
  window.settings().savePending();
  EXPECT_EQ(stored("DebugBaud"), "7");
  window.settings().savePending();
  EXPECT_EQ(store.flushes, 2);
}

TEST_F(SettingsTest, LeaveAControlAloneWhenAStoredValueDoesNotFit) {
  put("COM_port", "40");
  put("com_RC_frequency_1", "two");
  put("Dalay_ReDownLoad", "-7");
  put("Write_OK_Count", "");
  put("pin_for_485", "maybe");
  put("logic_of_control_485", "0");
  put("BeepYesNo", "yes");
  put("DeviceProducts", "FamilyHazel");
  put("MainWidth", "wide");
  Window window(loop, store);
  window.combo("com_RC_frequency", 1).setListIndex(6);
  window.combo("comDalay_ReDownLoad").setListIndex(2);
  window.start();
  EXPECT_EQ(window.combo("combCommPort").listIndex(), 0);
  EXPECT_EQ(window.combo("com_RC_frequency", 1).listIndex(), 6);
  EXPECT_EQ(window.combo("comDalay_ReDownLoad").listIndex(), 2);
  EXPECT_EQ(window.at("txtWrite_OK_Count").property("Text"), "");
  EXPECT_EQ(window.at("opt_485_pin", 0).property("Value"), "False");
  EXPECT_EQ(window.at("opt_485_pin", 1).property("Value"), "False");
  EXPECT_EQ(window.at("opt_485_logic", 1).property("Value"), "True");
  EXPECT_EQ(window.at("optBeepNo").property("Value"), "True");
  EXPECT_EQ(window.models, std::vector<std::string>{"Hazel-H04"});
  EXPECT_EQ(window.settings().windowPlace().width, 12000);
}

TEST_F(SettingsTest, NeverReadWhatIsOnlyWritten) {
  put("DebugAutoOpenPort", "1");
  put("optHexSend_0", "True");
  put("BaudMin", "5");
  put("WDT_Prescalar", "4");
  put("安全锁", "7");
  Window window(loop, store);
  window.start();
  EXPECT_EQ(window.at("che_AutoOpenPort").property("Value"), "0");
  EXPECT_EQ(window.at("optHexSend", 0).property("Value"), "False");
  EXPECT_EQ(window.combo("cobBaudMin").listIndex(), -1);
  EXPECT_EQ(window.combo("comWDT_Prescalar", 0).listIndex(), -1);
  EXPECT_EQ(window.at("Option0", 0).property("Value"), "False");
  window.at("Option0", 0).setProperty("Value", "True");
  window.at("Option2", 0).setProperty("Value", "True");
  loop.runFor(1s);
  EXPECT_EQ(stored("安全锁"), "5");
}

TEST_F(SettingsTest, OfTwoWindowsOnOneStoreWriteOnlyWhatChangedInEach) {
  Window first(loop, store);
  first.start();
  first.settings().saveMainSettings();
  Window second(loop, store);
  second.start();
  first.at("txtWrite_OK_Count").setProperty("Text", "41");
  first.settings().saveCounter();
  second.combo("combCommPort").setListIndex(6);
  loop.runFor(1s);
  EXPECT_EQ(stored("Write_OK_Count"), "41");
  EXPECT_EQ(stored("COM_port"), "6");
  first.combo("comDalay_ReDownLoad").setListIndex(1);
  loop.runFor(1s);
  EXPECT_EQ(stored("COM_port"), "6");
  EXPECT_EQ(stored("Dalay_ReDownLoad"), "1");
  second.at("txtWrite_OK_Count").setProperty("Text", "3");
  loop.runFor(1s);
  EXPECT_EQ(stored("Write_OK_Count"), "3");
}

// A store whose disk is full for a while.
class FailingStore : public MemoryStore {
 public:
  bool flush() override { return full ? false : MemoryStore::flush(); }
  bool full = true;
};

TEST_F(SettingsTest, AreBroughtToTheDiskByTheNextSaveWhenOneFailed) {
  FailingStore failing;
  Window window(loop, failing);
  window.start();
  window.combo("combCommPort").setListIndex(2);
  loop.runFor(1s);
  failing.full = false;
  window.settings().saveMainSettings();
  EXPECT_EQ(failing.flushes, 1);
  window.settings().saveMainSettings();
  EXPECT_EQ(failing.flushes, 1);
}

}  // namespace
}  // namespace kvr::shell
