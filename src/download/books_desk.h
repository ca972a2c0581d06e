// Which books the runs of the window go into: none, or those of the batch that the user has chosen.
#pragma once

#include <string>
#include <vector>

#include "engine/run_books.h"
#include "images/auto_increment.h"

namespace kvr::download {

class BooksDesk {
 public:
  BooksDesk() = default;
  virtual ~BooksDesk() = default;
  BooksDesk(const BooksDesk&) = delete;
  BooksDesk& operator=(const BooksDesk&) = delete;

  virtual bool chosen() const = 0;  // then the books give the serial numbers, not the window's own counters
  // Opens the books for runs with this job; `counters`: the window's own that are on. Why no run may start, in words;
  // empty: `books` are ready. Only when chosen.
  [[nodiscard]] virtual std::string open(const engine::Job& job,
                                         const std::vector<images::AutoIncrement>& counters) = 0;
  virtual engine::RunBooks& books() = 0;
  // What the chip in hand carries, for a record; empty: no number.
  virtual std::string numberInHand() const = 0;
  // A run with these books has ended. False: they take no further chip.
  [[nodiscard]] virtual bool takesMore() = 0;
};

class NoBooksDesk : public BooksDesk {
 public:
  bool chosen() const override { return false; }
  [[nodiscard]] std::string open(const engine::Job&, const std::vector<images::AutoIncrement>&) override { return {}; }
  engine::RunBooks& books() override { return none_; }
  std::string numberInHand() const override { return {}; }
  [[nodiscard]] bool takesMore() override { return true; }

 private:
  engine::NoBooks none_;
};

}  // namespace kvr::download
