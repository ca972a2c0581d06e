// A run's books in a batch of the record store: its number is reserved when the chip is known, spent with the row of
// the PASS, given back otherwise. What the store cannot take waits on this computer, and its chip does not pass.
#pragma once

#include <string>

#include "batches/chip_numbers.h"
#include "engine/run_books.h"
#include "records/record_desk.h"

namespace kvr::batches {

// What a row tells of where it was made.
struct Bench {
  std::string batch, station, port, adapter, operatorName, programVersion;
};

// Where the rows go. All must live as long as the books.
struct Shelf {
  records::RecordStore& store;
  const records::WaitingRoom& waiting;
  const records::RecordDesk& desk;
};

class BatchBooks : public engine::RunBooks {
 public:
  BatchBooks(const Shelf& shelf, Bench bench, Layout layout)
      : shelf_(shelf), bench_(std::move(bench)), layout_(std::move(layout)) {}

  // Refused when the batch takes no further chip or `job` is not the batch's.
  engine::BooksAnswer claim(engine::Job& job) override;
  engine::BooksAnswer record(const engine::Outcome& outcome) override;

  // Of the run that goes on, or of the last one: "123", or "123/7" of two counters; empty: it has none.
  const std::string& inHand() const { return inHand_; }
  // Results on this computer that the store did not take when it was last there.
  int waiting() const { return waiting_; }
  std::int64_t place() const { return place_.ordinal; }  // 0: the batch's first chip

 private:
  records::RunRow rowOf(const engine::Outcome& outcome) const;
  records::StoreFault write(const engine::Outcome& outcome, records::RunRow& row);
  engine::BooksAnswer setAside(const records::StoreFault& fault, records::RunRow row);

  Shelf shelf_;
  Bench bench_;
  Layout layout_;
  records::Reservation place_;  // without a run: none
  std::string inHand_;
  std::string began_;
  int waiting_ = 0;
};

}  // namespace kvr::batches
