#include "options/option_words.h"

#include <algorithm>
#include <cctype>
#include <map>

#include "options/option_table.h"
#include "options/option_word_rows.h"
#include "platform/nearest.h"
#include "platform/text.h"

namespace kvr::options {
namespace {

using rows::ChoiceWordRow;
using rows::OptionWordRow;

const OptionWordRow* wordRowOf(int slot, std::string_view key) {
  const auto names = [&](const ChoiceWordRow& choice) { return choice.key == key; };
  for (const OptionWordRow& row : rows::kOptionWords)
    if ((row.slots >> slot & 1U) != 0 &&
        (row.listKey == key || std::any_of(row.choices.begin(), row.choices.end(), names)))
      return &row;
  return nullptr;
}

std::span<const std::string_view> entriesOf(std::string_view listKey, const catalogue::McuRecord& record) {
  if (listKey == kPrescalerKey) return kPrescalers;
  if (listKey == kWakeUpKey) return kWakeUpDelays;
  return lowVoltageChoices(catalogue::voltageClass(record));
}

OptionWord listOf(const OptionWordRow& from, const OptionRow& row, const catalogue::McuRecord& record) {
  OptionWord word{
      .word = std::string(from.word), .meaning = std::string(from.meaning), .choices = {}, .listKey = from.listKey};
  const auto entries = entriesOf(from.listKey, record);
  for (const std::string_view entry : entries) word.choices.push_back({std::string(entry), "", ""});
  const auto found = std::find(entries.begin(), entries.end(), row.text);
  if (found != entries.end()) word.standard = static_cast<std::size_t>(found - entries.begin());
  return word;
}

OptionWord buttonsOf(const OptionWordRow& from, int slot, char voltageClass) {
  OptionWord word{.word = std::string(from.word), .meaning = std::string(from.meaning), .choices = {}};
  const auto table = optionRows(slot);
  for (const ChoiceWordRow& choice : from.choices) {
    const OptionRow* row = choice.key.empty() ? nullptr : findRow(slot, choice.key);
    if (row == nullptr) continue;
    const auto caption = static_cast<std::size_t>(row - table.data()) - 1;
    const auto meaning = choice.meaning.empty() ? captionText(slot, caption, voltageClass) : choice.meaning;
    if (row->text == "1") word.standard = word.choices.size();
    word.changeable = row->enabledFree;
    word.choices.push_back({std::string(choice.word), std::string(meaning), choice.key});
  }
  return word;
}

// Lower case, '-' for '_'.
std::string folded(std::string_view text) {
  std::string out = platform::trim(text);
  for (char& c : out) c = c == '_' ? '-' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return out;
}

std::string yesOrNo(const std::string& text) {
  for (const char* yes : {"on", "true", "enable", "enabled"})
    if (text == yes) return "yes";
  for (const char* no : {"off", "false", "disable", "disabled"})
    if (text == no) return "no";
  return text;
}

std::string figureOf(std::string_view text) {
  const auto first = text.find_first_of("0123456789");
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_first_not_of("0123456789.", first) - first));
}

// "3.7", "3.7V" and "< 3.7V" are one and the same; so are "24" and "24MHz".
bool sameFigure(const std::string& text, const WordChoice& choice) {
  const std::string figure = figureOf(text);
  if (figure.empty() || text.find_first_not_of("<0123456789.vmhz ") != std::string::npos) return false;
  const bool isFigure = choice.word.find_first_not_of("0123456789.") == std::string::npos;
  return figure == (isFigure ? choice.word : choice.meaning.starts_with('<') ? figureOf(choice.meaning) : "");
}

bool means(const std::string& text, const WordChoice& choice) {
  return text == choice.word || yesOrNo(text) == choice.word || sameFigure(text, choice);
}

std::string choicesText(const OptionWord& word) {
  std::vector<std::string> names;
  for (const WordChoice& choice : word.choices) names.push_back(choice.word);
  return platform::joinedByOr(names);
}

// Reads argument after argument; what was settled so far is by option word.
class WordReader {
 public:
  explicit WordReader(const catalogue::McuRecord& record) : record_(record), words_(optionWords(record)) {}

  ReadWords read(std::span<const std::string> arguments) {
    for (const std::string& argument : arguments)
      if (read_.fault.empty()) take(argument);
    if (read_.fault.empty()) tieClockAndReset();
    if (!read_.fault.empty()) return std::move(read_);
    for (const auto& [at, place] : chosen_)
      for (OptionLine& line : linesOf(words_[at], place)) read_.lines.push_back(std::move(line));
    return std::move(read_);
  }

 private:
  void take(const std::string& argument) {
    const std::size_t equals = argument.find('=');
    if (equals == std::string::npos) return fail("An option is given as NAME=CHOICE, not as \"" + argument + "\".");
    if (words_.empty()) return fail(std::string(record_.name) + " has no options that can be changed.");
    const std::string name = folded(argument.substr(0, equals)), value = folded(argument.substr(equals + 1));
    for (std::size_t i = 0; i < words_.size(); ++i) {
      if (name == words_[i].word || name == folded(words_[i].listKey)) return choose(i, value);
      if (const auto place = placeOfKey(words_[i], name)) return press(i, *place, value);
    }
    failUnknown(name);
  }

  static std::optional<std::size_t> placeOfKey(const OptionWord& word, const std::string& name) {
    for (std::size_t i = 0; i < word.choices.size(); ++i)
      if (!word.choices[i].key.empty() && name == folded(word.choices[i].key)) return i;
    return std::nullopt;
  }

