// One subcommand. A new one is a file of its own with a function that makes it, and a line in commands.cpp.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "cli/desk.h"

namespace kvr::cli {

class Command {
 public:
  virtual ~Command() = default;
  // Name, what it does (a line for the list of commands), and an example for its own help.
  virtual std::string name() const = 0;
  virtual std::string about() const = 0;
  virtual std::string example() const = 0;
  // Its options, bound to members of this object. `app` is its part of the command line.
  virtual void declare(CLI::App& app) = 0;
  // The arguments have been read. Every way out but a success has told why.
  [[nodiscard]] virtual ExitCode run(const Desk& desk) = 0;
};

// In the order of the list that --help shows.
std::vector<std::unique_ptr<Command>> allCommands();

std::unique_ptr<Command> makeProgramCommand();
std::unique_ptr<Command> makeInfoCommand();
std::unique_ptr<Command> makeBoardCommand();
std::unique_ptr<Command> makeDemoCommand();
std::unique_ptr<Command> makePortsCommand();
std::unique_ptr<Command> makeModelsCommand();
std::unique_ptr<Command> makeOptionsCommand();
std::unique_ptr<Command> makeImageCommand();
std::unique_ptr<Command> makeJobCommand();
std::unique_ptr<Command> makeTraceCommand();
std::unique_ptr<Command> makeBatchCommand();

}  // namespace kvr::cli
