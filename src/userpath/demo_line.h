// The line to the demo routine of a running program: a run's line with another kind of frame.
#pragma once

#include <optional>
#include <span>

#include "engine/target_link.h"
#include "userpath/demo_frames.h"

namespace kvr::userpath {

class DemoLine : public engine::TargetLink {
 public:
  static constexpr engine::Millis kReplyLimit{200};

  DemoLine(const engine::RunServices& services, engine::RunView& view, int port)
      : TargetLink(services, view, port, engine::SumForm::TwoBytes) {}

  // Nothing received, a frame out, its reply in. Nothing: none within the limit, which does not cut one that is
  // arriving, or Stop.
  [[nodiscard]] std::optional<DemoReply> exchange(std::span<const std::uint8_t> frame, engine::Millis limit);
  [[nodiscard]] std::optional<DemoReply> ask(std::uint8_t command) {
    return exchange(buildDemoFrame(command), kReplyLimit);
  }
  // The command over and over until something answers or Stop: a program may be busy when the first ones come.
  [[nodiscard]] bool pollUntilReply(std::uint8_t command, engine::Millis pace);

  void bytesWait() override { rx_.take(lease().link().readBytes(0)); }

 private:
  std::optional<DemoReply> awaitReply(engine::Millis limit);
  bool arriving() const;
  DemoReceiver rx_;
};

}  // namespace kvr::userpath
