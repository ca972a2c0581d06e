#include "shell/settings.h"

#include <cmath>

#include "platform/text.h"

namespace kvr::shell {
namespace {

using platform::ComboBox;
using platform::Control;
using platform::OptionButton;
using platform::Tree;

constexpr const char* kModelKey = "DeviceProducts";
constexpr const char* kLockKey = "安全锁";

constexpr double kLargestNumber = 1e9;  // of what a box holds
constexpr int kLargestSide = 120'000;   // twips: 8000 pixels
constexpr int kFarthestEdge = 500'000;  // desktops of several screens have negative places, too
constexpr std::size_t kLongestTyped = 32;

// The number that a text is from end to end; nothing for any other text, and for what only computers call a number.
std::optional<double> numberOf(const std::string& text) {
  const std::string trimmed = platform::trim(text);
  const double value = platform::valueOf(trimmed);
  return platform::isNumberText(trimmed) && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

// A number that a control can hold; it keeps its state for anything else.
bool isNumber(const std::string& text) {
  const auto value = numberOf(text);
  return value && *value >= 0 && *value <= kLargestNumber;
}

std::optional<bool> truthOf(const std::string& text) {
  const std::string word = platform::upper(platform::trim(text));
  if (word == "TRUE" || word == "FALSE") return word == "TRUE";
  const auto value = numberOf(word);
  return value ? std::optional(*value != 0) : std::nullopt;
}

const char* propertyOf(SettingKind kind) {
  switch (kind) {
    case SettingKind::Index:
      return "ListIndex";
    case SettingKind::Typed:
    case SettingKind::Number:
    case SettingKind::Text:
      return "Text";
    default:
      return "Value";
  }
}

// Counts a load; changes of controls meanwhile are not the user's.
class Muting {
 public:
  explicit Muting(int& depth) : depth_(depth) { ++depth_; }
  ~Muting() { --depth_; }
  Muting(const Muting&) = delete;
  Muting& operator=(const Muting&) = delete;

 private:
  int& depth_;
};

}  // namespace

Settings::Settings(platform::EventLoop& loop, platform::SettingsStore& store, const platform::ControlRegistry& registry)
    : registry_(registry), keys_(store), saveTimer_(loop, [this] { saveMainSettings(); }) {}

void Settings::connect() {
  const auto watch = [this](Control* control) {
    if (control) tokens_.push_back(control->changed.watch([this] { requestSave(); }));
  };
  for (const SettingBinding& binding : settingBindings()) {
    watch(registry_.find(binding.control, binding.index));
    if (!binding.other.empty()) watch(registry_.find(binding.other, binding.otherIndex));
  }
  watch(registry_.find("TreeViewDevice"));
  for (const char* lock : {"Option0", "Option1", "Option2"}) watch(registry_.find(lock, 0));
}

void Settings::requestSave() {
  if (loading_ == 0 && !saveTimer_.isActive()) saveTimer_.start(kSaveDelay);
}

void Settings::savePending() {
  if (!saveTimer_.isActive()) return;
  saveTimer_.stop();
  saveMainSettings();
}

void Settings::loadModel() {
  auto* tree = registry_.findAs<Tree>("TreeViewDevice");
  if (!tree) return;
  const std::string stored = keys_.read(kModelKey, std::string(kFirstModel));
  tree->selectKey(stored);
  // A series node is no model to start with.
  if (tree->selectedKey() != stored || stored.empty() || stored.starts_with("Family")) {
    tree->selectKey(std::string(kFirstModel));
  }
  if (hooks.modelSelected) hooks.modelSelected();
}

void Settings::loadMainSettings() {
  const Muting muting(loading_);
  loadModel();
  load(SettingGroup::Main);
  if (auto* port = registry_.findAs<ComboBox>("combCommPort"); port && port->listIndex() == -1) port->setListIndex(0);
  if (auto* pin = registry_.findAs<ComboBox>("comb_WDT"); pin && pin->text().empty()) pin->setListIndex(0);
}

void Settings::loadDemoSettings() {
  load(SettingGroup::Demo);
}
void Settings::loadUserCodeSettings() {
  load(SettingGroup::UserCode);
}
void Settings::loadToolSettings() {
  load(SettingGroup::Tool);
}

void Settings::startDone() {
  for (const SettingBinding& binding : settingBindings()) {
    if (const auto value = valueOf(binding)) keys_.hold(binding.key, *value);
  }
  if (const auto* tree = registry_.findAs<Tree>("TreeViewDevice")) keys_.hold(kModelKey, tree->selectedKey());
  keys_.hold(kLockKey, lockNumber());
}

void Settings::load(SettingGroup group) {
  const Muting muting(loading_);
  for (const SettingBinding& binding : settingBindings()) {
    if (binding.group == group && binding.read) loadOne(binding);
  }
}

void Settings::loadOne(const SettingBinding& binding) {
  Control* control = registry_.find(binding.control, binding.index);
  if (!control) return;
  const std::string stored = keys_.read(binding.key, binding.fallback);
  switch (binding.kind) {
    case SettingKind::Index:
    case SettingKind::Number:
      if (isNumber(stored)) control->setProperty(propertyOf(binding.kind), platform::trim(stored));
      break;
    case SettingKind::Typed:
      if (!stored.empty() && stored.size() <= kLongestTyped) control->setProperty("Text", stored);
      break;
    case SettingKind::Check:
      if (const auto truth = truthOf(stored)) control->setProperty("Value", *truth ? "1" : "0");
      break;
    case SettingKind::Pair:
      if (const auto truth = truthOf(stored)) choose(binding, *truth);
      break;
    case SettingKind::YesNo:
      choose(binding, stored == "True");
      break;
    default:
      control->setProperty(propertyOf(binding.kind), stored);
  }
  if (const auto shown = valueOf(binding)) keys_.hold(binding.key, *shown);
}

void Settings::choose(const SettingBinding& binding, bool first) {
  Control* button =
      first ? registry_.find(binding.control, binding.index) : registry_.find(binding.other, binding.otherIndex);
  if (button) button->setProperty("Value", "True");
}

std::optional<std::string> Settings::valueOf(const SettingBinding& binding) const {
  const Control* control = registry_.find(binding.control, binding.index);
  if (!control) return std::nullopt;
  const std::string shown = control->property(propertyOf(binding.kind));
  if (binding.kind == SettingKind::Typed && control->property("ListIndex") != "-1") return "";
  return binding.kind == SettingKind::Number ? platform::trim(shown) : shown;
}

void Settings::save(SettingGroup group) {
  for (const SettingBinding& binding : settingBindings()) {
    if (binding.group != group) continue;
    if (const auto value = valueOf(binding)) keys_.write(binding.key, *value);
  }
}

// Three bits of the option panel, for other programs that read the store; nothing here reads them.
std::string Settings::lockNumber() const {
  const auto on = [this](const char* name) {
    const auto* button = registry_.findAs<OptionButton>(name, 0);
    return button && button->value();
  };
  return std::to_string(4 * on("Option0") + 2 * on("Option1") + on("Option2"));
}

void Settings::saveModelAndLock() {
  if (const auto* tree = registry_.findAs<Tree>("TreeViewDevice")) keys_.write(kModelKey, tree->selectedKey());
  keys_.write(kLockKey, lockNumber());
  keys_.write("fillbyte", "00");
}

void Settings::saveMainSettings() {
  saveModelAndLock();
  save(SettingGroup::Main);
  if (hooks.rangeShown) hooks.rangeShown();
  saveUserCodeSettings();
  saveDemoSettings();
  saveToolSettings();
  flush();
}

void Settings::saveDemoSettings() {
  save(SettingGroup::Demo);
}

void Settings::saveUserCodeSettings() {
  save(SettingGroup::UserCode);
}

void Settings::saveToolSettings() {
  save(SettingGroup::Tool);
}

void Settings::flush() {
  const platform::FileResult saved = keys_.flush();
  if (!saved && !notSavedTold_ && hooks.notSaved) hooks.notSaved(saved.error);
  notSavedTold_ = !saved;
}

int Settings::number(const std::string& key, int fallback, int least, int most) const {
  const auto value = numberOf(keys_.read(key, {}));
  return value && *value >= least && *value <= most ? static_cast<int>(*value) : fallback;
}

WindowPlace Settings::windowPlace() const {
  const WindowPlace usual;
  return {number("MainLeft", usual.left, -kFarthestEdge, kFarthestEdge),
          number("MainTop", usual.top, -kFarthestEdge, kFarthestEdge),
          number("MainWidth", usual.width, 0, kLargestSide), number("MainHeight", usual.height, 0, kLargestSide)};
}

void Settings::saveWindowPlace(const WindowPlace& place) {
  keys_.write("MainLeft", std::to_string(place.left));
  keys_.write("MainTop", std::to_string(place.top));
  keys_.write("MainWidth", std::to_string(place.width));
  keys_.write("MainHeight", std::to_string(place.height));
  flush();
}

int Settings::frame24Width() const {
  return number("Frame24_Width", 2000, 0, kLargestSide);
}

void Settings::saveFrame24Width(int twips) {
  keys_.write("Frame24_Width", std::to_string(twips));
  flush();
}

std::string Settings::heightChoice() const {
  return keys_.read("AreaHeights", {});
}

void Settings::saveHeightChoice(const std::string& word) {
  keys_.write("AreaHeights", word);
  flush();
}

}  // namespace kvr::shell
