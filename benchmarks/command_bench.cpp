// The command kvr: its start against a bare Qt program's, turn and turn about, medians of 21; and the share of a core
// that a run takes, from exec to exit, against a paced chip on a pseudo-terminal.
//   command_bench KVR BARE-COMMAND KVR-TARGET SAMPLE
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <vector>

#include "benchmarks/figure.h"

extern char** environ;

namespace {

struct Spent {
  double wall = -1;  // seconds; negative: the program failed
  double cpu = 0;
};

double secondsOf(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

// `out`: where standard output goes; below 0: nowhere.
pid_t start(const std::vector<std::string>& words, int out) {
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  if (out >= 0) posix_spawn_file_actions_adddup2(&actions, out, STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = -1;
  if (posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(), environ) != 0) child = -1;
  posix_spawn_file_actions_destroy(&actions);
  return child;
}

Spent run(const std::vector<std::string>& words) {
  const auto began = std::chrono::steady_clock::now();
  const pid_t child = start(words, -1);
  int status = 0;
  rusage used{};
  if (child < 0 || wait4(child, &status, 0, &used) != child || status != 0) return {};
  const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - began;
  return {wall.count(), secondsOf(used.ru_utime) + secondsOf(used.ru_stime)};
}

bool starts(const std::string& kvr, const std::string& bare) {
  std::vector<double> ours;
  std::vector<double> least;
  for (int i = 0; i < 22; ++i) {
    const double mine = run({kvr, "--version"}).wall;
    const double other = run({bare}).wall;
    if (mine < 0 || other < 0) return false;
    if (i == 0) continue;  // the first start fills the caches
    ours.push_back(mine);
    least.push_back(other);
  }
  bench::figure("cli.start_ms", bench::median(ours) * 1000, "ms");
  return bench::atMost("cli.start_ms_ratio", bench::median(ours) / bench::median(least), "ratio", 1.5);
}

bool runs(const std::string& kvr, const std::string& target, const std::string& sample) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return false;
  const pid_t device = start({target, "--model", "Ivy-HF0S", "--paced"}, ends[1]);
  close(ends[1]);
  char name[256] = {};
  const ssize_t count = read(ends[0], name, sizeof name - 1);
  const std::string port(name, count > 0 ? static_cast<std::size_t>(count) - 1 : 0);  // without the line's end
  const Spent spent = run({kvr, "program", "--model", "Ivy-HF0S", sample, "--port", port, "--timeout", "20"});
  close(ends[0]);
  if (device > 0) kill(device, SIGTERM), waitpid(device, nullptr, 0);
  return spent.wall > 0 && bench::atMost("cli.cpu_ratio", spent.cpu / spent.wall, "ratio", 0.03);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) return 2;
  const bool started = starts(argv[1], argv[2]);
  const bool ran = runs(argv[1], argv[3], argv[4]);
  return started && ran ? 0 : 1;
}
