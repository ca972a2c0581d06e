// Options by words that a user can guess.
#include <gtest/gtest.h>

#include "options/option_table.h"
#include "options/option_words.h"
#include "project/project_job.h"

namespace kvr::options {
namespace {

using Arguments = std::vector<std::string>;

const catalogue::McuRecord& model(const char* name) {
  return *catalogue::findByName(name);
}

std::string faultOf(const char* name, const Arguments& arguments) {
  return readOptionWords(model(name), arguments).fault;
}

// The choices of a job whose project keeps these lines.
PanelValues valuesOf(const catalogue::McuRecord& record, const std::vector<OptionLine>& lines) {
  project::ProjectFile file{.model = std::string(record.name)};
  for (const OptionLine& line : lines) file.options.push_back({line.key, line.value});
  return project::jobOf(file).choices;
}

TEST(OptionWords, NameEveryOptionOfEveryModelOnceAndLeadBackToIt) {
  std::set<std::string> seenTables;
  for (const auto& record : catalogue::allRows()) {
    if (record.name.empty() || record.noOptions || catalogue::findByName(record.name) != &record) continue;
    SCOPED_TRACE(std::string(record.name));
    const int slot = traitsOf(record).panelSlot;
    const bool whole = hasLine(record, 4);
    if (!seenTables.insert(std::to_string(slot) + catalogue::voltageClass(record) + (whole ? "+" : "-")).second)
      continue;
    std::set<std::string_view> keys;
    std::set<std::string> names;
    const PanelValues fresh = valuesOf(record, {});
    for (const OptionWord& word : optionWords(record)) {
      EXPECT_TRUE(names.insert(word.word).second) << word.word;
      EXPECT_FALSE(word.meaning.empty()) << word.word;
      EXPECT_EQ(chosenPlace(word, fresh), word.standard) << word.word;
      if (!word.listKey.empty()) keys.insert(word.listKey);
      std::set<std::string> choices;
      for (std::size_t i = 0; i < word.choices.size(); ++i) {
        const std::string argument = word.word + "=" + word.choices[i].word;
        EXPECT_TRUE(choices.insert(word.choices[i].word).second) << argument;
        if (word.listKey.empty()) {
          EXPECT_TRUE(keys.insert(word.choices[i].key).second) << argument;
          EXPECT_FALSE(word.choices[i].meaning.empty()) << argument;
        }
        const ReadWords read = readOptionWords(record, Arguments{argument});
        if (!word.changeable && i != word.standard) {
          EXPECT_NE(read.fault, "") << argument;
          continue;
        }
        EXPECT_EQ(read.fault, "") << argument;
        EXPECT_EQ(chosenPlace(word, valuesOf(record, read.lines)), i) << argument;
        if (word.listKey.empty()) {
          const auto byKey = readOptionWords(record, Arguments{std::string(word.choices[i].key) + "=1"});
          EXPECT_EQ(byKey.lines, read.lines) << argument;
        }
      }
      EXPECT_GE(choices.size(), 2u) << word.word;
    }
    for (const OptionRow& row : optionRows(slot)) {
      const bool onPage = row.key != kClew && (whole || !row.key.starts_with("Clear_Unused"));
      EXPECT_EQ(keys.contains(row.key), onPage) << row.key;
    }
  }
  EXPECT_GE(seenTables.size(), 15u);
}

TEST(OptionWords, AreTakenAsUsersWriteThem) {
  const auto lines = [](const char* name, const char* argument) {
    return readOptionWords(model(name), Arguments{argument}).lines;
  };
  const std::vector<OptionLine> on = {{"Power_On_Run_WDT_YES", "True"}, {"Power_On_Run_WDT_NO", "False"}};
  for (const char* text : {"wdt-at-power-up=yes", "WDT_AT_POWER_UP=On", " wdt-at-power-up = true",
                           "Power_On_Run_WDT_YES=1", "power_on_run_wdt_no=False"})
    EXPECT_EQ(lines("Ivy-HF0S", text), on) << text;
  const std::vector<OptionLine> prescaler = {{"WDT_Prescalar", "5"}};
  EXPECT_EQ(lines("Ivy-HF0S", "wdt-prescaler=64"), prescaler);
  EXPECT_EQ(lines("Ivy-HF0S", "WDT_Prescalar=64"), prescaler);
}

TEST(OptionWords, AThresholdGoesByItsFigure) {
  for (const auto& record : catalogue::allRows()) {
    for (const OptionWord& word : optionWords(record)) {
      if (word.word != "low-voltage-reset" || word.choices[0].word != "high") continue;
      const std::string figure = word.choices[1].meaning.substr(2);  // "< 3.3V"
      EXPECT_EQ(readOptionWords(record, Arguments{"low-voltage-reset=" + figure}).lines, linesOf(word, 1))
          << record.name;
      EXPECT_NE(readOptionWords(record, Arguments{"low-voltage-reset=9.9V"}).fault, "") << record.name;
    }
  }
}

TEST(OptionWords, RefuseWhatCannotBeMeantAndSayWhatCan) {
  EXPECT_EQ(faultOf("Ivy-HF0S", {"wdt-presclaer=64"}),
            "Ivy-HF0S has no option \"wdt-presclaer\". Did you mean wdt-prescaler?");
  EXPECT_EQ(faultOf("Ivy-HF0S", {"reset-pin=low"}), "reset-pin can be io or reset, not \"low\".");
  EXPECT_EQ(faultOf("Ivy-HF0S", {"wdt-prescaler=3"}),
            "wdt-prescaler can be 2, 4, 8, 16, 32, 64, 128 or 256, not \"3\".");
  EXPECT_EQ(faultOf("Ivy-HF0S", {"reset-pin"}), "An option is given as NAME=CHOICE, not as \"reset-pin\".");
  EXPECT_EQ(faultOf("Ivy-HF0S", {"wdt-locked=yes"}),
            "wdt-locked is always no: the boot firmware takes no other value.");
  EXPECT_NE(faultOf("Ivy-HF0S", {"zzzzzzzzzzzz=1"}), "");
  EXPECT_NE(faultOf("Ivy-HF0S", {"=", ""}), "");
}

TEST(OptionWords, AFreeResetPinBringsTheExternalClockAsOnThePage) {
  ReadWords read = readOptionWords(model("Ivy-HF0S"), Arguments{"reset-pin=io"});
  ASSERT_EQ(read.notes.size(), 1u);
  EXPECT_EQ(read.notes[0], "reset-pin=io sets clock=external, too.");
  EXPECT_EQ(valuesOf(model("Ivy-HF0S"), read.lines).choices.at("Exterior_Oscillate"), "True");
  read = readOptionWords(model("Ivy-HF0S"), Arguments{"clock=internal"});
  EXPECT_EQ(read.notes, Arguments{"clock=internal sets reset-pin=reset, too."});
  EXPECT_EQ(faultOf("Ivy-HF0S", {"reset-pin=io", "clock=internal"}), "clock=internal needs reset-pin=reset.");
  EXPECT_EQ(faultOf("Ivy-HF0S", {"reset-pin=io", "clock=internal", "reset-pin=reset"}), "");
  EXPECT_TRUE(readOptionWords(model("Ivy-HF0S"), Arguments{"reset-pin=io", "clock=external"}).notes.empty());
}

}  // namespace
}  // namespace kvr::options
