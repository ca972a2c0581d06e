// Where the running numbers of a series of chips come from.
#pragma once

#include <string>

#include "cli/job_source.h"
#include "cli/value.h"
#include "records/batch.h"

namespace kvr::cli {

struct RoomSeen {
  records::Room room = records::Room::Now;
  std::string words, taken;  // how full it is, for a message and for a sign
};

// Of the event "full". `chipLeft`: a chip has answered, and is as it was.
inline Fields fullFields(const RoomSeen& seen, bool chipLeft) {
  return {
      {"why", seen.words}, {"taken", seen.taken}, {"final", seen.room == records::Room::Never}, {"chipLeft", chipLeft}};
}

class Numbering {
 public:
  Numbering() = default;
  virtual ~Numbering() = default;
  Numbering(const Numbering&) = delete;
  Numbering& operator=(const Numbering&) = delete;

  // Before the first chip. A problem: there can be none.
  [[nodiscard]] virtual Problem start(JobSource& source) = 0;
  virtual std::string inHand() const = 0;  // of this chip, or the last one; empty: it has none
  // After a chip that passed; tells the user how it goes on. A problem: no further one can be programmed.
  [[nodiscard]] virtual Problem next(JobSource& source) = 0;
  // Whether there is a number for another chip. What cannot be known is no reason to wait: the chip's claim tells it.
  [[nodiscard]] virtual RoomSeen room() { return {}; }
  // The last chip was turned away, as it was: there was no number for it.
  virtual bool turnedAway() const { return false; }
  // Room at once, for while a chip is awaited.
  [[nodiscard]] virtual bool roomAtAGlance() { return true; }
};

}  // namespace kvr::cli
