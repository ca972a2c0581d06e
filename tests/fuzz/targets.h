// Every way in which bytes of others come into the program: files, frames, texts that someone types. A target says what
// is wrong with the way in which an input was read, by a rule of its own; empty when nothing is.
//
// The tests replay the corpus of each. `--preset fuzz` builds the fuzzer: `fuzz --target=hex tests/fuzz/corpus/hex`.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kvr::fuzz {

using Bytes = std::vector<std::uint8_t>;

std::string faultOfBoardFrames(const Bytes& input);
std::string faultOfChipFrames(const Bytes& input);
std::string faultOfCommandImage(const Bytes& input);
std::string faultOfCommandLine(const Bytes& input);
std::string faultOfDemoFrames(const Bytes& input);
std::string faultOfHex(const Bytes& input);
std::string faultOfImage(const Bytes& input);
std::string faultOfMonitor(const Bytes& input);
std::string faultOfNumber(const Bytes& input);
std::string faultOfPortMap(const Bytes& input);
std::string faultOfProject(const Bytes& input);
std::string faultOfSettings(const Bytes& input);
std::string faultOfTerminal(const Bytes& input);
std::string faultOfTrace(const Bytes& input);

struct Target {
  std::string_view name;  // of its corpus, too
  std::string (*faultOf)(const Bytes& input);
};

inline constexpr Target kTargets[] = {{"board_frames", faultOfBoardFrames},
                                      {"chip_frames", faultOfChipFrames},
                                      {"command_image", faultOfCommandImage},
                                      {"command_line", faultOfCommandLine},
                                      {"demo_frames", faultOfDemoFrames},
                                      {"hex", faultOfHex},
                                      {"image", faultOfImage},
                                      {"monitor", faultOfMonitor},
                                      {"number", faultOfNumber},
                                      {"port_map", faultOfPortMap},
                                      {"project", faultOfProject},
                                      {"settings", faultOfSettings},
                                      {"terminal", faultOfTerminal},
                                      {"trace", faultOfTrace}};

inline std::string textOf(const Bytes& bytes) {
  return {bytes.begin(), bytes.end()};
}

}  // namespace kvr::fuzz
