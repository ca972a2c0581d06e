#include "userpath/trigger_run.h"

#include "userpath/user_bytes.h"

namespace kvr::userpath {

engine::Outcome sendTrigger(const engine::Job& job, const UserCommand& command, const engine::RunServices& services,
                            engine::RunView& view) {
  engine::TargetLink link(services, view, job.port, engine::sumFormOf(job.record()));
  engine::RunContext c(job, link);
  const auto ended = [&](bool good) { return c.outcome(engine::RunKind::Trigger, good, {}); };
  if (link.open(command.settings)) return ended(c.failPort(1));
  link.clearQueues();
  sendUserBytes(link, command.bytes);
  // The firmware needs the silence to see the command's end; what it answers is dropped.
  if (!link.stopped()) link.delay(engine::Millis(20));
  if (!c.stopped()) return ended(true);
  link.close();
  return ended(false);
}

}  // namespace kvr::userpath
