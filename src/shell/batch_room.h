// The batch of the record store that the runs of the window belong to: its name, what the rows tell of this place, and
// a line that says how far it is. The store is opened when it is needed, never at the start of the window.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "batches/batch_books.h"
#include "download/books_desk.h"
#include "platform/controls.h"
#include "platform/ui_lock.h"
#include "records/record_desk.h"

namespace kvr::shell {

struct BatchPanel {
  BatchPanel();
  void addTo(platform::ControlRegistry& registry);

  platform::TextBox txtBatch{"txtBatch"};        // its name; empty: the runs belong to none
  platform::TextBox txtStation{"txtStation"};    // what its rows call this place; empty: the port's name
  platform::TextBox txtOperator{"txtOperator"};  // who works here
  platform::Label labBatch{"labBatch"};          // shown while there is a name: how far the batch is
};

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

class BatchRoom : public download::BooksDesk {
 public:
  BatchRoom(records::RecordDesk& records, platform::UiLock& lock);

  // What the rows tell of the port: its device, such as "/dev/ttyUSB0", and the adapter it is at. Must be connected.
  struct Place {
    std::string port, adapter;
  };
  std::function<Place()> placeNow;

  // Those that are not closed, the newest first. A store that cannot be reached is waited for, ten seconds at most.
  records::Stored<std::vector<std::string>> openBatches() const;

  bool chosen() const override { return !name_.empty(); }
  [[nodiscard]] std::string open(const engine::Job& job, const std::vector<images::AutoIncrement>& counters) override;
  engine::RunBooks& books() override;
  std::string numberInHand() const override { return books_ ? books_->inHand() : std::string(); }
  [[nodiscard]] bool takesMore() override;

  BatchPanel panel;

 private:
  void shut();
  records::StoreFault reach();
  batches::Bench bench() const;
  void tell(const std::string& state);
  void tell(const records::Batch& batch);

  records::RecordDesk& records_;
  std::unique_ptr<records::RecordStore> store_;
  std::unique_ptr<records::WaitingRoom> waiting_;
  std::unique_ptr<batches::BatchBooks> books_;  // goes before the store does
  std::string name_;                            // of the batch, as it was shown last
  int left_ = 0;                                // results on this computer that still wait for the store
  engine::NoBooks none_;
  ShutBooks shut_;
  platform::Signal::Token lockToken_;
};

}  // namespace kvr::shell
