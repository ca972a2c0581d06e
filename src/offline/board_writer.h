// Erasing an off-line board and writing its memory image in two stages.
#pragma once

#include <span>

#include "offline/board_connection.h"
#include "offline/board_image.h"

namespace kvr::offline {

class BoardWriter {
 public:
  BoardWriter(engine::TargetLink& link, BoardConnection& connection, const BoardFacts& facts)
      : link_(link), connection_(connection), facts_(facts) {}

  // The words for every outcome stand in the pane. False: the board holds less than the image.
  bool eraseBoardAndWrite(BoardImage& image, const FileBuffer& file);

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
  void showProgress(int address, int written);
  bool failed(const char* words);
  bool programFailed();
  engine::TargetLink& link_;
  BoardConnection& connection_;
  const BoardFacts& facts_;
};

}  // namespace kvr::offline
