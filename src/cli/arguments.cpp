#include "cli/arguments.h"

#include <algorithm>
#include <sstream>

namespace kvr::cli {
namespace {

constexpr const char* kAbout =
    "Programs KVR chips in-system over a serial line.\n"
    "Messages go to standard error, results to standard output.";
constexpr const char* kEnd =
    "Ends with 0 passed, 1 the chip failed, 2 wrong use, 3 port, 4 no chip came, 5 another model, 6 file or project,\n"
    "7 refused before the start, 8 passed in part, 9 record store, 130 stopped. More: man kvr";

}  // namespace

Arguments::Arguments(std::vector<std::unique_ptr<Command>> commands)
    : app_(kAbout, "kvr"), commands_(std::move(commands)) {
  app_.set_version_flag("--version", "kvr " KVR_VERSION);
  app_.allow_windows_style_options(false);  // "/path" is a file on every system
  app_.require_subcommand(1);
  app_.fallthrough();  // --json and its like may come after the subcommand, too
  app_.footer(kEnd);
  app_.add_flag("--json", manner_.json, "Report as JSON, one object a line, on standard output");
  auto* quiet = app_.add_flag("-q,--quiet", manner_.quiet, "No messages but failures");
  app_.add_flag("-v,--verbose", manner_.verbose, "The frames of a run, too, as they go")->excludes(quiet);
  app_.add_flag("--no-color", manner_.noColor, "No colours and no progress line");
  for (const auto& command : commands_) declare(*command);
}

void Arguments::declare(Command& command) {
  CLI::App* sub = app_.add_subcommand(command.name(), command.about());
  sub->footer("Example:\n  " + command.example());
  command.declare(*sub);
  sub->final_callback([this, &command] { chosen_ = &command; });
}

bool Arguments::read(const std::vector<std::string>& words) {
  try {
    app_.parse(std::vector<std::string>(words.rbegin(), words.rend()));
    return true;
  } catch (const CLI::ParseError& error) {
    std::ostringstream out;
    std::ostringstream err;
    code_ = app_.exit(error, out, err) == 0 ? ExitCode::Passed : ExitCode::WrongUse;
    text_ = code_ == ExitCode::Passed ? out.str() : err.str();
    return false;
  }
}

}  // namespace kvr::cli
