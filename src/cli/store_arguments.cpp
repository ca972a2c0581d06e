#include "cli/store_arguments.h"

namespace kvr::cli {

void StoreArguments::declare(CLI::App& app, const std::string& group) {
  auto* option = app.add_option("--store", store, "The record store, when it is not the usual one")
                     ->type_name("postgresql://USER@HOST/DB|FILE");
  if (!group.empty()) option->group(group);
}

Problem problemOf(const records::StoreFault& fault) {
  if (fault.none()) return {};
  const bool refused = fault.kind == records::StoreFault::Kind::Refused;
  return {refused ? ExitCode::Refused : ExitCode::Records, fault.words,
          refused ? "" : "`kvr batch store` tells where it is looked for."};
}

Problem StoreArguments::open(const Desk& desk, OpenBooks& books) const {
  const std::string place = location(desk);
  auto opened = desk.records.open(place);
  if (!opened.ok()) return problemOf(opened.fault);
  books.store = std::move(opened.value);
  books.waiting = desk.records.waitingFor(place);
  if (const int left = books.waiting->deliver(*books.store); left > 0)
    desk.out.note(std::to_string(left) + " results on this computer wait for the record store.");
  return {};
}

}  // namespace kvr::cli
