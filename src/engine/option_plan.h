// The option frames and what must agree before and after a write, as values.
#pragma once

#include <cstdint>
#include <string_view>

#include "engine/frames.h"
#include "engine/target_info.h"
#include "options/option_set.h"

namespace kvr::engine {

// The only option byte of family 0.
std::uint8_t alderOptionByte(std::string_view modelName, bool doubleSpeed);

// Cedar and its kin: the byte, the reload value for the speed mode to come, byte 8.
Bytes buildCedarOptionFrame(const options::OptionBytes& wanted, ReloadBytes reload, SumForm form);
// True when the wanted bytes need no write at all.
bool cedarNeedsNoWrite(const options::OptionSet& options);

// The frame of families 3 to 10 and 15 to 18; carries the chip's clock, on which its timing rests.
Bytes buildLaterOptionFrame(int family, const options::OptionBytes& wanted, double clockHz, SumForm form);
// Rowan's second frame.
Bytes buildRowanOptionFrame(const options::OptionBytes& wanted, double clockHz, SumForm form);

enum class Moment { BeforeWrite, AfterWrite };
// Whether the bytes that the family's answers carry agree with the wanted ones. After a write bits 3 and 7 of byte 1 do
// not count in the families that store something of their own there.
bool optionsAgree(int family, bool laterOrder, Moment moment, const options::OptionSet& options);
bool allOptionsAgree(const options::OptionSet& options);  // bytes 0 to 15
bool rowanOptionsAgree(const options::OptionSet& options);

// True: the chip runs from its external clock, so options that agree already need no frame.
bool runsFromExternalClock(int family, int optionOrder, const options::OptionSet& options);

}  // namespace kvr::engine
