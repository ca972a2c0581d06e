// A model's options by words that a user can guess, `wdt-prescaler=64`: what there is to choose, and from words to the
// lines that a project file keeps.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/mcu_record.h"
#include "options/compose_options.h"

namespace kvr::options {

struct WordChoice {
  std::string word;
  std::string meaning;
  std::string_view key;  // of the button; empty: an entry of a list
};

struct OptionWord {
  std::string word;
  std::string meaning;
  std::vector<WordChoice> choices;  // of a list: all entries in their order
  std::size_t standard = 0;         // the choice that a freshly selected model has
  bool changeable = true;           // false: the boot firmware takes no other value than the standard one
  std::string_view listKey{};       // empty: buttons
};

// What the model's options page offers, in its order; empty for a model without changeable options.
std::vector<OptionWord> optionWords(const catalogue::McuRecord& record);

// The place of the choice that is made in `values`; nothing when none is.
std::optional<std::size_t> chosenPlace(const OptionWord& word, const PanelValues& values);

// A choice as project files keep it: a button's key with "True" or "False", a list's key with the place in the list.
struct OptionLine {
  std::string key;
  std::string value;
  bool operator==(const OptionLine&) const = default;
};
std::vector<OptionLine> linesOf(const OptionWord& word, std::size_t place);

// What a row of arguments such as "reset-pin=io" asks for. A later argument overrules an earlier one of the same
// option. Options are named by word or by key, choices by word; case and '_' for '-' do not count, "on" and "off" go
// for "yes" and "no", and a figure may carry its unit.
struct ReadWords {
  std::vector<OptionLine> lines;
  std::vector<std::string> notes;  // what had to be set along with them, for the user
  std::string fault;               // why an argument cannot be meant, with what can; empty: all can
};
ReadWords readOptionWords(const catalogue::McuRecord& record, std::span<const std::string> arguments);

}  // namespace kvr::options
