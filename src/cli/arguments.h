// The command line, read: which subcommand, and how it reports.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/command.h"

namespace kvr::cli {

struct Manner {
  bool json = false;
  bool quiet = false;
  bool verbose = false;  // frames, too
  bool noColor = false;
};

class Arguments {
 public:
  explicit Arguments(std::vector<std::unique_ptr<Command>> commands = allCommands());
  // False: the command line asks for nothing further (help, version) or is wrong; `text` and `code` say the rest.
  [[nodiscard]] bool read(const std::vector<std::string>& words);  // without the program's own name
  Command& command() const { return *chosen_; }
  const Manner& manner() const { return manner_; }
  const std::string& text() const { return text_; }  // for standard output after a success, else for standard error
  ExitCode code() const { return code_; }

 private:
  void declare(Command& command);
  CLI::App app_;
  std::vector<std::unique_ptr<Command>> commands_;
  Command* chosen_ = nullptr;
  Manner manner_;
  std::string text_;
  ExitCode code_ = ExitCode::Passed;
};

}  // namespace kvr::cli
