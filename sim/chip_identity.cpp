// What a chip says of itself: the status frame after first contact and the reply to the reading of options. Indexes are
// those of the receiver, who counts from the direction byte; payload byte 0 is its index 4.
#include <algorithm>

#include "sim/chip.h"

namespace sim {

namespace {

std::uint8_t hexByte(std::string_view text) {
  return static_cast<std::uint8_t>(hexDigit(text[0]) * 16 + hexDigit(text[1]));
}

std::uint8_t& at(Bytes& payload, int index) {
  return payload[static_cast<std::size_t>(index - 4)];
}

void place(Bytes& payload, int index, const OptionBytes& options, std::initializer_list<int> which) {
  for (const int option : which) at(payload, index++) = options[static_cast<std::size_t>(option)];
}

}  // namespace

char usualLetter(const McuRecord& row) {
  constexpr std::string_view kLetters = "ABCDEGHIJKLMNO?QRSZ";
  const bool bigFir =
      familyOf(row) == 4 && row.name.find("Series") == std::string_view::npos && row.apEnd + 2 >= 16 * 1024;
  return bigFir ? 'F' : kLetters[static_cast<std::size_t>(familyOf(row))];
}

int usualFirmware(const McuRecord& row) {
  constexpr int kVersions[] = {0x43, 0x43, 0x48, 0x56, 0x58, 0x59, 0x59, 0x63, 0x64, 0x65,
                               0x65, 0x63, 0x64, 0x64, 0x00, 0x66, 0x66, 0x65, 0x62};
  return kVersions[familyOf(row)];
}

ChipConfig configFor(const McuRecord& row, double clockHz, std::uint64_t seed) {
  ChipConfig config;
  config.row = &row;
  config.clockHz = clockHz;
  config.seed = seed;
  return config;
}

bool Chip::laterOrder() const {
  if (letter_ >= 'D' && letter_ <= 'F') return version10() >= 55;
  return letter_ == 'G' && version10() > 57;
}

bool Chip::lateH() const {
  return letter_ == 'H' && version10() >= 58;
}

std::string Chip::reportedCode() const {
  if (config_.faults.wrongModelCode) return "F0FE";
  return std::string(config_.reportsAltCode && !row().altCode.empty() ? row().altCode : row().code);
}

void Chip::placeReportedOptions(Bytes& payload) const {
  if (keepsAllOptions(family())) {
    place(payload, 26, options_, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15});
  } else if (letter_ >= 'I') {
    place(payload, 26, options_, {0, 1, 2, 3, 8, 9});
  } else if (laterOrder() || lateH()) {
    place(payload, 32, options_, {0, 1, 2, 3, 8, 9});
  } else if (letter_ >= 'D') {
    place(payload, 26, options_, {2, 3, 8, 10, 11, 0});
  } else {
    at(payload, 22) = options_[letter_ == 'C' ? 1 : 0];
  }
}

Bytes Chip::statusPayload() {
  // The last index that carries anything, by firmware: later firmware only ever added to the end.
  int last = 60;
  if (config_.shortStatus)
    last = 19;
  else if (letter_ <= 'C')
    last = 25;
  else if (letter_ < 'I')
    last = 37;
  Bytes payload(57);
  std::generate(payload.begin(), payload.end(), [this] { return filler(); });
  for (int i = 0; i < 8; ++i) {
    at(payload, 4 + 2 * i) = static_cast<std::uint8_t>(counts_[static_cast<std::size_t>(i)] >> 8);
    at(payload, 5 + 2 * i) = static_cast<std::uint8_t>(counts_[static_cast<std::size_t>(i)]);
  }
  const std::string code = reportedCode();
  at(payload, 20) = static_cast<std::uint8_t>(firmware_);
  at(payload, 21) = static_cast<std::uint8_t>(letter_);
  at(payload, 23) = hexByte(code);
  at(payload, 24) = code.size() == 4 ? hexByte(std::string_view(code).substr(2)) : 0xFF;
  const bool startPair = config_.startPair.value_or(row().extSession);
  at(payload, 25) = static_cast<std::uint8_t>((startPair ? 0x80 : 0) | (config_.clockDoubled ? 0x20 : 0) |
                                              (config_.reservedCode & 3));
  placeReportedOptions(payload);
  if (rcFamily()) std::copy(statusTail_.begin(), statusTail_.end(), payload.begin() + 54 - 4);
  at(payload, 54) = static_cast<std::uint8_t>((at(payload, 54) & 0xFE) | (config_.faults.idReadFails ? 1 : 0));
  if (config_.extendedCode || !rcFamily()) {
    at(payload, 55) = static_cast<std::uint8_t>(config_.extendedCode >> 8);
    at(payload, 56) = static_cast<std::uint8_t>(config_.extendedCode);
  }
  if (rcFamily() && last == 60) std::copy(payload.begin() + 50, payload.end(), statusTail_.begin());
  payload.resize(static_cast<std::size_t>(last - 3));
  return payload;
}

Bytes Chip::optionsPayload() {
  Bytes payload(26);
  std::generate(payload.begin(), payload.end(), [this] { return filler(); });
  at(payload, 11) = static_cast<std::uint8_t>(firmware_);
  at(payload, 12) = static_cast<std::uint8_t>(letter_);
  const int family = this->family();
  if (keepsAllOptions(family)) {
    place(payload, 13, options_, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15});
  } else if (family == 18) {
    place(payload, 13, options_, {0, 3, 4, 8, 10, 11});
  } else if (family <= 1) {
    at(payload, 13) = options_[0];
  } else if (firstGenerationDivider()) {
    at(payload, 13) = options_[1];
  } else if (family >= 7) {
    place(payload, 13, options_, {0, 1, 2, 3, 8, 9});
  } else if (laterOrder() || lateH()) {
    place(payload, 19, options_, {0, 1, 2, 3, 8, 9});
  } else {
    place(payload, 13, options_, {2, 3, 8, 10, 11});
  }
  return payload;
}

}  // namespace sim
