#include "benchmarks/terminal_feeder.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace bench {

namespace {

constexpr std::size_t kLine = 64;
constexpr std::size_t kLines = 1000;

double now() {
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

}  // namespace

std::string numberedLines() {
  std::string text;
  for (std::size_t i = 0; i < kLines; ++i) {
    std::string line = std::to_string(100000 + i) + " the quick brown fox jumps over the lazy dog 0123456789";
    line.resize(kLine - 1, '.');
    text += line + '\n';
  }
  return text;
}

Feeder::Feeder() : master_(posix_openpt(O_RDWR | O_NOCTTY)) {
  grantpt(master_);
  unlockpt(master_);
  device_ = ptsname(master_);
  // The line starts raw: nothing that is written before the program opens it may come back as an echo.
  const int slave = ::open(device_.c_str(), O_RDWR | O_NOCTTY);
  termios raw{};
  tcgetattr(slave, &raw);
  cfmakeraw(&raw);
  tcsetattr(slave, TCSANOW, &raw);
  ::close(slave);
}

Feeder::~Feeder() {
  if (child_ > 0) waitpid(child_, nullptr, 0);
  ::close(master_);
}

void Feeder::start(double seconds, double bytesPerSecond) {
  int ends[2];
  if (pipe(ends) != 0) return;
  const pid_t parent = getpid();
  child_ = fork();
  if (child_ == 0) {
    // Nobody writes on for ever into a line whose reader has died.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(1);
    run(seconds, bytesPerSecond, ends[1]);
  }
  ::close(ends[1]);
  report_ = ends[0];
}

void Feeder::run(double seconds, double bytesPerSecond, int report) const {
  const std::string text = numberedLines();
  const double begin = now();
  std::uint64_t sent = 0;
  for (double passed = 0; passed < seconds; passed = now() - begin) {
    const std::size_t at = sent % text.size();
    std::size_t count = std::min<std::size_t>(4096, text.size() - at);
    if (bytesPerSecond > 0) {
      const double due = passed * bytesPerSecond - static_cast<double>(sent);
      if (due < 1) {
        usleep(2000);
        continue;
      }
      count = std::min(count, static_cast<std::size_t>(due));
    }
    const ssize_t done = ::write(master_, text.data() + at, count);
    if (done > 0) sent += static_cast<std::uint64_t>(done);
  }
  const bool told = ::write(report, &sent, sizeof sent) == static_cast<ssize_t>(sizeof sent);
  _exit(told ? 0 : 1);
}

bool Feeder::ended() {
  pollfd wait{report_, POLLIN, 0};
  if (poll(&wait, 1, 0) <= 0) return false;
  if (::read(report_, &written_, sizeof written_) != static_cast<ssize_t>(sizeof written_)) written_ = 0;
  ::close(report_);
  waitpid(child_, nullptr, 0);
  child_ = 0;
  return true;
}

}  // namespace bench
