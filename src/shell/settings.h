// Restores the window's choices at a start and saves them half a second after any change.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/controls.h"
#include "platform/event_loop.h"
#include "platform/settings_store.h"
#include "shell/changed_keys.h"
#include "shell/settings_table.h"

namespace kvr::shell {

// Place and size of the window in twips (15 to a pixel of a plain screen).
struct WindowPlace {
  int left = 0;
  int top = 0;
  int width = 12000;
  int height = 9045;
  bool operator==(const WindowPlace&) const = default;
};

class Settings {
 public:
  static constexpr std::string_view kFirstModel = "Hazel-H04";
  static constexpr platform::Millis kSaveDelay{500};

  // What happens around loading and saving; a member that is not connected does nothing.
  struct Hooks {
    std::function<void()> modelSelected;  // a node of the tree has been selected
    std::function<void()> rangeShown;     // computeIspRange for the selected model
    // The settings do not reach the disk, and why; once, until a save works again.
    std::function<void(const std::string& why)> notSaved;
  };

  // The registry must hold all bound controls by the time of the first load; one that is missing is passed over.
  Settings(platform::EventLoop& loop, platform::SettingsStore& store, const platform::ControlRegistry& registry);
  Hooks hooks;

  // From now on a change of a bound control, or of the selected model, asks for a save.
  void connect();

  void loadMainSettings();
  void loadDemoSettings();
  void loadUserCodeSettings();
  void loadToolSettings();
  // Ends the loading: what the controls show now counts as not changed by this window.
  void startDone();

  void saveMainSettings();  // the main group, the ranges, then the three other groups, and all that to the disk

  // Saves after `kSaveDelay`, together with what changes until then. Nothing while settings load.
  void requestSave();
  // Saves at once what waits for its delay: before the window goes.
  void savePending();

  WindowPlace windowPlace() const;
  void saveWindowPlace(const WindowPlace& place);
  int frame24Width() const;  // `Frame24_Width`, twips, as stored
  void saveFrame24Width(int twips);
  // How the right side's areas share its height (area_heights.h).
  std::string heightChoice() const;
  void saveHeightChoice(const std::string& word);

 private:
  void load(SettingGroup group);
  void save(SettingGroup group);
  void saveDemoSettings();
  void saveUserCodeSettings();
  void saveToolSettings();
  void loadOne(const SettingBinding& binding);
  void choose(const SettingBinding& binding, bool first);
  std::optional<std::string> valueOf(const SettingBinding& binding) const;
  void loadModel();
  void saveModelAndLock();
  std::string lockNumber() const;
  void flush();
  int number(const std::string& key, int fallback, int least, int most) const;

  const platform::ControlRegistry& registry_;
  ChangedKeys keys_;
  platform::Timer saveTimer_;
  std::vector<platform::Signal::Token> tokens_;
  int loading_ = 0;
  bool notSavedTold_ = false;
};

}  // namespace kvr::shell
