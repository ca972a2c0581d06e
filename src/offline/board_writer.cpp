#include "offline/board_writer.h"

#include <algorithm>

#include "engine/block_plan.h"
#include "offline/board_frames.h"

namespace kvr::offline {
namespace {

using engine::Millis;

constexpr Millis kReplyLimit{600};
constexpr Millis kGap{200};  // room for an answer that comes late
constexpr std::uint8_t kPollCommand = 0x80;
constexpr std::uint8_t kErase = 0x84;
constexpr std::uint8_t kSecondStage = 0x86;
constexpr std::uint8_t kWritten = 0x80;
constexpr int kRounds = 6;
constexpr int kFramesBeforeWriting = 6;
constexpr int kPageSize = 512;
constexpr int kPageTries = 6;
constexpr int kRestTries = 3;
constexpr std::size_t kFrameSize = 128;
constexpr int kBoardBaud = 115200;
constexpr int kSecondBankLast = 35840;  // one byte more than the second bank's share of the code

}  // namespace

bool BoardWriter::failed(int beeps, const char* words) {
  return c_.stopped() ? false : c_.fail(beeps, words);
}

bool BoardWriter::eraseBoard() {
  return connection_.ask(kRounds, kErase, Millis(4000), 0).has_value();
}

bool BoardWriter::switchBoardStage() {
  return connection_.ask(kRounds, kSecondStage, kReplyLimit, 0).has_value();
}

bool BoardWriter::eraseBoardAndWrite(BoardImage& image, const FileBuffer& file) {
  c_.enter(engine::Stage::Erase);
  c_.say("We are erasing MCU flash ...");
  if (!eraseBoard()) return failed(0, "Erasing MCU failed.");
  c_.enter(engine::Stage::Program);
  c_.say("We are programming ...");
  if (!writeFirstStage(image)) return failed(3, "Program failure!");
  if (facts_.singleStage()) {
    c_.say("Download OK. / 下载成功。");
    return true;
  }
  if (!switchBoardStage()) return failed(0, "Erasing MCU failed.");
  for (int i = 0; i < kFramesBeforeWriting; ++i)
    if (!connection_.ask(kRounds, kPollCommand, Millis(50), 0xF1)) return failed(0, "Program failed.");
  if (!writeSecondStage(image, file)) return failed(3, "Program failure!");
  link_.close();
  c_.say("Program OK.");
  return true;
}

bool BoardWriter::writeFirstStage(const BoardImage& image) {
  return writeBoardRange(image.bytes(), kMainCodeAt, facts_.firstStageLast());
}

bool BoardWriter::writeSecondStage(BoardImage& image, const FileBuffer& file) {
  if (!facts_.secondBank) return writeBoardRange(image.bytes(), kSecondCodeAt, kSecondCodeAt + kSecondCodeSize - 1);
  image.placeSecondBank(file);
  return writeBoardRange(image.bytes(), kMainCodeAt, kSecondBankLast);
}

bool BoardWriter::writeBoardRange(std::span<const std::uint8_t> image, int first, int last) {
  const int start = first / kPageSize * kPageSize;
  const int rest = last / kPageSize * kPageSize;
  const auto show = [&](int address, int written) {
    c_.view().progress({start, last, address, written > 0 ? engine::kilobyteText(written) : std::string()});
  };
  show(start, 0);
  bool good = true;
  for (int page = start; good && page < rest; page += kPageSize) {
    good = writePage(image, page, page + kPageSize - 1, kPageTries);
    if (good) show(page + kPageSize, page + kPageSize - start);
  }
  good = good && writePage(image, rest, last, kRestTries);
  c_.view().progressDone();
  return good;
}

bool BoardWriter::writePage(std::span<const std::uint8_t> image, int first, int last, int tries) {
  for (int i = 0; i < tries && !link_.stopped(); ++i) {
    if (writeBoardChunks(image, first, last, i > 0)) return !link_.stopped();
    letStragglersIn();
  }
  return false;
}

// An acknowledgement carries no address: one that comes late would pass for that of the next frame, and what the board
// then misses would never be sent again.
void BoardWriter::letStragglersIn() {
  if (!link_.stopped()) link_.delay(kGap, engine::why::kLateAnswer);
}

bool BoardWriter::writeBoardChunks(std::span<const std::uint8_t> image, int first, int last, bool retried) {
  for (int at = first; at <= last; at += static_cast<int>(kFrameSize)) {
    const auto data = image.first(static_cast<std::size_t>(last) + 1).subspan(static_cast<std::size_t>(at));
    if (link_.stopped()) return false;
    if (!sendBoardWriteFrame(data.first(std::min(data.size(), kFrameSize)), at, retried && at == first)) return false;
  }
  return true;
}

// What comes in while the frame is still going out (to the millisecond) answers an earlier one.
bool BoardWriter::sentBeforeAnyAnswer() {
  constexpr std::int64_t kBitsPerByte = 10;
  const auto left = [this] {
    return Millis(static_cast<std::int64_t>(link_.outBytesPending()) * kBitsPerByte * 1000 / kBoardBaud);
  };
  while (!link_.stopped() && link_.isOpen() && left() > Millis(0)) link_.letPass(left());
  return link_.quiet();
}

bool BoardWriter::sendBoardWriteFrame(std::span<const std::uint8_t> data, int address, bool retried) {
  link_.send(buildBoardWriteFrame(data, address, retried), kReplyLimit, link_.turnRound());
  const bool clean = sentBeforeAnyAnswer();
  const auto reply = link_.awaitReply();
  const bool written = reply && clean && reply->command() == kWritten;
  if (!written) link_.slowDown();
  return written;
}

}  // namespace kvr::offline
