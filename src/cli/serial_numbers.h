// Running numbers that go into the images, one a chip. They begin where the command line or a project says; where they
// end is told, since a command remembers nothing.
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

#include "cli/job_source.h"
#include "cli/numbering.h"
#include "cli/output.h"
#include "images/auto_increment.h"

namespace kvr::cli {

class SerialArguments {
 public:
  void declare(CLI::App& app);
  // The counters that these arguments and the project ask for.
  [[nodiscard]] Problem counters(const JobSource& source, bool yes, std::vector<images::AutoIncrement>& found) const;
  // Where the project has its counters, for a batch that gives the numbers. These arguments must not be there then.
  [[nodiscard]] Problem ofBatch(const JobSource& source, std::vector<images::AutoIncrement>& found) const;

 private:
  [[nodiscard]] Problem given(images::AutoIncrement& counter) const;
  std::string at_;
  std::string next_;
  std::optional<int> step_;
  std::optional<int> width_;
  std::string radix_;
};

class SerialNumbers {
 public:
  // Puts the next numbers into the images and the job, or says why not.
  [[nodiscard]] Problem start(JobSource& source, std::vector<images::AutoIncrement> counters);
  [[nodiscard]] Problem advance(JobSource& source);
  std::string inHand() const;  // "000123"; with two counters "000123/7"; empty: there is none

 private:
  Problem check(const catalogue::McuRecord& model) const;
  void write(JobSource& source) const;
  std::vector<images::AutoIncrement> counters_;
};

// The numbers of a series without a batch.
class OwnNumbering : public Numbering {
 public:
  // `yes`: the numbers of a project are the right ones.
  OwnNumbering(Output& out, const SerialArguments& arguments, bool yes) : out_(out), arguments_(arguments), yes_(yes) {}
  [[nodiscard]] Problem start(JobSource& source) override;
  std::string inHand() const override { return numbers_.inHand(); }
  [[nodiscard]] Problem next(JobSource& source) override;

 private:
  Output& out_;
  const SerialArguments& arguments_;
  bool yes_;
  SerialNumbers numbers_;
};

}  // namespace kvr::cli
