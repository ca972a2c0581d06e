// A settings file that anyone may have edited: lines "Key=value" of the main section.
#include <sstream>

#include "tests/fuzz/targets.h"
#include "tests/support/form_bench.h"

namespace kvr::fuzz {
namespace {

using Values = std::map<std::pair<std::string, std::string>, std::string>;

// What a window that starts with the values writes when it saves all of them.
Values savedAfterStart(const Values& values) {
  support::FormBench bench;
  bench.store.values = values;
  bench.form.load();
  bench.form.settings.saveMainSettings();
  return bench.store.values;
}

}  // namespace

std::string faultOfSettings(const Bytes& input) {
  Values values;
  std::istringstream lines(textOf(input));
  for (std::string line; std::getline(lines, line);) {
    const std::size_t equals = line.find('=');
    if (equals != std::string::npos) values[{"Settings", line.substr(0, equals)}] = line.substr(equals + 1);
  }
  const Values once = savedAfterStart(values);
  return savedAfterStart(once) == once ? "" : "a second start changes what the first one saved";
}

}  // namespace kvr::fuzz
