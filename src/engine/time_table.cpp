#include "engine/time_table.h"

#include <numeric>

namespace kvr::engine {

using platform::Micros;

std::array<TimeRow, 9> timeTable(const Outcome& outcome) {
  const auto quiet = [&](Stage stage) {
    const auto i = static_cast<std::size_t>(stage);
    return outcome.turned[i] + outcome.rested[i];
  };
  const auto busy = [&](Stage stage) { return outcome.spent[static_cast<std::size_t>(stage)] - quiet(stage); };
  const auto total = [](const StageTimes& times) { return std::accumulate(times.begin(), times.end(), Micros{0}); };
  const Micros contact = outcome.contact - quiet(Stage::Wait);
  return {{{"waiting for power", busy(Stage::Prepare) + busy(Stage::Wait) - contact},
           {"first contact", contact},
           {"identity", busy(Stage::Identify)},
           {"baud search", busy(Stage::Baud)},
           {"erase", busy(Stage::Erase)},
           {"data on the wire", busy(Stage::Program)},
           {"turn-rounds", total(outcome.turned)},
           {"prescribed rests", total(outcome.rested)},
           {"options", busy(Stage::Finish) + busy(Stage::Options) + busy(Stage::Report)}}};
}

}  // namespace kvr::engine
