#include "engine/tracing_link.h"

#include <algorithm>

namespace kvr::engine {

TracingLink::TracingLink(platform::SerialLink& below, LineRecorder& recorder) : below_(below), recorder_(recorder) {
  below_.onReceive([this] { bytesCame(); });
  below_.onVanished([this](const platform::PortError& error) {
    recorder_.note(TraceEvent::Kind::Gone, error.text, error.kind);
    inbox_.clear();
    if (vanished_) vanished_(error);
  });
}

void TracingLink::bytesCame() {
  if (recorder_.on()) takeIn();
  if (receive_) receive_();
}

void TracingLink::takeIn() {
  const auto bytes = below_.readBytes(0);
  recorder_.received(bytes);
  inbox_.insert(inbox_.end(), bytes.begin(), bytes.end());
}

// Bytes that nobody has read are evidence, too.
void TracingLink::drop() {
  if (recorder_.on() && below_.isOpen()) takeIn();
  inbox_.clear();
}

platform::PortError TracingLink::setSettings(const std::string& text) {
  auto error = below_.setSettings(text);
  recorder_.note(TraceEvent::Kind::Settings, text, error.kind);
  return error;
}

platform::PortError TracingLink::open() {
  auto error = below_.open();
  recorder_.note(TraceEvent::Kind::Open, error ? error.text : below_.device(), error.kind);
  return error;
}

void TracingLink::close() {
  if (below_.isOpen()) {
    drop();
    recorder_.note(TraceEvent::Kind::Close);
  }
  below_.close();
}

void TracingLink::write(std::span<const std::uint8_t> bytes) {
  if (below_.isOpen()) recorder_.sent(bytes);
  below_.write(bytes);
}

std::vector<std::uint8_t> TracingLink::readBytes(std::size_t maxCount) {
  if (!recorder_.on() && inbox_.empty()) return below_.readBytes(maxCount);
  takeIn();
  const std::size_t count = maxCount == 0 ? inbox_.size() : std::min(maxCount, inbox_.size());
  const auto end = inbox_.begin() + static_cast<std::ptrdiff_t>(count);
  std::vector<std::uint8_t> bytes(inbox_.begin(), end);
  inbox_.erase(inbox_.begin(), end);
  return bytes;
}

std::vector<std::uint8_t> TracingLink::peekBytes() {
  if (!recorder_.on() && inbox_.empty()) return below_.peekBytes();
  takeIn();
  return {inbox_.begin(), inbox_.end()};
}

void TracingLink::clearIn() {
  drop();
  below_.clearIn();
}

void TracingLink::setDtr(bool on) {
  recorder_.note(TraceEvent::Kind::Dtr, on ? "on" : "off");
  below_.setDtr(on);
}

void TracingLink::keepLine(platform::ModemLine line, bool on) {
  recorder_.note(line == platform::ModemLine::Dtr ? TraceEvent::Kind::Dtr : TraceEvent::Kind::Rts, on ? "on" : "off");
  below_.keepLine(line, on);
}

void TracingLink::setRts(bool on) {
  recorder_.note(TraceEvent::Kind::Rts, on ? "on" : "off");
  below_.setRts(on);
}

}  // namespace kvr::engine
