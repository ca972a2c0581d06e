// kvr options: what can be chosen for a model, in words.
#include "cli/command.h"
#include "cli/job_source.h"
#include "options/option_table.h"
#include "options/option_words.h"

namespace kvr::cli {
namespace {

using options::OptionWord;

std::string padded(std::string text, std::size_t width) {
  text.resize(std::max(text.size() + 1, width), ' ');
  return text;
}

std::string choiceText(const OptionWord& word, std::size_t place) {
  const options::WordChoice& choice = word.choices[place];
  return (place == word.standard ? "  * " : "    ") + padded(choice.word, 14) + choice.meaning;
}

// The entries of a list say themselves what they are.
std::string listText(const OptionWord& word) {
  std::string text = "    ";
  for (std::size_t i = 0; i < word.choices.size(); ++i)
    text += (i == 0 ? "" : ", ") + std::string(i == word.standard ? "*" : "") + word.choices[i].word;
  return text;
}

std::string wordText(const OptionWord& word) {
  std::string text = word.word + ": " + word.meaning + (word.changeable ? "" : " (cannot be changed)");
  if (!word.listKey.empty()) return text + "\n" + listText(word);
  for (std::size_t i = 0; i < word.choices.size(); ++i) text += "\n" + choiceText(word, i);
  return text;
}

Fields wordFields(const OptionWord& word) {
  List choices;
  for (const options::WordChoice& choice : word.choices) {
    Fields fields = {{"name", choice.word}, {"meaning", choice.meaning}};
    if (!choice.key.empty()) fields.push_back({"key", std::string(choice.key)});
    choices.push_back(std::move(fields));
  }
  Fields fields = {{"name", word.word},
                   {"meaning", word.meaning},
                   {"default", word.choices[word.standard].word},
                   {"changeable", word.changeable},
                   {"choices", std::move(choices)}};
  if (!word.listKey.empty()) fields.push_back({"key", std::string(word.listKey)});
  return fields;
}

class OptionsCommand : public Command {
 public:
  std::string name() const override { return "options"; }
  std::string about() const override { return "List the options of a model: names, choices, defaults (*)"; }
  std::string example() const override { return "kvr options Ivy-HF0S"; }

  void declare(CLI::App& app) override {
    app.add_option("model", model_, "Model of the chip")->required()->type_name("NAME");
  }

  ExitCode run(const Desk& desk) override {
    const catalogue::McuRecord* model = nullptr;
    if (const Problem problem = findModel(model_, model)) return fail(desk, problem.code, problem.why, problem.next);
    const auto words = options::optionWords(*model);
    for (const OptionWord& word : words) desk.out.result("option", wordFields(word), wordText(word));
    if (words.empty()) tellFixed(desk, *model);
    return ExitCode::Passed;
  }

 private:
  static void tellFixed(const Desk& desk, const catalogue::McuRecord& model) {
    const auto fixed = options::fixedOptionTexts(model);
    desk.out.note(std::string(model.name) + " has no options that can be changed." + (fixed.empty() ? "" : " Fixed:"));
    for (const std::string_view text : fixed)
      desk.out.result("fixedOption", {{"text", std::string(text)}}, "    " + std::string(text));
  }

  std::string model_;
};

}  // namespace

std::unique_ptr<Command> makeOptionsCommand() {
  return std::make_unique<OptionsCommand>();
}

}  // namespace kvr::cli
