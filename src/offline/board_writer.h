// Erasing an off-line board and writing its memory image in two stages.
#pragma once

#include <span>

#include "offline/board_connection.h"
#include "offline/board_image.h"

namespace kvr::offline {

class BoardWriter {
 public:
  BoardWriter(engine::RunContext& context, BoardConnection& connection, const BoardFacts& facts)
      : c_(context), link_(context.link), connection_(connection), facts_(facts) {}

  // False: the board holds less than the image. Both ends have been told.
  [[nodiscard]] bool eraseBoardAndWrite(BoardImage& image, const FileBuffer& file);

 private:
  bool eraseBoard();
  bool switchBoardStage();
  bool writeFirstStage(const BoardImage& image);
  bool writeSecondStage(BoardImage& image, const FileBuffer& file);
  bool writeBoardRange(std::span<const std::uint8_t> image, int first, int last);
  bool writePage(std::span<const std::uint8_t> image, int first, int last, int tries);
  bool writeBoardChunks(std::span<const std::uint8_t> image, int first, int last, bool retried);
  bool sendBoardWriteFrame(std::span<const std::uint8_t> data, int address, bool retried);
  bool sentBeforeAnyAnswer();
  void letStragglersIn();
  bool failed(int beeps, const char* words);
  engine::RunContext& c_;
  engine::TargetLink& link_;
  BoardConnection& connection_;
  const BoardFacts& facts_;
};

}  // namespace kvr::offline
