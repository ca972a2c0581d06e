// From exec to the first paint: this program's window against a bare one, turn and turn about, medians of nine.
//   start_ratio KVR-ISP BARE-WINDOW
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

#include "benchmarks/figure.h"

extern char** environ;

namespace {

// Milliseconds; negative when the program failed.
double startOf(const char* program, const char* argument) {
  int out[2];
  if (pipe(out) != 0) return -1;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
  posix_spawn_file_actions_addclose(&actions, out[0]);
  std::vector<char*> words = {const_cast<char*>(program), const_cast<char*>(argument), nullptr};
  const auto before = std::chrono::steady_clock::now().time_since_epoch();
  pid_t child = 0;
  const int failed = posix_spawn(&child, program, &actions, nullptr, words.data(), environ);
  close(out[1]);
  std::string text;
  char buffer[256];
  for (ssize_t count; !failed && (count = read(out[0], buffer, sizeof buffer)) > 0;)
    text.append(buffer, static_cast<std::size_t>(count));
  close(out[0]);
  posix_spawn_file_actions_destroy(&actions);
  int status = 0;
  if (failed || waitpid(child, &status, 0) < 0 || text.empty()) return -1;
  return (std::atof(text.c_str()) - static_cast<double>(std::chrono::nanoseconds(before).count())) / 1e6;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  std::vector<double> ours;
  std::vector<double> bare;
  for (int i = 0; i < 10; ++i) {
    const double mine = startOf(argv[1], "--first-paint");
    const double least = startOf(argv[2], nullptr);
    if (mine < 0 || least < 0) return 1;
    if (i == 0) continue;  // the first start fills the caches
    ours.push_back(mine);
    bare.push_back(least);
  }
  bench::figure("window.start_ms", bench::median(ours), "ms");
  const double ratio = bench::median(ours) / bench::median(bare);
  return bench::atMost("window.start_ratio", ratio, "ratio", 1.5) ? 0 : 1;
}
