#include "stations/remembered.h"

#include <algorithm>
#include <cstdlib>

namespace kvr::stations {
namespace {

constexpr const char* kSection = "Stations";
constexpr double kLongestDelay = 3600;

std::string numbered(const char* head, std::size_t index) {
  return head + std::to_string(index + 1);
}

bool isOn(const platform::SettingsStore& store, const char* key, bool absent) {
  return store.getOr(kSection, key, absent ? "1" : "0") == "1";
}

double delayOf(const platform::SettingsStore& store) {
  const std::string text = store.getOr(kSection, "Delay", "");
  char* end = nullptr;
  const double seconds = std::strtod(text.c_str(), &end);
  return text.empty() || *end != 0 || !(seconds >= 0 && seconds <= kLongestDelay) ? Work{}.delaySeconds : seconds;
}

}  // namespace

Line readLine(const platform::SettingsStore& store) {
  Line line;
  for (std::size_t i = 0; i < Crew::kMost; ++i)
    if (const std::string name = store.getOr(kSection, numbered("Name", i), ""); !name.empty())
      line.places.push_back({name, store.getOr(kSection, numbered("Adapter", i), "")});
  line.work.project = store.getOr(kSection, "Project", "");
  line.work.batch = store.getOr(kSection, "Batch", "");
  line.work.delaySeconds = delayOf(store);
  line.work.handsFree = isOn(store, "HandsFree", true);
  line.beeps = isOn(store, "Beeps", false);
  return line;
}

void remember(platform::SettingsStore& store, const Line& line) {
  const auto keep = [&store](const std::string& key, const std::string& value) {
    if (store.getOr(kSection, key, "") != value) store.set(kSection, key, value);
  };
  for (std::size_t i = 0; i < Crew::kMost; ++i) {
    const Place place = i < line.places.size() ? line.places[i] : Place{};
    keep(numbered("Name", i), place.name);
    keep(numbered("Adapter", i), place.adapter);
  }
  keep("Project", line.work.project);
  keep("Batch", line.work.batch);
  keep("Delay", std::to_string(static_cast<int>(line.work.delaySeconds)));
  keep("HandsFree", line.work.handsFree ? "1" : "0");
  keep("Beeps", line.beeps ? "1" : "0");
}

}  // namespace kvr::stations
