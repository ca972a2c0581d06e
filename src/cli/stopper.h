// Ends what is under way, from outside: Ctrl-C, a signal, a reader that went away, a wait that has taken long enough.
#pragma once

#include "cli/exit_code.h"
#include "engine/port_lease.h"
#include "engine/run_stop.h"

namespace kvr::cli {

class Stopper {
 public:
  explicit Stopper(engine::PortLease& lease) : lease_(lease) {}
  // The first cause counts. What was written to the port goes out whole before it closes: a chip must get no half
  // frame.
  void end(Cut cut);
  // The run under way goes to its end, and no further one begins.
  void endAfterThis(Cut cut) { later_ = later_ == Cut::None ? cut : later_; }
  // The same when a chip has answered; while none has, there is nothing to finish.
  void endAfterChip(Cut cut);
  void chipInHand(bool inHand);
  bool hasChip() const { return chipInHand_; }
  // The wait for a chip ends while none has answered, and the command goes on.
  void endWait();
  // Whether a wait has ended like that. Another run may begin then.
  bool takeWaitEnded();
  Cut cut() const { return cut_; }
  // Why nothing more may begin.
  Cut pending() const { return cut_ == Cut::None ? later_ : cut_; }

  engine::RunStop stop;

 private:
  engine::PortLease& lease_;
  Cut cut_ = Cut::None;
  Cut later_ = Cut::None;
  bool chipInHand_ = false;
  bool afterChip_ = false;
  bool waitEnded_ = false;
};

}  // namespace kvr::cli
