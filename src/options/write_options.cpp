// write_options FILE: writes the handbook's chapter of all options by family, as the tables have them.
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "catalogue/family.h"
#include "catalogue/mcu_record.h"
#include "options/option_words.h"

namespace {

using kvr::options::OptionWord;
using kvr::options::WordChoice;

std::string choiceText(const WordChoice& choice, bool standard) {
  const std::string word = standard ? "**`" + choice.word + "`**" : "`" + choice.word + "`";
  return choice.meaning.empty() ? word : word + ": " + choice.meaning;
}

std::string rowText(const OptionWord& word) {
  std::string choices;
  for (std::size_t i = 0; i < word.choices.size(); ++i)
    choices += (i > 0 ? "; " : "") + choiceText(word.choices[i], i == word.standard);
  return "| " + word.meaning + " | `" + word.word + "` | " + choices + (word.changeable ? "" : " (cannot be changed)") +
         " |\n";
}

std::string tableOf(const kvr::catalogue::McuRecord& record) {
  std::string text;
  for (const OptionWord& word : kvr::options::optionWords(record)) text += rowText(word);
  return text;
}

// Models of one family that have the same options.
struct Group {
  std::string table;
  std::vector<std::string> models;
};

std::vector<Group> groupsOf(kvr::catalogue::Family family) {
  std::vector<Group> groups;
  for (const auto& record : kvr::catalogue::allRows()) {
    if (record.family != family || record.name.empty()) continue;
    const std::string table = tableOf(record);
    auto group = groups.begin();
    while (group != groups.end() && group->table != table) ++group;
    if (group == groups.end()) group = groups.insert(group, {table, {}});
    group->models.emplace_back(record.name);
  }
  return groups;
}

std::string listOf(const std::vector<std::string>& models) {
  constexpr std::size_t kNamed = 6;
  std::string text;
  for (std::size_t i = 0; i < models.size() && i < kNamed; ++i) text += (i > 0 ? ", " : "") + models[i];
  return models.size() > kNamed ? text + " and " + std::to_string(models.size() - kNamed) + " more" : text;
}

std::string chapter() {
  std::string text =
      "# Options by family\n\nWhat each option means, the word that [the command](command.md) has for it, and its "
      "choices. A freshly selected model has the choice that is **bold**. [Options](options.md) tells what to think of "
      "before you change one.\n";
  for (const auto& traits : kvr::catalogue::allFamilies()) {
    const auto groups = groupsOf(traits.family);
    if (groups.empty()) continue;
    text += "\n## " + std::string(traits.name) + "\n";
    for (const Group& group : groups) {
      text += "\n" + (groups.size() > 1 ? listOf(group.models) + ":\n\n" : std::string());
      text += group.table.empty() ? "No option can be chosen.\n"
                                  : "| Option | Word | Choices |\n|---|---|---|\n" + group.table;
    }
  }
  return text;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: write_options FILE\n";
    return 2;
  }
  std::ofstream file(argv[1], std::ios::binary | std::ios::trunc);
  file << chapter() << std::flush;
  if (file) return 0;
  std::cerr << argv[1] << ": cannot be written\n";
  return 1;
}
