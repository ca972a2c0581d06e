// Records what the whole program does in a few thousand runs, so that two builds can be compared.
//
//   record_runs [FILTER]            one line a run: name, hash of all, hashes of line, pane and memory, sign
//   record_runs --dump NAME         the whole record of one run
//   record_runs --check FILE        plays the runs that the file names; tells and fails when one differs
//   record_runs --renew FILE        the same, and writes what they are now
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>

#include "tests/recorder/runs.h"

namespace {

using kvr::recorder::Run;

constexpr std::size_t kProcesses = 2;

std::string play(const Run& run) {
  try {
    return run.name + '\t' + run.play(run.name).hashes();
  } catch (const std::exception& fault) {
    return run.name + "\tended by: " + fault.what();
  }
}

// The lines of every run, in their order. Each process plays its share and leaves its lines in a file.
std::vector<std::string> playAll(const std::vector<Run>& runs) {
  std::vector<std::FILE*> shares;
  std::vector<pid_t> children;
  for (std::size_t share = 0; share < kProcesses; ++share) {
    shares.push_back(std::tmpfile());
    children.push_back(::fork());
    if (children.back() != 0) continue;
    for (std::size_t i = share; i < runs.size(); i += kProcesses) {
      std::fputs((play(runs[i]) + '\n').c_str(), shares.back());
      std::fflush(shares.back());
    }
    ::_exit(0);
  }
  std::vector<std::string> lines(runs.size());
  for (std::size_t share = 0; share < kProcesses; ++share) {
    ::waitpid(children[share], nullptr, 0);
    std::rewind(shares[share]);
    for (std::size_t i = share; i < runs.size(); i += kProcesses) {
      char line[512] = "";
      lines[i] = std::fgets(line, sizeof line, shares[share]) ? line : runs[i].name + "\tnot played\n";
      lines[i].pop_back();
    }
    std::fclose(shares[share]);
  }
  return lines;
}

int dump(const std::string& name) {
  for (const Run& run : kvr::recorder::allRuns())
    if (run.name == name) return std::cout << run.play(name).text(), 0;
  std::cerr << "no run is called " << name << '\n';
  return 1;
}

int list(const std::string& filter) {
  std::vector<Run> runs = kvr::recorder::allRuns();
  std::erase_if(runs, [&](const Run& run) { return run.name.find(filter) == std::string::npos; });
  for (const std::string& line : playAll(runs)) std::cout << line << '\n';
  return runs.empty();
}

int compare(const std::string& path, bool renew) {
  std::map<std::string, std::string> kept;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) kept[line.substr(0, line.find('\t'))] = line;
  std::vector<Run> runs = kvr::recorder::allRuns();
  std::erase_if(runs, [&](const Run& run) { return !kept.contains(run.name); });
  const auto lines = playAll(runs);
  bool same = !runs.empty() && runs.size() == kept.size();
  for (std::size_t i = 0; i < runs.size(); ++i) {
    if (kept[runs[i].name] == lines[i]) continue;
    same = false;
    std::cout << "was " << kept[runs[i].name] << "\nis  " << lines[i] << '\n';
  }
  if (renew) {
    file.close();
    std::ofstream out(path);
    for (const std::string& line : lines) out << line << '\n';
    return 0;
  }
  if (!same) std::cout << "Runs differ. See docs/recorder.md for how to look at them and how to renew the hashes.\n";
  return same ? 0 : 1;
}

}  // namespace

int main(int count, char** arguments) {
  const std::vector<std::string> words(arguments + 1, arguments + count);
  if (words.empty()) return list("");
  if (words.size() == 1 && !words[0].starts_with("--")) return list(words[0]);
  if (words.size() == 2 && words[0] == "--dump") return dump(words[1]);
  if (words.size() == 2 && words[0] == "--check") return compare(words[1], false);
  if (words.size() == 2 && words[0] == "--renew") return compare(words[1], true);
  std::cerr << "record_runs [FILTER | --dump NAME | --check FILE | --renew FILE]\n";
  return 2;
}