  void choose(std::size_t at, const std::string& value) {
    const auto& choices = words_[at].choices;
    const auto hit = std::find_if(choices.begin(), choices.end(), [&](const WordChoice& c) { return means(value, c); });
    if (hit == choices.end())
      return fail(words_[at].word + " can be " + choicesText(words_[at]) + ", not \"" + value + "\".");
    settle(at, static_cast<std::size_t>(hit - choices.begin()));
  }

  // By the key of a button, which is switched on or off.
  void press(std::size_t at, std::size_t place, const std::string& value) {
    const OptionWord& word = words_[at];
    const std::string state = yesOrNo(value);
    if (state == "yes" || state == "1") return settle(at, place);
    if ((state != "no" && state != "0") || word.choices.size() != 2)
      return fail(std::string(word.choices[place].key) + " can be switched on with =1; by word: " + word.word + "=" +
                  word.choices[place].word + ".");
    settle(at, 1 - place);
  }

  void settle(std::size_t at, std::size_t place) {
    const OptionWord& word = words_[at];
    if (!word.changeable && place != word.standard)
      return fail(word.word + " is always " + word.choices[word.standard].word +
                  ": the boot firmware takes no other value.");
    chosen_[at] = place;
  }

  // A free RESET pin needs an external clock, and the internal one needs the pin: the page switches the other line,
  // too.
  void tieClockAndReset() {
    if (!traitsOf(record_).longOptions()) return;
    for (const auto& [control, other] : {std::pair{"Option0", "Option1"}, {"Option1", "Option0"}}) {
      const auto cause = buttonOf(control, 0), forced = buttonOf(other, 1);
      if (!cause || !forced || chosen_.find(cause->at) == chosen_.end() || chosen_[cause->at] != cause->place) continue;
      return force(forced->at, forced->place,
                   words_[cause->at].word + "=" + words_[cause->at].choices[cause->place].word);
    }
  }

  struct Button {
    std::size_t at, place;
  };
  std::optional<Button> buttonOf(std::string_view control, int index) const {
    for (std::size_t i = 0; i < words_.size(); ++i)
      for (std::size_t place = 0; place < words_[i].choices.size(); ++place) {
        const OptionRow* row = findRow(traitsOf(record_).panelSlot, words_[i].choices[place].key);
        if (row != nullptr && row->control == control && row->index == index) return Button{i, place};
      }
    return std::nullopt;
  }

  void force(std::size_t at, std::size_t place, const std::string& because) {
    const std::string needed = words_[at].word + "=" + words_[at].choices[place].word;
    const auto given = chosen_.find(at);
    if (given != chosen_.end() && given->second != place) return fail(because + " needs " + needed + ".");
    if (given == chosen_.end()) read_.notes.push_back(because + " sets " + needed + ", too.");
    chosen_[at] = place;
  }

  void failUnknown(const std::string& name) {
    std::vector<std::string> names;
    for (const OptionWord& word : words_) names.push_back(word.word);
    const auto nearest = platform::nearestNames(name, names);
    const std::string hint = nearest.empty() ? "" : " Did you mean " + platform::joinedByOr(nearest) + "?";
    fail(std::string(record_.name) + " has no option \"" + name + "\"." + hint);
  }

  void fail(std::string why) { read_.fault = std::move(why); }

  const catalogue::McuRecord& record_;
  std::vector<OptionWord> words_;
  std::map<std::size_t, std::size_t> chosen_;
  ReadWords read_;
};

}  // namespace

std::vector<OptionWord> optionWords(const catalogue::McuRecord& record) {
  std::vector<OptionWord> words;
  if (record.noOptions) return words;
  const int slot = traitsOf(record).panelSlot;
  std::vector<const OptionWordRow*> seen;
  int line = 0;
  for (const OptionRow& row : optionRows(slot)) {
    if (row.control == "LabOption") line = row.index;
    const OptionWordRow* from = row.key == kClew || !hasLine(record, line) ? nullptr : wordRowOf(slot, row.key);
    if (from == nullptr || std::find(seen.begin(), seen.end(), from) != seen.end()) continue;
    seen.push_back(from);
    words.push_back(from->listKey.empty() ? buttonsOf(*from, slot, catalogue::voltageClass(record))
                                          : listOf(*from, row, record));
  }
  return words;
}

std::optional<std::size_t> chosenPlace(const OptionWord& word, const PanelValues& values) {
  if (word.listKey == kLowVoltageKey) {
    const auto place = static_cast<std::size_t>(values.lowVoltageIndex);
    return place < word.choices.size() ? std::optional(place) : std::nullopt;
  }
  const std::string& entry = word.listKey == kPrescalerKey ? values.prescaler : values.wakeUpDelay;
  for (std::size_t i = 0; i < word.choices.size(); ++i) {
    if (!word.listKey.empty() && word.choices[i].word == entry) return i;
    const auto made = values.choices.find(word.choices[i].key);
    if (word.listKey.empty() && made != values.choices.end() && made->second == "True") return i;
  }
  return std::nullopt;
}

std::vector<OptionLine> linesOf(const OptionWord& word, std::size_t place) {
  if (!word.listKey.empty()) return {{std::string(word.listKey), std::to_string(place)}};
  std::vector<OptionLine> lines;
  for (std::size_t i = 0; i < word.choices.size(); ++i)
    lines.push_back({std::string(word.choices[i].key), i == place ? "True" : "False"});
  return lines;
}

ReadWords readOptionWords(const catalogue::McuRecord& record, std::span<const std::string> arguments) {
  return WordReader(record).read(arguments);
}

}  // namespace kvr::options
