// What a chip tells in its status frames, as values. `rx` is the receive buffer: index i is wire byte i + 2.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "engine/target_info.h"
#include "options/option_set.h"

namespace kvr::engine {

using RxBytes = std::span<const std::uint8_t>;

// The factor from counts to Hz at a first-contact rate.
int clockFactor(int baud);
// How many times 1200 the rate is; the counts are scaled by it.
int baudUnits(int baud);

// The clock in Hz, from the eight counts at 4..19. A `dualClock` chip has measured in the first four only.
float clockFromStatus(RxBytes rx, int connectBaud, bool dualClock);
float clockFromFixedLink(RxBytes rx);

// 1: a firmware of letters D to G that stores the option bytes in the later order; 0: any other.
int optionOrder(const TargetInfo& target);
// The last firmwares of letter H, which store them in the later order, too.
bool isLateHazel(const TargetInfo& target);

// Fills the option bytes that the first status frame carries; the others stay.
void readStatusOptions(RxBytes rx, const TargetInfo& target, options::OptionBytes& reported);
// The same for an answer to a 50 (or 8D) frame; `layout` is the selected model's.
void readAnsweredOptions(RxBytes rx, const TargetInfo& target, catalogue::OptionLayout layout,
                         options::OptionBytes& reported);

// The highest place in such an answer that is read: version, letter, and the option bytes.
int highestOptionIndex(const TargetInfo& target, catalogue::OptionLayout layout);

// Which row the code of a chip means, when the selected model is one of those that share the code: that one; else the
// first in search order. Null: unknown.
const catalogue::McuRecord* findTarget(const std::string& code, const catalogue::McuRecord& selected);

// How much flash the firmware keeps at the top, by the status byte's low bits.
int reservedBytesOf(const catalogue::McuRecord& selected, std::uint8_t statusByte);
// The same by version, for firmwares that do not tell; versions of 4.0 and above leave it as it is.
int reservedFromVersion(catalogue::FirmwareVersion version, int present);

// Whether the chip may be programmed as the selected model: letter and code must agree.
bool modelFits(const TargetInfo& target, const catalogue::McuRecord& selected, int frameSize, int blockSize);

}  // namespace kvr::engine
