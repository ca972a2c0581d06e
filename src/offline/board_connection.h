// Finding an off-line board on the line and asking it what it is.
#pragma once

#include "engine/run_context.h"
#include "offline/board_facts.h"

namespace kvr::offline {

class BoardConnection {
 public:
  BoardConnection(engine::RunContext& context, BoardFacts& facts) : c_(context), link_(context.link), facts_(facts) {}

  // Opens the port and polls until a board answers, for 67 minutes at most. `wake`: the board may wait in a sorting
  // machine, send the wake frame first. After a failure the user has been told.
  [[nodiscard]] bool connectBoard(bool wake);

  // Asks for memory and version. False: a stop or no answer, told in the pane.
  [[nodiscard]] bool queryBoardInfo();
  [[nodiscard]] bool queryBoardVersion();

  // Sends a short frame up to `rounds` times; the first frame that comes back.
  [[nodiscard]] std::optional<engine::Reply> ask(int rounds, std::uint8_t command, engine::Millis timeout,
                                                 std::uint8_t argument);

 private:
  bool openPort(bool wake);
  bool openQuietly();
  bool wakeBoard();
  bool pollBoard(engine::Millis timeout, std::uint8_t argument);
  bool awaitBoard(engine::Millis timeout, std::uint8_t argument);
  bool readVersion();
  bool noAnswer();
  engine::Bytes shortFrame(std::uint8_t command, std::uint8_t argument) const;
  engine::RunContext& c_;
  engine::TargetLink& link_;
  BoardFacts& facts_;
};

}  // namespace kvr::offline
