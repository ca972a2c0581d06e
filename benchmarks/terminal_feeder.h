// A process of its own that writes numbered lines into a pseudo-terminal, paced or as fast as they are taken.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

namespace bench {

std::string numberedLines();  // what is written, over and over

class Feeder {
 public:
  Feeder();  // opens the pseudo-terminal
  ~Feeder();
  Feeder(const Feeder&) = delete;
  Feeder& operator=(const Feeder&) = delete;

  const std::string& device() const { return device_; }
  // Starts to write for so long; `bytesPerSecond` 0: without a pause.
  void start(double seconds, double bytesPerSecond);
  bool ended();  // the writing is over; `written` tells how much it was
  std::uint64_t written() const { return written_; }

 private:
  [[noreturn]] void run(double seconds, double bytesPerSecond, int report) const;
  int master_ = -1;
  int report_ = -1;
  pid_t child_ = 0;
  std::uint64_t written_ = 0;
  std::string device_;
};

}  // namespace bench
