// A session with an off-line programmer board: builds the board's memory image from both code images, the options and
// the limit, finds the board on the line, erases it and writes it.
#pragma once

#include <functional>
#include <optional>

#include "engine/target_link.h"
#include "images/image_buffer.h"
#include "images/image_panel.h"
#include "offline/board_facts.h"
#include "offline/board_image.h"
#include "offline/offline_panel.h"
#include "options/option_set.h"
#include "platform/activity.h"
#include "platform/ui_lock.h"

namespace kvr::offline {

// What the session reads and writes beside the board's own page.
struct OfflineContext {
  engine::TargetLink& link;
  platform::Activity& activity;
  platform::UiLock& lock;
  const options::OptionSet& options;  // `wanted` is what the board is to write
  images::ImageState& images;
  images::ImagePanel& imagePanel;  // the serial values' controls
  platform::TextBox& txtDevice;
};

class OfflineSession {
 public:
  OfflineSession(OfflineContext context, OfflinePanel& panel);

  // The whole session, to its end; nothing when some other sequence is under way. The pane tells how it went.
  void runOfflineSession();

  const BoardImage& image() const { return image_; }
  const BoardFacts& board() const { return facts_; }

  std::function<void()> releaseToolPort;  // the terminal gives the port up
  std::function<void()> composeOptions;   // the panel's choices go into `options.wanted`
  std::function<void()> stopOperation;    // what the button Stop does: the end of every session

 private:
  std::optional<std::int64_t> checkedLimit();
  void runWithBoard(FileBuffer file, std::int64_t limit);
  bool connect();
  bool buildIncrementBlocks(const BoardInputs& inputs, FileBuffer& file);
  bool buildIncrement(bool dataField, const BoardInputs& inputs, FileBuffer& file);
  void buildImage(BoardInputs inputs, const FileBuffer& file);
  void keepInCodeBuffer(const FileBuffer& file);
  BoardInputs collectInputs(std::int64_t limit) const;
  void run(const std::function<void()>& callback) const;

  OfflineContext context_;
  OfflinePanel& panel_;
  BoardImage image_;
  BoardFacts facts_;
};

}  // namespace kvr::offline
