// A user's firmware that dumps its registers and memory as framed records among ordinary text, and asks for nothing but
// an answer to each.
#pragma once

#include <array>
#include <vector>

#include "sim/application.h"

namespace sim {

enum class BadFrame { none, badSum, cutShort, tooLong, unknownType };

struct MonitorConfig {
  std::uint64_t seed = 1;
  Micros pause = 200 * kMillisecond;      // between frames
  Micros patience = 5 * kSecond;          // for an answer
  std::vector<int> types = {0, 1, 2, 3};  // in turn
  std::vector<BadFrame> faults;  // for the first frames, one each; the same record goes out whole when asked again
  bool textBetween = true;
  std::uint8_t firstSfr = 0x80;
  int windowAddress = 0x0200;
};

class MonitorApplication : public Application {
 public:
  MonitorApplication(const Line& line, MonitorConfig config) : Application(line), config_(std::move(config)) {}
  void start(Micros at) override;
  void hear(Micros end, std::uint8_t byte) override;
  std::optional<Micros> nextDue() const override { return due_; }
  void advanceTo(Micros now) override;

  int sent() const { return sent_; }
  int accepted() const { return accepted_; }    // answers 50
  int resends() const { return resends_; }      // answers 52
  int continues() const { return continues_; }  // answers 54
  int strangeAnswers() const { return strange_; }

  // The whole of a record as it goes out, preamble included. `values` is what the memory holds from the record's start
  // on.
  static std::vector<std::uint8_t> frame(int type, int address, const std::array<std::uint8_t, 9>& registers,
                                         std::span<const std::uint8_t> values);

 private:
  void sendRecord(Micros at, BadFrame how);
  void onAnswer(Micros at, int code);
  std::uint8_t draw();

  MonitorConfig config_;
  std::optional<Micros> due_;
  std::vector<std::uint8_t> record_;  // the one in hand
  std::vector<std::uint8_t> answer_;
  std::size_t turn_ = 0;
  std::uint64_t state_ = 1;
  int sent_ = 0, accepted_ = 0, resends_ = 0, continues_ = 0, strange_ = 0;
};

}  // namespace sim
