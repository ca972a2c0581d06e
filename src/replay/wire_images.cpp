#include "replay/wire_images.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>

#include "platform/text.h"

namespace kvr::replay {
namespace {

using Bytes = std::span<const std::uint8_t>;

// In front of the data: an address of four bytes and a count of two. What is around it, by conversation.
struct FrameShape {
  std::array<std::uint8_t, 2> start;
  std::size_t commandAt;
  std::array<std::uint8_t, 2> commands;  // the second: a repetition
};
constexpr FrameShape kShapes[] = {{{0x46, 0xB9}, 5, {0x00, 0x30}}, {{0x5A, 0xA5}, 4, {0xB3, 0xB4}}};

struct Data {
  std::int64_t first = 0;
  Bytes bytes;
};

std::optional<Data> dataOf(Bytes frame, const FrameShape& shape) {
  const std::size_t at = shape.commandAt + 1;
  if (frame.size() < at + 8 || !std::ranges::equal(frame.first(2), shape.start)) return std::nullopt;
  if (std::ranges::find(shape.commands, frame[shape.commandAt]) == shape.commands.end()) return std::nullopt;
  const std::size_t count = frame[at + 4] * 256u + frame[at + 5];
  if (count == 0 || frame.size() < at + 6 + count + 2) return std::nullopt;
  const auto first = std::int64_t{frame[at]} << 24 | frame[at + 1] << 16 | frame[at + 2] << 8 | frame[at + 3];
  return Data{first, frame.subspan(at + 6, count)};
}

void put(engine::JobImage& image, std::int64_t address, std::uint8_t byte) {
  if (address >= 0 && address < std::ssize(image.bytes)) image.bytes[static_cast<std::size_t>(address)] = byte;
}

void fillFrom(engine::Job& job, const Data& data) {
  for (std::size_t i = 0; i < data.bytes.size(); ++i) {
    const std::int64_t address = data.first + static_cast<std::int64_t>(i);
    const std::int64_t inData = address - job.record().dataStart;
    const bool ofData = job.data.loaded && inData >= 0 && inData <= job.data.rangeEnd;
    put(ofData ? job.data : job.code, ofData ? inData : address, data.bytes[i]);
  }
}

// Another byte than the fill, and than what the chip gets at that address.
std::uint8_t standInAt(const engine::Job& job, std::int64_t address) {
  const std::uint8_t sent = job.data.loaded ? job.data.at(address - job.record().dataStart) : job.code.at(address);
  std::uint8_t byte = 0xFF;
  while (byte == job.code.fill || byte == job.data.fill || byte == sent) --byte;
  return byte;
}

// "12 from 3800"
void addLeftOut(engine::Job& job, const std::string& text) {
  const std::size_t word = text.find(" from ");
  if (word == std::string::npos) return;
  const auto from = static_cast<std::int32_t>(platform::hexOf(text.substr(word + 6)));
  const std::int64_t blanked = job.code.blanked + (job.data.loaded ? job.data.blanked : 0);
  const bool ofData = job.data.loaded && from > std::max(job.code.rangeEnd, job.code.heldEnd);
  engine::JobImage& image = ofData ? job.data : job.code;
  const std::int32_t first = from - (ofData ? job.record().dataStart : 0);
  for (std::int64_t i = 0; i < platform::wholeOf(text.substr(0, word)) - blanked; ++i)
    put(image, first + i, standInAt(job, from + i));
}

}  // namespace

void fillImages(engine::Job& job, const engine::Trace& trace) {
  for (const engine::TraceEvent& event : trace.events) {
    if (event.kind != engine::TraceEvent::Kind::Sent) continue;
    for (const FrameShape& shape : kShapes)
      if (const auto data = dataOf(event.bytes, shape)) fillFrom(job, *data);
  }
  addLeftOut(job, trace.field("left out"));
}

}  // namespace kvr::replay
