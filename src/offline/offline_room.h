// The page of the off-line programmer board: what the board is to get, and the session that gives it.
#pragma once

#include <optional>

#include "download/download_room.h"
#include "offline/board_run.h"
#include "offline/offline_panel.h"

namespace kvr::offline {

class OfflineRoom {
 public:
  OfflineRoom(download::RunRoom room, platform::Dialogs& dialogs, const download::JobPanels& panels,
              images::ImageRoom& images, const platform::TextBox& txtDevice, OfflinePanel& panel);

  // The whole session, to its end; nothing when some other sequence is under way. The pane tells how it went.
  void prepareBoard();

  const BoardImage& image() const { return image_; }
  const BoardFacts& board() const { return facts_; }

 private:
  std::optional<BoardJob> readBoardJob();
  void refuse(const std::string& words);
  BoardInputs collectInputs(const engine::Job& job) const;
  void keepInCodeBuffer(const FileBuffer& file);

  download::RunRoom room_;
  platform::Dialogs& dialogs_;
  download::JobPanels panels_;
  images::ImageRoom& images_;
  const platform::TextBox& txtDevice_;
  OfflinePanel& panel_;
  BoardImage image_;
  BoardFacts facts_;
  platform::Signal::Token lockToken_;
};

}  // namespace kvr::offline
