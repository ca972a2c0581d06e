// An image against a second file: where the two differ. A byte that only one of them has is a difference, whatever its
// value is.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "catalogue/address_range.h"
#include "images/image_buffer.h"

namespace kvr::images {

class Comparison {
 public:
  // `other` as `ImageBuffer::held` gives it. Nothing differs before `update`.
  void begin(std::string name, FileLayer other);
  void end() { *this = {}; }
  bool on() const { return !name_.empty(); }

  // Compares anew within the addresses that are shown.
  void update(const ImageBuffer& image, catalogue::AddressRange shown);
  bool differs(std::int32_t address) const;
  // The nearest run of differences after (`forward`) or before the address; goes on at the other end. Nothing: there
  // is no difference.
  std::optional<catalogue::AddressRange> next(std::int32_t address, bool forward) const;
  // In words: how many runs differ, and what the second file has at the address if that differs.
  std::string text(std::int32_t address) const;

 private:
  bool has(std::int32_t address) const;
  std::string byteText(std::int32_t address) const;
  std::string name_;
  FileLayer other_;
  std::vector<catalogue::AddressRange> runs_;
  int outside_ = 0;  // bytes of the second file at addresses that are not shown
};

}  // namespace kvr::images
