// What the program keeps between runs: each setting is the last state of a control.
#pragma once

#include <string>
#include <vector>

#include "platform/controls.h"

namespace kvr::shell {

enum class SettingGroup { Main, Tool, UserCode, Demo };

enum class SettingKind {
  Index,   // list index of a combo box, decimal; -1 when its text is not in the list
  Typed,   // text of an editable combo box that is not in its list; empty when it is
  Number,  // text of a box that holds a number
  Text,    // text of a box, unchanged
  Check,   // check box: 0 or 1
  Option,  // one option button: "True" or "False"
  Pair,    // the first of two option buttons: "True" or "False"; what reads false switches the second one on
  YesNo,   // the same, but every text other than "True" switches the second one on
};

struct SettingBinding {
  std::string key;  // in section "Settings"
  SettingKind kind;
  SettingGroup group;
  std::string fallback;  // what an absent key reads as
  std::string control;
  int index = platform::Control::kSingle;
  std::string other;  // Pair, YesNo: the second button
  int otherIndex = platform::Control::kSingle;
  bool read = true;  // false: written for other readers of the store, never restored
};

// The bound settings in the order in which a group is read and written.
const std::vector<SettingBinding>& settingBindings();

}  // namespace kvr::shell
