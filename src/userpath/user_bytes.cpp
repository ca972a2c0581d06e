#include "userpath/user_bytes.h"

#include <algorithm>

#include "platform/text.h"

namespace kvr::userpath {
namespace {

using engine::Millis;

// The bytes of one character, at least one.
std::size_t characterSize(std::string_view text) {
  std::size_t size = 1;
  while (size < text.size() && (static_cast<std::uint8_t>(text[size]) & 0xC0) == 0x80) ++size;
  return size;
}

std::string takeToken(std::string& text) {
  std::size_t size = text.empty() ? 0 : characterSize(text);
  if (size < text.size()) size += characterSize(std::string_view(text).substr(size));
  const std::string token = text.substr(0, size);
  text = platform::trim(text.substr(size));
  return token;
}

// When the last of `bytes` bytes will have left a line that is idle now; a byte takes 12 bits at most.
platform::Instant sentBy(engine::TargetLink& link, std::size_t bytes) {
  const auto bits = static_cast<std::int64_t>(bytes) * 12;
  return link.loop().now() + platform::Instant(bits * 1'000'000 / std::max(link.currentBaud(), 1));
}

// The system may have taken the bytes before they are on the wire, so the queue alone proves nothing. A port that never
// gets rid of them is given up a second later.
void waitSent(engine::TargetLink& link, platform::Instant sent) {
  constexpr platform::Instant kGrace = std::chrono::seconds(1);
  platform::EventLoop& loop = link.loop();
  const auto pending = [&] { return link.outBytesPending() > 0; };
  while (link.isOpen() && !link.stopped() && (loop.now() < sent || (pending() && loop.now() < sent + kGrace))) {
    const auto left = std::chrono::ceil<Millis>(sent - loop.now());
    platform::Timer step(loop);
    step.start(std::clamp(left, Millis(1), Millis(100)));
    while (step.isActive() && !link.stopped()) loop.runOnce();
  }
}

}  // namespace

std::vector<std::uint8_t> parseUserBytes(std::string_view text) {
  std::vector<std::uint8_t> bytes;
  std::string rest = platform::trim(text);
  for (std::string token = takeToken(rest); !token.empty(); token = takeToken(rest)) {
    if (static_cast<std::uint8_t>(token.front()) < '0') continue;
    bytes.push_back(static_cast<std::uint8_t>(platform::hexOf(token)));
  }
  return bytes;
}

void sendUserBytes(engine::TargetLink& link, std::string_view text) {
  const std::vector<std::uint8_t> bytes = parseUserBytes(text);
  if (bytes.empty() || !link.isOpen()) return;
  waitSent(link, link.loop().now());
  link.write(bytes);
  waitSent(link, sentBy(link, bytes.size()));
}

}  // namespace kvr::userpath
