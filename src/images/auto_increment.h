// Serial numbers: a running number that goes into the image before each chip, and its arithmetic. Everything here is a
// value; serial_counters.h ties it to the controls, the images and the settings.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/mcu_record.h"
#include "images/hex_view_model.h"

namespace kvr::images {

enum Radix { kRadixHex = 0, kRadixBcd = 1, kRadixAscii = 2 };

struct AutoIncrement {
  std::string kind;          // "AP_AUTO_INCREASE" or "Data_Auto_Increase"
  std::int32_t address = 0;  // of the field's last, least significant byte; 0 .. 0xFFFFF
  int bytes = 0;             // length of the field
  std::string next;          // next value, decimal digits
  bool armed = false;        // the field fits the model and may be written
  int step = 0;              // added after a success
  int radix = kRadixBcd;
  // Where the field lies in the text of the page drawn last; 0, 0: not on it.
  std::int32_t selStart = 0;
  std::int32_t selLength = 0;

  bool isCode() const { return kind == "AP_AUTO_INCREASE"; }
  AddressSpan field() const { return {address - bytes + 1, address}; }
};

// The address box: the last five characters of the trimmed text as a hexadecimal number.
std::int32_t autoAddress(std::string_view text);

// Why the field does not fit the model's memory, in words for a person; empty: it fits.
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
