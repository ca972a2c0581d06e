// What a run asks of the books of a production line: a number for the chip in its hands, and a row for how it ended.
// Who keeps no books gives `NoBooks`.
#pragma once

#include <string>

#include "engine/job.h"
#include "engine/outcome.h"

namespace kvr::engine {

// What the books say. `words` for the user; empty when they are fine.
struct [[nodiscard]] BooksAnswer {
  BooksFault fault = BooksFault::None;
  std::string words;
  bool fine() const { return fault == BooksFault::None; }
};

class RunBooks {
 public:
  RunBooks() = default;
  virtual ~RunBooks() = default;
  RunBooks(const RunBooks&) = delete;
  RunBooks& operator=(const RunBooks&) = delete;

  // A chip has answered, is of the right model and is as it was. Takes a number for it and writes it into the images of
  // `job`. Not fine: the run ends, and the chip stays as it is.
  virtual BooksAnswer claim(Job& job) = 0;
  // The run ends like this, and nobody has been told yet: the row is in the books, and the number spent (after a PASS)
  // or given back, when this returns fine. Else a PASS becomes a failure with these words. Asked once for each run that
  // opened the port, also when it claimed nothing.
  virtual BooksAnswer record(const Outcome& outcome) = 0;
};

class NoBooks : public RunBooks {
 public:
  BooksAnswer claim(Job&) override { return {}; }
  BooksAnswer record(const Outcome&) override { return {}; }
};

}  // namespace kvr::engine
