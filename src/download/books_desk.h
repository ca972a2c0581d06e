// Which books the runs of the window go into: none, or those of the batch that the user has chosen.
#pragma once

#include <string>

#include "engine/run_books.h"

namespace kvr::download {

class BooksDesk {
 public:
  BooksDesk() = default;
  virtual ~BooksDesk() = default;
  BooksDesk(const BooksDesk&) = delete;
  BooksDesk& operator=(const BooksDesk&) = delete;

  virtual bool chosen() const = 0;
  // Opens the books for runs with this job. Why no run may start, in words; empty: `books` are ready. Only when chosen.
  [[nodiscard]] virtual std::string open(const engine::Job& job) = 0;
  virtual engine::RunBooks& books() = 0;
  // What the chip in hand carries, for a record; empty: no number.
  virtual std::string numberInHand() const = 0;
};

class NoBooksDesk : public BooksDesk {
 public:
  bool chosen() const override { return false; }
  [[nodiscard]] std::string open(const engine::Job&) override { return {}; }
  engine::RunBooks& books() override { return none_; }
  std::string numberInHand() const override { return {}; }

 private:
  engine::NoBooks none_;
};

}  // namespace kvr::download
