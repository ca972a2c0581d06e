// Finding an off-line board on the line and asking it what it is.
#pragma once

#include "engine/target_link.h"
#include "offline/board_facts.h"

namespace kvr::offline {

class BoardConnection {
 public:
  BoardConnection(engine::TargetLink& link, BoardFacts& facts) : link_(link), facts_(facts) {}

  // Opens the port and polls until a board answers, for 67 minutes at most. `wake`: the board may wait in a sorting
  // machine, send the wake frame first. On failure the words for it stand in the pane and the port is closed.
  [[nodiscard]] bool connectBoard(bool wake);

  // Asks for memory and version. False: a stop or no answer, told in the pane.
  [[nodiscard]] bool queryBoardInfo();
  [[nodiscard]] bool queryBoardVersion();

  // Sends a short frame up to `rounds` times; true as soon as a frame has come back. `alsoSend` follows each frame.
  [[nodiscard]] bool askUntilFrame(int rounds, std::uint8_t command, engine::Millis timeout, std::uint8_t argument);

 private:
  bool openPort(bool wake);
  bool openQuietly();
  bool openFailed();
  bool wakeBoard();
  bool pollBoard(engine::Millis timeout, std::uint8_t argument);
  bool awaitBoard(engine::Millis timeout, std::uint8_t argument);
  bool readVersion();
  bool connectionFailed();
  bool pause(engine::Millis time);  // false: stopped meanwhile
  engine::TargetLink& link_;
  BoardFacts& facts_;
};

}  // namespace kvr::offline
