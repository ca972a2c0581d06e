// Everything that a download needs, as one value without a control in it. A window reads it from its panels at the
// press; a run takes it as it is, so that nothing that happens in the window meanwhile can change what a chip gets.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/address_range.h"
#include "catalogue/selected_model.h"
#include "engine/power_switch.h"
#include "engine/turn_round.h"
#include "images/image_buffer.h"
#include "options/compose_options.h"

namespace kvr::engine {

// One memory's image. A byte's index is its address in the file.
struct JobImage {
  std::vector<std::uint8_t> bytes;  // what lies beyond their end reads `fill`
  std::int32_t rangeStart = 0;      // bounds of what the files brought, inclusive
  std::int32_t rangeEnd = -1;
  std::int32_t heldEnd = -1;  // the last byte that differs from the fill, also beyond those bounds: a file was too long
  std::int64_t blanked = 0;   // bytes that its files held and the model has no place for
  bool loaded = false;        // a file has been loaded; of the data image: there is data to program
  std::uint8_t fill = 0;      // what no file wrote
  std::int32_t sum = 0;       // of the last file's bytes, for the record
  std::uint8_t at(std::int64_t address) const {
    return address >= 0 && address < std::ssize(bytes) ? bytes[static_cast<std::size_t>(address)] : fill;
  }
};

struct Job {
  catalogue::SelectedModel model;
  bool imageValid = false;  // an image exists that may be programmed
  JobImage code, data;
  std::vector<catalogue::AddressRange> codeNumbers, dataNumbers;  // serial number fields, by address in their image

  options::PanelValues choices;
  bool doubleSpeed = false;                 // `Double_speed_YES`, also of families that have no bit for it
  std::int32_t wantedFrequencyHz = 0;       // of the internal oscillator
  std::int32_t baseFrequencyHz = 12000000;  // what the boot firmware runs at while it programs: 24000000 or 12000000
  std::optional<std::uint8_t> watchdogPin;  // port + 16 * bit

  int port = 1;                                  // COM port, 1..16
  int firstBaud = 2400;                          // of the first contact
  int highestBaud = 115200;                      // as chosen; see `highestBaudOf`
  bool fixedLink = false;                        // 115200 from the first byte, no negotiation
  int frameSize = 128;                           // data bytes in one frame
  platform::Millis turnRound = kShortTurnRound;  // before a data frame, until the chip shows that it needs more

  PowerSwitch power;  // of the target's supply, switched before the first contact

  bool handOver = false;  // leaves the port open after a success, for the terminal

  const catalogue::McuRecord& record() const { return model.record; }
};

// The image that a buffer holds now.
JobImage imageOf(const images::ImageBuffer& buffer);

// The range's upper end, as far as the base frequency lets the internal oscillator's families go.
int highestBaudOf(const Job& job);
// Families with a trimmed oscillator measure it in every run.
bool measuresOscillator(const Job& job);
// The option bytes that the choices mean, without a measured trim.
options::OptionBytes optionBytesOf(const Job& job);
// Data bytes in one frame of a chip's download.
int frameSizeOf(const catalogue::McuRecord& record, bool fixedLink);
// Why this job cannot be carried out, as a message for the user; empty: it can. Looks at values only.
std::string refusalOf(const Job& job);

}  // namespace kvr::engine
