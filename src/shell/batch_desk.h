// The books of the batch that the window's runs belong to. The record store is opened when it is asked for, never at
// the start of the window.
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "batches/batch_books.h"
#include "download/books_desk.h"
#include "records/record_desk.h"

namespace kvr::shell {

// Of a batch that is chosen and not open: no chip passes.
class ShutBooks : public engine::RunBooks {
 public:
  engine::BooksAnswer claim(engine::Job&) override { return {engine::BooksFault::Refused, kWords}; }
  engine::BooksAnswer record(const engine::Outcome& outcome) override {
    return outcome.passed() ? engine::BooksAnswer{engine::BooksFault::Unreachable, kWords} : engine::BooksAnswer{};
  }

 private:
  static constexpr const char* kWords = "The batch is not open.";
};

class BatchDesk : public download::BooksDesk {
 public:
  explicit BatchDesk(records::RecordDesk& records) : records_(records) {}

  // Of the store as it is now, without the closed ones.
  records::Stored<std::vector<std::string>> openBatches();
  // The rows of the runs from now on; an empty name of a batch: none.
  void choose(batches::Bench bench);

  bool chosen() const override { return !bench_.batch.empty(); }
  [[nodiscard]] std::string open(const engine::Job& job) override;
  engine::RunBooks& books() override;
  // Results on this computer that still wait for the store.
  int waiting() const { return books_ ? std::max(left_, books_->waiting()) : left_; }
  std::string numberInHand() const override { return books_ ? books_->inHand() : std::string(); }

 private:
  records::StoreFault reach();
  records::RecordDesk& records_;
  batches::Bench bench_;
  int left_ = 0;
  std::unique_ptr<records::RecordStore> store_;
  std::unique_ptr<records::WaitingRoom> waiting_;
  std::unique_ptr<batches::BatchBooks> books_;  // goes before the store does
  engine::NoBooks none_;
  ShutBooks shut_;
};

}  // namespace kvr::shell
