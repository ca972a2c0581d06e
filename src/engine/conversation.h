// What all sequences of one download work on: the line, the chip, the run's flags, the images and the options. The
// sequences themselves (handshake, baud change, erase, programming, option write) hold a reference to it and little
// else.
#pragma once

#include <array>
#include <functional>
#include <string>

#include "engine/image_plan.h"
#include "engine/target_info.h"
#include "engine/target_link.h"
#include "images/image_buffer.h"
#include "options/options_room.h"

namespace kvr::engine {

// The flags of one press of a download button.
struct DownloadSession {
  bool targetConnected = false;
  bool rcTrimRequested = false;
  bool optionsRead = false;  // the chip's options were read during this connection
  bool programDone = false;
  int frameSize = 128;  // data bytes in one frame
  ImagePlan plan;
  platform::Instant startMark{0};
  std::string eraseTimeText, programTimeText;
  std::string factoryId;     // 14 hexadecimal digits of the erase reply; empty: not told
  std::string failureWords;  // the line that told why this run failed; empty while none did
};

class Conversation {
 public:
  Conversation(TargetLink& targetLink, options::OptionsRoom& optionsRoom, images::ImageState& imageState)
      : link(targetLink),
        room(optionsRoom),
        options(optionsRoom.set()),
        images(imageState),
        model(targetLink.model()) {}

  TargetLink& link;
  options::OptionsRoom& room;
  options::OptionSet& options;  // the room's
  images::ImageState& images;
  const catalogue::SelectedModel& model;
  TargetInfo target;
  DownloadSession run;
  std::optional<options::RcTrim> trim;  // the measured pair, once there is one

  const catalogue::McuRecord& record() const { return model.record; }
  const catalogue::FamilyTraits& traits() const { return model.traits(); }
  std::span<const std::uint8_t> rx() const { return link.rx.buffer; }

  void stampStart() { run.startMark = link.world().loop.now(); }
  std::string elapsedText() const;  // "[01:25]" since `startMark`

  // Words of a failure: beeps, a line in the pane, kept for the run's record. False, for `return fail(...)`.
  bool fail(int beeps, const std::string& line);
  // The same with "(End: hh:mm:ss)" behind the words.
  bool failNow(int beeps, const std::string& words);
  // A pending stop, told in the pane and kept for the record.
  bool stopped();

  void composeOptions() { room.composeOptions(trim); }
  // Tells what the chip holds and applies what follows from it.
  void reportTarget(std::uint8_t status11, std::uint8_t status12, std::uint8_t status13);
};

}  // namespace kvr::engine
