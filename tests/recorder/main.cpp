// Records what the whole program does in a few thousand runs, so that two builds can be compared.
//
//   record_runs [FILTER]            one line a run: name, hash of all, hashes of line, pane and memory, sign
//   record_runs --no-times          the same without the times on the line and in the pane
//   record_runs --dump NAME         the whole record of one run
//   record_runs --check FILE        plays what the file names; tells and fails when it differs
//   record_runs --renew FILE        the same, and writes what they are now
#include <exception>
#include <fstream>
#include <iostream>

#include "tests/recorder/plays.h"

namespace {

using kvr::recorder::Record;
using kvr::recorder::Run;

std::string play(const Run& run, bool times = true) {
  try {
    const Record record = run.play(run.name);
    return run.name + '\t' + (times ? record : record.withoutTimes()).hashes();
  } catch (const std::exception& fault) {
    return run.name + "\tended by: " + fault.what();
  }
}

int dump(const std::string& name) {
  for (const Run& run : kvr::recorder::allRuns())
    if (run.name == name) return std::cout << run.play(name).text(), 0;
  std::cerr << "no run is called " << name << '\n';
  return 1;
}

int list(const std::string& filter, bool times = true) {
  bool any = false;
  for (const Run& run : kvr::recorder::allRuns()) {
    if (run.name.find(filter) == std::string::npos) continue;
    std::cout << play(run, times) << std::endl;
    any = true;
  }
  return any ? 0 : 1;
}

// One run; or, when a star ends the name, all whose names begin so: the hash of their lines.
std::string playAll(const std::vector<Run>& runs, const std::string& name) {
  const bool all = name.ends_with('*');
  std::string lines;
  for (const Run& run : runs)
    if (run.name == name || (all && run.name.starts_with(name.substr(0, name.size() - 1)))) lines += play(run) + '\n';
  if (!all) return lines;
  return name + '\t' + std::to_string(kvr::recorder::hashOf(lines)) + '\n';
}

int compare(const std::string& path, bool renew) {
  const auto runs = kvr::recorder::allRuns();
  std::ifstream file(path);
  std::string now;
  bool same = true;
  for (std::string line; std::getline(file, line);) {
    const std::string is = playAll(runs, line.substr(0, line.find('\t')));
    if (is != line + '\n') std::cout << "was " << line << "\nis  " << is;
    same = same && is == line + '\n';
    now += is;
  }
  if (renew) return std::ofstream(path) << now ? 0 : 1;
  if (same && !now.empty()) return 0;
  std::cout << "Runs differ. See docs/recorder.md for how to look at them and how to renew the hashes.\n";
  return 1;
}

}  // namespace

int main(int count, char** arguments) {
  const std::vector<std::string> words(arguments + 1, arguments + count);
  if (words.empty()) return list("");
  if (words.size() == 1 && !words[0].starts_with("--")) return list(words[0]);
  if (words.size() == 1 && words[0] == "--no-times") return list("", false);
  if (words.size() == 2 && words[0] == "--dump") return dump(words[1]);
  if (words.size() == 2 && words[0] == "--check") return compare(words[1], false);
  if (words.size() == 2 && words[0] == "--renew") return compare(words[1], true);
  std::cerr << "record_runs [FILTER | --no-times | --dump NAME | --check FILE | --renew FILE]\n";
  return 2;
}
