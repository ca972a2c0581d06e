// What holds for every stream of bytes, damaged in whatever way, that a firmware sends to the monitor.
#pragma once

#include <algorithm>
#include <numeric>
#include <string>

#include "monitor/monitor_room.h"
#include "platform/virtual/virtual_loop.h"
#include "tests/monitor/dump_frames.h"

namespace kvr::monitor {

// The stream read at once, with all of it in sight.
struct Reading {
  std::vector<Bytes> frames;
  bool owes = false;  // something began that is no good frame yet
};

inline Reading readAtOnce(const Bytes& stream) {
  const Bytes preamble{0xA5, 0x5A};
  const Bytes mark{0xA5, 0x5A, 0xAA};
  Reading reading;
  for (auto at = stream.begin();;) {
    const auto found = std::search(at, stream.end(), mark.begin(), mark.end());
    if (found == stream.end()) {
      reading.owes |= stream.end() - at >= 2 && std::equal(preamble.begin(), preamble.end(), stream.end() - 2);
      return reading;
    }
    at = found + 2;
    const std::ptrdiff_t left = stream.end() - at;
    const std::ptrdiff_t length = left < 3 ? 3 : at[1] << 8 | at[2];
    const bool possible = length >= 4 && length <= 1099;
    const std::ptrdiff_t taken = possible ? length : length >= 1 && length < 4 ? 3 : 1100;
    if (left < 3 || left < taken) return {reading.frames, true};
    const Bytes frame(at, at + taken);
    reading.owes = !possible || frame.back() != (std::accumulate(frame.begin(), frame.end() - 1, 0U) & 0xFF);
    if (!reading.owes) reading.frames.push_back(frame);
    at += taken;
  }
}

// A monitor that takes the stream in pieces of one size.
struct Watched {
  Watched(const Bytes& stream, std::size_t piece) {
    model.record.family = catalogue::Family::Fir;
    monitor.listRegisters();
    monitor.write = [this](std::span<const std::uint8_t> bytes) {
      answers = answers + Bytes(bytes.begin(), bytes.end());
    };
    for (std::size_t at = 0; at < stream.size(); at += piece)
      monitor.receive(std::span(stream).subspan(at, std::min(piece, stream.size() - at)));
  }
  std::vector<std::string> rows() const {
    std::vector<std::string> all;
    for (const auto* list : {&panel.lst_debug1, &panel.lst_debug2, &panel.lst_debug3, &panel.lst_debug4})
      all.insert(all.end(), list->rows().begin(), list->rows().end());
    return all;
  }

  platform::VirtualLoop loop;
  MonitorPanel panel;
  catalogue::SelectedModel model;
  platform::UiLock lock;
  MonitorRoom monitor{loop, panel, model, lock};
  Bytes answers;
};

// What is wrong with the way in which the stream was read; empty when nothing is.
inline std::string faultOf(const Bytes& stream) {
  const Reading expected = readAtOnce(stream);
  for (std::size_t cut = 0; cut <= stream.size(); cut += 1 + stream.size() / 200) {
    FrameSearch search;
    auto frames = search.feed(std::span(stream).first(cut));
    for (auto& frame : search.feed(std::span(stream).subspan(cut))) frames.push_back(std::move(frame));
    const std::string where = " when it is cut at " + std::to_string(cut);
    if (frames != expected.frames) return std::to_string(frames.size()) + " frames" + where;
    if (search.owesFrame() != expected.owes) return "owes a frame or not" + where;
  }
  Watched whole(stream, stream.size() + 1);
  Watched bytes(stream, 1);
  Bytes answers;
  for (std::size_t i = 0; i < expected.frames.size(); ++i) answers = answers + Bytes{0xFE, 0xAA, 0x50, 0xFA};
  if (whole.answers != answers || bytes.answers != answers) return "one answer for each frame";
  const auto rows = whole.rows();
  if (bytes.rows() != rows) return "other rows byte by byte";
  for (int i = 0; expected.owes && i < 3; ++i) answers = answers + Bytes{0xFE, 0xAA, 0x52, 0xFC};
  whole.loop.runFor(platform::Millis(60000));
  if (whole.answers != answers) return "three requests for what is owed, and no others";
  if (whole.rows() != rows) return "rows that change in silence";
  whole.monitor.receive(dump(1, counting(256)));
  if (whole.answers != answers + Bytes{0xFE, 0xAA, 0x50, 0xFA}) return "a good frame after it is lost";
  return {};
}

}  // namespace kvr::monitor
