// A series of chips of a batch: their numbers come from the record store, and each run goes into it.
#pragma once

#include <memory>
#include <string>

#include "batches/batch_books.h"
#include "cli/desk.h"
#include "cli/numbering.h"
#include "cli/store_arguments.h"

namespace kvr::cli {

struct BatchArguments {
  std::string batch, station, operatorName;
  StoreArguments store;

  void declare(CLI::App& app);
};

class BatchLine : public Numbering, public engine::RunBooks {
 public:
  // `port`: the device that the chips are at. `counts`: the arguments or the project have serial numbers of their own,
  // laid out like this.
  BatchLine(const Desk& desk, const BatchArguments& arguments, std::string port, batches::Layout own)
      : desk_(desk), arguments_(arguments), port_(std::move(port)), own_(std::move(own)) {}

  [[nodiscard]] Problem start(JobSource& source) override;
  std::string inHand() const override { return books_ ? books_->inHand() : std::string(); }
  [[nodiscard]] Problem next(JobSource& source) override;
  [[nodiscard]] RoomSeen room() override;
  [[nodiscard]] bool roomAtAGlance() override;
  bool turnedAway() const override { return turnedAway_; }

  engine::BooksAnswer claim(engine::Job& job) override;
  engine::BooksAnswer record(const engine::Outcome& outcome) override;

 private:
  batches::Bench bench() const;
  void tell(const records::Batch& batch);
  const Desk& desk_;
  const BatchArguments& arguments_;
  std::string port_;
  batches::Layout own_;
  OpenBooks open_;
  std::unique_ptr<batches::BatchBooks> books_;
  bool turnedAway_ = false;
};

}  // namespace kvr::cli
