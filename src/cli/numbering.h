// Where the running numbers of a series of chips come from.
#pragma once

#include <string>

#include "cli/job_source.h"

namespace kvr::cli {

struct Onward {
  Problem problem;    // why no further chip can be programmed
  bool full = false;  // there is no further chip to program
};

class Numbering {
 public:
  Numbering() = default;
  virtual ~Numbering() = default;
  Numbering(const Numbering&) = delete;
  Numbering& operator=(const Numbering&) = delete;

  // Before the first chip. A problem: there can be none.
  [[nodiscard]] virtual Problem start(JobSource& source) = 0;
  virtual std::string inHand() const = 0;  // of this chip, or the last one; empty: it has none
  // After a chip that passed; tells the user how it goes on.
  [[nodiscard]] virtual Onward next(JobSource& source) = 0;
};

}  // namespace kvr::cli
