// kvr models: the models that it programs.
#include <set>

#include "cli/command.h"
#include "platform/text.h"

namespace kvr::cli {
namespace {

// '*' stands for any text, '?' for one letter; capitals do not count. A pattern without either is any part of the name.
bool matches(std::string_view pattern, std::string_view name) {
  if (pattern.empty()) return name.empty();
  if (pattern.front() == '*')
    return matches(pattern.substr(1), name) || (!name.empty() && matches(pattern, name.substr(1)));
  if (name.empty() || (pattern.front() != '?' && pattern.front() != name.front())) return false;
  return matches(pattern.substr(1), name.substr(1));
}

std::int64_t sizeOf(std::int32_t first, std::int32_t last) {
  return std::int64_t{last} - first + 1;
}

class ModelsCommand : public Command {
 public:
  std::string name() const override { return "models"; }
  std::string about() const override { return "List the models"; }
  std::string example() const override { return "kvr models 'Ivy-H*'"; }

  void declare(CLI::App& app) override {
    app.add_option("pattern", pattern_, "A part of the name, or with * and ? the whole name")->type_name("PATTERN");
    app.add_option("--family", family_, "Only this family")->type_name("NAME");
  }

  ExitCode run(const Desk& desk) override {
    std::set<std::string_view> shown;
    for (const catalogue::McuRecord& row : catalogue::allRows())
      if (wanted(row) && shown.insert(row.name).second) show(desk, row);
    if (!shown.empty()) return ExitCode::Passed;
    return fail(desk, ExitCode::WrongUse, "No model matches.", "`kvr models` lists them all.");
  }

 private:
  bool wanted(const catalogue::McuRecord& row) const {
    if (!family_.empty() && platform::upper(family_) != platform::upper(traitsOf(row).name)) return false;
    const bool whole = pattern_.find_first_of("*?") != std::string::npos;
    return matches(platform::upper(whole ? pattern_ : "*" + pattern_ + "*"), platform::upper(row.name));
  }

  static void show(const Desk& desk, const catalogue::McuRecord& row) {
    const std::int64_t code = sizeOf(row.apStart, row.apEnd);
    const std::int64_t data = catalogue::hasDataFile(row) ? sizeOf(row.dataStart, row.dataEnd) : 0;
    std::string text(row.name);
    text.resize(std::max<std::size_t>(text.size() + 1, 20), ' ');
    text += std::string(traitsOf(row).name) + "  code " + std::to_string(code) + " bytes";
    if (data > 0) text += ", data file " + std::to_string(data) + " bytes";
    desk.out.result("model",
                    {{"name", std::string(row.name)},
                     {"family", std::string(traitsOf(row).name)},
                     {"code", std::string(row.code)},
                     {"codeBytes", code},
                     {"dataFileBytes", data}},
                    text);
  }

  std::string pattern_;
  std::string family_;
};

}  // namespace

std::unique_ptr<Command> makeModelsCommand() {
  return std::make_unique<ModelsCommand>();
}

}  // namespace kvr::cli
