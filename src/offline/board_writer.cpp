#include "offline/board_writer.h"

#include <algorithm>

#include "engine/block_plan.h"
#include "offline/board_frames.h"

namespace kvr::offline {
namespace {

using engine::Millis;

constexpr std::uint8_t kPollCommand = 0x80;
constexpr std::uint8_t kErase = 0x84;
constexpr std::uint8_t kSecondStage = 0x86;
constexpr std::uint8_t kWritten = 0x80;
constexpr int kRounds = 6;
constexpr int kFramesBeforeWriting = 6;
constexpr int kPageSize = 512;
constexpr int kPageTries = 6;
constexpr int kRestTries = 3;
constexpr int kFrameSize = 128;
constexpr int kBoardBaud = 115200;
constexpr int kSecondBankLast = 35840;  // one byte more than the second bank's share of the code

}  // namespace

bool BoardWriter::failed(const char* words) {
  if (!link_.stopCheck()) link_.say(words);
  return false;
}

bool BoardWriter::programFailed() {
  if (!link_.stopCheck()) {
    link_.beeps(3);
    link_.say("Program failure!");
  }
  link_.closeTargetPort();
  return false;
}

bool BoardWriter::eraseBoard() {
  return connection_.askUntilFrame(kRounds, kErase, Millis(4000), 0);
}

bool BoardWriter::switchBoardStage() {
  return connection_.askUntilFrame(kRounds, kSecondStage, link_.replyTimeoutMs, 0);
}

bool BoardWriter::eraseBoardAndWrite(BoardImage& image, const FileBuffer& file) {
  link_.say("We are erasing MCU flash ...");
  if (!eraseBoard()) return failed("Erasing MCU failed.");
  link_.say("We are programming ...");
  if (!writeFirstStage(image)) return programFailed();
  if (facts_.singleStage()) {
    link_.say("Download OK. / 下载成功。");
    return true;
  }
  if (!switchBoardStage()) return failed("Erasing MCU failed.");
  for (int i = 0; i < kFramesBeforeWriting; ++i)
    if (!connection_.askUntilFrame(kRounds, kPollCommand, Millis(50), 0xF1)) return failed("Program failed.");
  if (!writeSecondStage(image, file)) return programFailed();
  link_.closeTargetPort();
  link_.say("Program OK.");
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

void BoardWriter::showProgress(int address, int written) {
  link_.shared().ProgressBar1.setValue(address);
  link_.shared().labKbyte.setCaption(engine::kilobyteText(written));
}

bool BoardWriter::writeBoardRange(std::span<const std::uint8_t> image, int first, int last) {
  const int start = first / kPageSize * kPageSize;
  const int rest = last / kPageSize * kPageSize;
  platform::ProgressBar& bar = link_.shared().ProgressBar1;
  bar.setRange(start, last);
  bar.setValue(start);
  bar.setVisible(true);
  link_.shared().labKbyte.setVisible(true);
  bool good = true;
  for (int page = start; good && page < rest; page += kPageSize) {
    good = writePage(image, page, page + kPageSize - 1, kPageTries);
    if (good) showProgress(page + kPageSize, page + kPageSize - start);
  }
  good = good && writePage(image, rest, last, kRestTries);
  if (good) showProgress(last, last + 1 - start);
  bar.setVisible(false);
  return good;
}

bool BoardWriter::writePage(std::span<const std::uint8_t> image, int first, int last, int tries) {
  for (int i = 0; i < tries && !link_.stopRequested; ++i) {
    if (writeBoardChunks(image, first, last, i > 0)) return !link_.stopRequested;
    letStragglersIn();
  }
  return false;
}

// An acknowledgement bears no address: one that comes late would pass for that of the next frame, and what the board
// then misses would never be sent again.
void BoardWriter::letStragglersIn() {
  if (!link_.stopRequested) link_.delayMs(link_.gapTimeoutMs);
}

bool BoardWriter::writeBoardChunks(std::span<const std::uint8_t> image, int first, int last, bool retried) {
  for (int at = first; at <= last; at += kFrameSize) {
    const int count = std::min(kFrameSize, last - at + 1);
    if (link_.stopRequested) return false;
    if (!sendBoardWriteFrame(image.subspan(at, count), at, retried && at == first)) return false;
  }
  return true;
}

// What comes in while the frame is still going out (to the millisecond) answers an earlier one.
bool BoardWriter::sentBeforeAnyAnswer() {
  constexpr std::int64_t kBitsPerByte = 10;
  const platform::SerialLink& port = link_.lease().link();
  const auto left = [&port] {
    return Millis(static_cast<std::int64_t>(port.outBytesPending()) * kBitsPerByte * 1000 / kBoardBaud);
  };
  while (!link_.stopRequested && port.isOpen() && left() > Millis(0)) link_.delayMs(left());
  return link_.rx.count == 0 && !link_.lease().gathering();
}

bool BoardWriter::sendBoardWriteFrame(std::span<const std::uint8_t> data, int address, bool retried) {
  link_.sendFrame(buildBoardWriteFrame(data, address, retried), link_.replyTimeoutMs);
  const bool clean = sentBeforeAnyAnswer();
  return link_.waitReply() && clean && link_.rxByte(3) == kWritten;
}

}  // namespace kvr::offline
