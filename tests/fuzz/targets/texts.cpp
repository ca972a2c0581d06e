// What anyone may have typed or edited: numbers, settings, port numbers.
#include <algorithm>
#include <cmath>
#include <sstream>

#include "platform/qt/port_map.h"
#include "platform/text.h"
#include "tests/fuzz/targets.h"
#include "tests/support/form_bench.h"

namespace kvr::fuzz {
namespace {

using Values = std::map<std::pair<std::string, std::string>, std::string>;

void load(support::FormBench& bench, const Values& values) {
  bench.store.values() = values;
  bench.store.refresh();
  bench.form.settings.loadMainSettings();
  bench.form.settings.loadDemoSettings();
  bench.form.settings.loadToolSettings();
  bench.form.settings.loadUserCodeSettings();
  bench.form.settings.startDone();
}

// What a window that finds the values saves of them. Nothing of an input before is left in it.
Values savedAfter(support::FormBench& bench, const Values& values) {
  load(bench, {});
  load(bench, values);
  bench.form.saveWindowPlace(bench.form.windowPlace());
  bench.form.settings.saveMainSettings();
  return bench.store.values();
}

}  // namespace

// Lines "Key=value" of the main section.
std::string faultOfSettings(const Bytes& input) {
  static support::FormBench bench;
  Values values;
  std::istringstream lines(textOf(input));
  for (std::string line; std::getline(lines, line);) {
    const std::size_t equals = line.find('=');
    if (equals != std::string::npos) values[{"Settings", line.substr(0, equals)}] = line.substr(equals + 1);
  }
  const Values once = savedAfter(bench, values);
  return savedAfter(bench, once) == once ? "" : "a second start changes what the first one saved";
}

// Port numbers from settings, remembered adapters and whatever the machine names: lines "n 3 path" (named), "r 3
// identity" (remembered), "u path identity" and "s path identity" (found, USB or not).
std::string faultOfPortMap(const Bytes& input) {
  std::map<int, std::string> named, remembered;
  std::vector<platform::FoundDevice> found;
  std::istringstream lines(textOf(input));
  std::string kind;
  while (lines >> kind && found.size() < 40) {
    std::string path, identity;
    int number = 0;
    if (kind == "n" && lines >> number >> path) named[number] = path;
    if (kind == "r" && lines >> number >> identity) remembered[number] = identity;
    if ((kind == "u" || kind == "s") && lines >> path >> identity) found.push_back({path, identity, path, kind == "u"});
    lines.clear();
  }
  const platform::PortMap map = platform::assignPorts(named, found, remembered);
  std::size_t present = 0;
  for (int number = 1; number <= platform::kPortCount; ++number) {
    const platform::PortEntry& entry = map[static_cast<std::size_t>(number - 1)];
    const auto wanted = named.find(number);
    if (wanted != named.end() && entry.device != wanted->second) return "a number of the settings has another device";
    const auto same = [&](const platform::FoundDevice& device) { return device.path == entry.device; };
    if (entry.present && std::none_of(found.begin(), found.end(), same)) return "a device that is not there";
    present += entry.present;
  }
  return present > found.size() ? "a device with two numbers" : "";
}

std::string faultOfNumber(const Bytes& input) {
  const std::string text = textOf(input);
  const double value = platform::valueOf(text);
  if (!std::isfinite(value)) return "a number without end";
  const int whole = platform::wholeOf(text);
  if (std::abs(value) < 2e9 && whole != static_cast<int>(value)) return "another whole number";
  const double again = platform::valueOf(platform::numberText(value));
  if (std::abs(again - value) > std::abs(value) * 1e-14) return "its text is another number";
  if (std::abs(value) < 1e15 && std::abs(static_cast<double>(platform::roundEven(value)) - value) > 0.5)
    return "rounded too far";
  const std::uint32_t hex = platform::hexOf(text);
  if (platform::hexOf(platform::hexText(hex)) != hex) return "its hexadecimal text is another number";
  return platform::trim(platform::trim(text)) == platform::trim(text) ? "" : "trimmed twice";
}

}  // namespace kvr::fuzz
