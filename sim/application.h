// What runs on a chip once it has left its boot firmware: the user's own program, with line settings of its own.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "sim/device.h"

namespace sim {

class Application {
 public:
  explicit Application(const Line& line) : line_(line) {}
  virtual ~Application() = default;
  const Line& line() const { return line_; }

  virtual void start(Micros /*at*/) {}
  virtual void hear(Micros end, std::uint8_t byte) = 0;
  virtual std::optional<Micros> nextDue() const { return std::nullopt; }
  virtual void advanceTo(Micros /*now*/) {}

  // Set by the chip. `say` returns when the last bit will have left.
  std::function<Micros(Micros start, std::span<const std::uint8_t> bytes)> say;
  std::function<void(Micros at)> resetIntoBoot;

 private:
  Line line_;
};

// Says back every byte.
class EchoApplication : public Application {
 public:
  using Application::Application;
  void hear(Micros end, std::uint8_t byte) override { say(end, std::span(&byte, 1)); }
};

// Talks without a pause, in lines of 64 bytes that begin with their number, so that a missing byte can be found.
class ChatterApplication : public Application {
 public:
  using Application::Application;
  void start(Micros at) override { due_ = at; }
  void hear(Micros, std::uint8_t) override {}
  std::optional<Micros> nextDue() const override { return due_; }
  void advanceTo(Micros now) override;
  // The bytes of line number `n`.
  static std::string lineText(std::uint64_t n);

 private:
  Micros due_ = 0;
  std::uint64_t next_ = 0;
};

// Resets into the boot firmware when it hears its command, whatever came before.
class TriggerApplication : public Application {
 public:
  TriggerApplication(const Line& line, std::vector<std::uint8_t> command)
      : Application(line), command_(std::move(command)) {}
  void start(Micros at) override;
  void hear(Micros end, std::uint8_t byte) override;

 private:
  std::vector<std::uint8_t> command_;
  std::vector<std::uint8_t> heard_;
};

}  // namespace sim
