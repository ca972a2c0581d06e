// The terminal beside everything else that waits in the window: runs, dialogs of other rooms, the operator's lock.
#include <gtest/gtest.h>

#include "tool_bench.h"

namespace kvr::comtool {
namespace {

TEST(ToolGuard, NoDialogOpensInsideARun) {
  for (const bool locked : {true, false}) {
    ToolBench b;
    auto running = std::make_unique<platform::Activity::Running>(b.activity.begin());
    if (locked) b.lock.toBusy();
    for (auto* cycle : {&b.panel.texSendCycle, &b.panel.texSpreadSendCycle}) cycle->setText("0");
    b.dialogs.paths = {"/log.txt"};
    for (auto* button : {&b.panel.comSaveReceive, &b.panel.comSpreadAutoSend, &b.panel.comAutoSend,
                         &b.panel.comDebugHelp[1], &b.panel.comSpreadSendCom[0]})
      button->press();
    b.loop.runFor(Millis(5000));
    running.reset();
    b.loop.runFor(Millis(5000));
    EXPECT_TRUE(b.dialogs.shown.empty()) << b.dialogs.shown[0].text;
    EXPECT_TRUE(b.files.files.empty());
  }
}

TEST(ToolGuard, WhoeverShowsABoxHoldsTheGuardUntilItIsAnswered) {
  ToolBench b;
  b.dialogs.thinking = Millis(1000);
  b.panel.texSendCycle.setText("0");
  b.panel.texSpreadSendCycle.setText("0");
  for (auto* button :
       {&b.panel.comSaveReceive, &b.panel.comAutoSend, &b.panel.comSpreadAutoSend, &b.panel.comDebugHelp[1]}) {
    bool held = false;
    platform::Timer probe(b.loop, [&] { held = b.activity.busy(); });
    probe.start(Millis(500));
    button->press();
    EXPECT_TRUE(held) << button->caption();
    EXPECT_FALSE(b.activity.busy());
  }
  EXPECT_EQ(b.dialogs.shown.size(), 4U);
}

TEST(ToolGuard, WhatHappensToThePortUnderAnotherDialogIsToldOnceItIsClosed) {
  for (const bool overflow : {false, true}) {
    ToolBench b;
    b.open();
    {
      const auto dialog = b.activity.begin();
      if (overflow)
        b.arriveAndShow(Bytes(ReceiveArea::kDisplayLimit + 1, 'a'));
      else
        b.link.pullOut();
      b.loop.runFor(Millis(5000));
      EXPECT_FALSE(b.tool.isOpen());
      EXPECT_TRUE(b.dialogs.shown.empty());
    }
    b.loop.runFor(Millis(5000));
    ASSERT_EQ(b.dialogs.shown.size(), 1U);
    EXPECT_EQ(b.lastMessage(), overflow ? ReceiveArea::kTooLong : "COM3: the adapter was pulled out");
  }
}

TEST(ToolGuard, AutomaticSendsGoOnUnderAnotherDialogButOpenNoPort) {
  ToolBench b;
  b.open();
  b.repeat("T", "100");
  b.rounds({"R"}, "100");
  const auto dialog = b.activity.begin();
  b.loop.runFor(Millis(250));
  EXPECT_EQ(b.sentText(), "TRTR");
  b.panel.comOpenCOM[0].press();
  b.panel.comAutoSend.press();
  b.loop.runFor(Millis(250));
  EXPECT_FALSE(b.tool.isOpen());
}

TEST(ToolGuard, ARunningRepeatCanBeStoppedAndThePortClosedWhileTheOptionsAreLocked) {
  ToolBench b;
  b.open();
  b.panel.comAutoSend.press();
  b.lock.set(platform::UiLock::kLocked);
  b.panel.comAutoSend.press();
  EXPECT_EQ(b.panel.comAutoSend.caption(), "Repeat Send");
  EXPECT_FALSE(b.panel.comAutoSend.enabled());
  b.panel.comOpenCOM[1].press();
  EXPECT_FALSE(b.tool.isOpen());
  EXPECT_FALSE(b.panel.comOpenCOM[1].enabled()) << "closed, it opens only when the options are free";
}

TEST(ToolGuard, MonitorAnswersWaitForALineThatTakesNothing) {
  ToolBench b;
  b.open();
  b.link.pendingOut = PortArea::kMaxQueued + 1;
  b.tool.writeAnswer(bytesOf("FEAA"));
  EXPECT_TRUE(b.link.sent.empty());
  b.link.pendingOut = 0;
  b.tool.writeAnswer(bytesOf("FEAA"));
  EXPECT_EQ(b.sentText(), "FEAA");
}

}  // namespace
}  // namespace kvr::comtool
