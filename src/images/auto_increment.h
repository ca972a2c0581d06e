// Serial numbers: a running number that goes into the image before each chip, and its arithmetic. Everything here is a
// value; serial_counters_room.h ties it to the controls, the images and the settings.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/address_range.h"
#include "catalogue/mcu_record.h"
#include "images/image_buffer.h"

namespace kvr::images {

enum class Radix { Hex, Bcd, Ascii };  // in the order of the option buttons

struct AutoIncrement {
  ImageKind kind = ImageKind::Code;
  std::int32_t address = 0;  // of the field's last, least significant byte; 0 .. 0xFFFFF
  int bytes = 0;             // length of the field
  std::string next;          // next value, decimal digits
  bool armed = false;        // the field fits the model and may be written
  int step = 0;              // added after a success
  Radix radix = Radix::Bcd;

  catalogue::AddressRange field() const { return {address - bytes + 1, address}; }
};

// The four boxes of a counter: address (hexadecimal), bytes, next value, step.
using CounterTexts = std::array<std::string, 4>;
void takeTexts(AutoIncrement& record, const CounterTexts& texts);

// The address box: the last five characters of the trimmed text as a hexadecimal number.
std::int32_t autoAddress(std::string_view text);

// Why the counter does not fit the model's memory or its own limits, for a message box; empty: it fits.
std::string checkAutoRange(const AutoIncrement& record, const catalogue::McuRecord& model);

// The bytes of the field, most significant first, or why `next` cannot be written.
struct AutoValue {
  std::vector<std::uint8_t> bytes;
  std::string fault;  // empty: fine
  bool operator==(const AutoValue&) const = default;
};
AutoValue autoValue(const AutoIncrement& record);

// The text of the `next` box after a success: fixed width; a value that outgrows it loses its head.
std::string advancedNext(const AutoIncrement& record);

}  // namespace kvr::images
