#include <gtest/gtest.h>

#include "platform/text.h"
#include "tests/monitor/stream_check.h"

namespace kvr::monitor {
namespace {

using catalogue::Family;
using platform::Millis;

const Bytes kAccepted{0xFE, 0xAA, 0x50, 0xFA};
const Bytes kSendAgain{0xFE, 0xAA, 0x52, 0xFC};

struct Watch : Watched {
  Watch() : Watched({}, 1) {
    monitor.openAndSend = [this](std::span<const std::uint8_t> bytes) { opened.assign(bytes.begin(), bytes.end()); };
    select(Family::Cedar);
  }
  void select(Family family) {
    model.record.family = family;
    monitor.listRegisters();
  }
  // A highlighted row begins with a star.
  std::string registerRowOf(const std::string& name) const {
    const auto& rows = panel.lst_debug1.rows();
    for (std::size_t i = 0; i < rows.size(); ++i)
      if (platform::trim(rows[i].substr(5, 12)) == name)
        return (panel.lst_debug1.selected().at(i) ? "*" : "") + rows[i];
    return "absent";
  }
  Bytes opened;
};

TEST(MonitorRoom, ListsStandReadyWithTheFamilysRegistersAndOthersLeaveThemAlone) {
  Watch w;
  for (const auto& [family, rows] :
       {std::pair(Family::Cedar, 41U), {Family::Elm, 52U}, {Family::Fir, 67U}, {Family::Ivy, 67U}}) {
    w.select(family);
    EXPECT_EQ(w.panel.lst_debug1.rows().size(), rows);
  }
  EXPECT_EQ(w.panel.lst_debug2.rows().size(), 32U);
  EXPECT_EQ(w.panel.lst_debug2.rows().back(), "F8H ");
  EXPECT_EQ(w.panel.lst_debug3.rows().size(), 128U);
  EXPECT_EQ(w.panel.lst_debug3.rows().back(), "03F8 ");
  EXPECT_EQ(w.panel.lst_debug4.rows().size(), 64U);
}

TEST(MonitorRoom, ShowsRegistersAndHighlightsWhatChanged) {
  Watch w;
  w.monitor.receive(dump(0, {0x0A, 0x81, 0x0B}, 0x80));
  EXPECT_EQ(w.answers, kAccepted);
  EXPECT_EQ(w.registerRowOf("P0"), "*80H  P0          0AH   10");
  EXPECT_EQ(w.registerRowOf("SP"), "*81H  SP          77H  119");
  EXPECT_EQ(w.registerRowOf("ACC"), "*E0H  ACC         22H   34");
  EXPECT_EQ(w.registerRowOf("P1"), "90H  P1");
  w.monitor.receive(dump(0, {0x0A, 0x81, 0xC8}, 0x80));
  EXPECT_EQ(w.registerRowOf("P0"), "80H  P0          0AH   10");
  EXPECT_EQ(w.registerRowOf("DPL"), "*82H  DPL         C8H  200");
  w.monitor.receive(dump(0, {0x55}, 0x90));
  EXPECT_EQ(w.registerRowOf("DPL"), "*82H  DPL         C8H  200");
  EXPECT_EQ(w.registerRowOf("P1"), "*90H  P1          55H   85");
  w.monitor.receive(dump(0, counting(300), 0xF0));  // past the last register
  EXPECT_EQ(w.registerRowOf("B"), "*F0H  B           00H    0");
}

TEST(MonitorRoom, ShowsTheMemoriesWithR1AndR0OnTopAndAMovingWindow) {
  Watch w;
  w.monitor.receive(dump(1, counting(256)));
  EXPECT_EQ(w.panel.lst_debug2.rows()[0], "00H  99 88 02 03 04 05 06 07");
  EXPECT_EQ(w.panel.lst_debug2.rows()[31], "F8H  F8 F9 FA FB FC FD FE FF");
  w.monitor.receive(dump(1, {1, 2, 0xAB}));
  EXPECT_EQ(w.panel.lst_debug2.rows()[0], "00H  99 88 AB 03 04 05 06 07");
  w.monitor.receive(dump(2, counting(11)));
  EXPECT_EQ(w.panel.lst_debug3.rows()[1], "0008 08 09 0A               ");
  EXPECT_EQ(w.panel.lst_debug3.rows()[2], "0010                        ");
  w.monitor.receive(dump(3, counting(512), 0x1234));
  EXPECT_EQ(w.panel.lst_debug4.rows()[63], "13F8 F8 F9 FA FB FC FD FE FF");
  w.monitor.receive(dump(3, {0xEE}, 0x13FF));
  EXPECT_EQ(w.panel.lst_debug4.rows()[0], "1200 EE 01 02 03 04 05 06 07");
  w.monitor.receive(dump(3, {0xEE}, 0xFFFF));
  EXPECT_EQ(w.panel.lst_debug4.rows()[0], "FE00 EE                     ");
  EXPECT_EQ(w.panel.lst_debug4.rows()[63], "FFF8                        ");
  w.monitor.clearLists();
  EXPECT_EQ(w.panel.lst_debug4.rows()[0], "FE00 ");
  EXPECT_EQ(w.panel.lst_debug3.rows()[0], "0000 ");
  EXPECT_EQ(w.panel.lst_debug1.rows()[0], "E0H  ACC");
}

TEST(MonitorRoom, AFrameTooShortForTheRegistersIsNoRecord) {
  for (const std::size_t length : {5, 16, 17}) {
    Bytes frame{0xAA, 0, static_cast<std::uint8_t>(length), 0};
    frame.resize(length, 0);
    EXPECT_EQ(readRecord(frame).has_value(), length == 17) << length;
  }
}

TEST(MonitorRoom, AFrameThatNeverEndsCostsThreeRequestsASecondApartThenSilence) {
  Watch w;
  Bytes cut = dump(1, counting(256));
  cut.resize(100);
  w.monitor.receive(cut);
  w.loop.runFor(Millis(999));
  EXPECT_TRUE(w.answers.empty());
  w.loop.runFor(Millis(1));
  EXPECT_EQ(w.answers, kSendAgain);
  w.loop.runFor(Millis(1999));
  EXPECT_EQ(w.answers, kSendAgain + kSendAgain);
  w.loop.runFor(Millis(60000));
  EXPECT_EQ(w.answers, kSendAgain + kSendAgain + kSendAgain);
}

TEST(MonitorRoom, TheDisableBoxSilencesTheAnswersButNotContinue) {
  Watch w;
  w.panel.che_disable_Debug_SFR_232.userSet(true);
  w.monitor.receive(dump(1, {}));
  w.monitor.receive(Bytes{0xA5, 0x5A, 0xAA});
  w.loop.runFor(Millis(10000));
  EXPECT_TRUE(w.answers.empty());
  w.panel.comDebugContinue[2].press();
  EXPECT_EQ(w.opened, (Bytes{0xFE, 0xAA, 0x54, 0xFE}));
  w.opened.clear();
  w.lock.toBusy();
  w.panel.comDebugContinue[1].press();
  EXPECT_TRUE(w.opened.empty());
}

}  // namespace
}  // namespace kvr::monitor
