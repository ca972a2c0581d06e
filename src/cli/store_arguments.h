// Which record store a command works with.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "cli/desk.h"
#include "cli/job_source.h"

namespace kvr::cli {

struct OpenBooks {
  std::unique_ptr<records::RecordStore> store;
  std::unique_ptr<records::WaitingRoom> waiting;
};

struct StoreArguments {
  std::string store;

  void declare(CLI::App& app, const std::string& group = {});
  std::string location(const Desk& desk) const { return store.empty() ? desk.records.location() : store; }
  // Opens it, and hands over what has waited for it.
  [[nodiscard]] Problem open(const Desk& desk, OpenBooks& books) const;
};

// As a command ends with it.
Problem problemOf(const records::StoreFault& fault);

}  // namespace kvr::cli
