// A settings file that anyone may have edited: lines "Key=value" of the main section.
#include <sstream>

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

}  // namespace kvr::fuzz
