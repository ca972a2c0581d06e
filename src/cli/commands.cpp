#include "cli/command.h"

namespace kvr::cli {

std::vector<std::unique_ptr<Command>> allCommands() {
  std::vector<std::unique_ptr<Command>> all;
  for (const auto make :
       {makeProgramCommand, makeInfoCommand, makeBoardCommand, makeDemoCommand, makeJobCommand, makeImageCommand,
        makeModelsCommand, makeOptionsCommand, makePortsCommand, makeTraceCommand, makeBatchCommand})
    all.push_back(make());
  return all;
}

}  // namespace kvr::cli
