// The option frames and what must agree before and after a write, as values.
#pragma once

#include <cstdint>

#include "engine/frames.h"
#include "engine/target_info.h"
#include "options/option_set.h"

namespace kvr::engine {

// Alder's only option byte.
std::uint8_t alderOptionByte(const catalogue::McuRecord& record, bool doubleSpeed);

// Cedar and its kin: the byte, the reload value for the speed mode to come, byte 8.
Bytes buildCedarOptionFrame(const options::OptionBytes& wanted, ReloadBytes reload, SumForm form);
// True when the wanted bytes need no write at all.
bool cedarNeedsNoWrite(const options::OptionSet& options);

// The frame of the later generation; carries the chip's clock, on which its timing rests.
Bytes buildLaterOptionFrame(catalogue::OptionLayout layout, const options::OptionBytes& wanted, double clockHz,
                            SumForm form);
// Rowan's second frame.
Bytes buildRowanOptionFrame(const options::OptionBytes& wanted, double clockHz, SumForm form);

enum class Moment { BeforeWrite, AfterWrite };
// Whether the bytes that the family's answers carry agree with the wanted ones. After a write bits 3 and 7 of byte 1 do
// not count in the families that store something of their own there.
bool optionsAgree(catalogue::OptionLayout layout, bool laterOrder, Moment moment, const options::OptionSet& options);
bool allOptionsAgree(const options::OptionSet& options);  // bytes 0 to 15
bool rowanOptionsAgree(const options::OptionSet& options);

// True: the chip runs from its external clock, so options that agree already need no frame.
bool runsFromExternalClock(catalogue::OptionLayout layout, int optionOrder, const options::OptionSet& options);

}  // namespace kvr::engine
