#include <gtest/gtest.h>

#include <set>

#include "dump_frames.h"
#include "monitor/register_tables.h"
#include "monitor/sfr_monitor.h"
#include "platform/text.h"
#include "platform/virtual/virtual_loop.h"

namespace kvr::monitor {
namespace {

using platform::Millis;

const Bytes kAccepted{0xFE, 0xAA, 0x50, 0xFA};
const Bytes kSendAgain{0xFE, 0xAA, 0x52, 0xFC};

struct Watch {
  platform::VirtualLoop loop;
  MonitorPanel panel;
  catalogue::SelectedModel model;
  options::UiLock lock;
  SfrMonitor monitor{loop, panel, model, lock};
  Bytes answers;
  Bytes opened;

  Watch() {
    monitor.write = [this](std::span<const std::uint8_t> bytes) {
      answers.insert(answers.end(), bytes.begin(), bytes.end());
    };
    monitor.openAndSend = [this](std::span<const std::uint8_t> bytes) { opened.assign(bytes.begin(), bytes.end()); };
    select(2);
  }
  void select(int family) {
    model.record.family = family;
    monitor.fillSfrList();
  }
  std::string registerRowOf(const std::string& name) const {
    for (const auto& row : panel.lst_debug1.rows())
      if (platform::trim(row.substr(5, 12)) == name) return row;
    return "absent";
  }
  bool highlighted(const std::string& name) const {
    for (std::size_t i = 0; i < panel.lst_debug1.rows().size(); ++i)
      if (platform::trim(panel.lst_debug1.rows()[i].substr(5, 12)) == name) return panel.lst_debug1.selected().at(i);
    return false;
  }
};

TEST(SfrMonitor, ListsStandReadyAtTheStart) {
  Watch w;
  EXPECT_EQ(w.panel.lst_debug1.rows().size(), 41U);
  EXPECT_EQ(w.panel.lst_debug1.rows()[0], "E0H  ACC");
  EXPECT_EQ(w.panel.lst_debug2.rows().size(), 32U);
  EXPECT_EQ(w.panel.lst_debug2.rows().front(), "00H ");
  EXPECT_EQ(w.panel.lst_debug2.rows().back(), "F8H ");
  EXPECT_EQ(w.panel.lst_debug3.rows().size(), 128U);
  EXPECT_EQ(w.panel.lst_debug3.rows().back(), "03F8 ");
  EXPECT_EQ(w.panel.lst_debug4.rows().size(), 64U);
}

TEST(SfrMonitor, EachFamilyHasItsTableAndOthersLeaveTheListAlone) {
  Watch w;
  const auto check = [&](int family, std::size_t rows, const char* first, const char* last) {
    w.select(family);
    ASSERT_EQ(w.panel.lst_debug1.rows().size(), rows);
    EXPECT_EQ(w.panel.lst_debug1.rows().front(), first);
    EXPECT_EQ(w.panel.lst_debug1.rows().back(), last);
  };
  check(2, 41, "E0H  ACC", "B9H  SADEN");
  check(3, 52, "E0H  ACC", "F3H  PCA_PWM1");
  check(4, 67, "E0H  ACC", "F5H  PCA_PWM3");
  const auto rows = w.panel.lst_debug1.rows();
  w.select(7);
  EXPECT_EQ(w.panel.lst_debug1.rows(), rows);
  for (const int family : {2, 3, 4}) {
    std::set<int> addresses;
    for (const auto& named : registerTable(family)) {
      EXPECT_GE(named.address, 0x80) << named.name;
      EXPECT_LE(named.name.size(), 12U) << named.name;
      addresses.insert(named.address);
    }
    EXPECT_EQ(addresses.size(), registerTable(family).size());
  }
}

TEST(SfrMonitor, ShowsRegistersAndHighlightsWhatChanged) {
  Watch w;
  w.monitor.monitorScan(dump(0, {0x0A, 0x81, 0x0B}, 0x80));
  EXPECT_EQ(w.answers, kAccepted);
  EXPECT_EQ(w.registerRowOf("P0"), "80H  P0          0AH   10");
  EXPECT_EQ(w.registerRowOf("SP"), "81H  SP          77H  119");
  EXPECT_EQ(w.registerRowOf("ACC"), "E0H  ACC         22H   34");
  EXPECT_EQ(w.registerRowOf("P1"), "90H  P1");
  EXPECT_TRUE(w.highlighted("P0"));
  EXPECT_FALSE(w.highlighted("P1"));
  w.monitor.monitorScan(dump(0, {0x0A, 0x81, 0xC8}, 0x80));
  EXPECT_FALSE(w.highlighted("P0"));
  EXPECT_TRUE(w.highlighted("DPL"));
  EXPECT_EQ(w.registerRowOf("DPL"), "82H  DPL         C8H  200");
  w.monitor.monitorScan(dump(0, {0x55}, 0x90));
  EXPECT_EQ(w.registerRowOf("DPL"), "82H  DPL         C8H  200");
  EXPECT_EQ(w.registerRowOf("P1"), "90H  P1          55H   85");
}

TEST(SfrMonitor, DataThatRunsPastTheLastRegisterIsLeftOut) {
  Watch w;
  w.monitor.monitorScan(dump(0, counting(300), 0xF0));
  EXPECT_EQ(w.registerRowOf("B"), "F0H  B           00H    0");
}

TEST(SfrMonitor, ShowsInternalMemoryWithR1AndR0OnTop) {
  Watch w;
  w.monitor.monitorScan(dump(1, counting(256)));
  EXPECT_EQ(w.panel.lst_debug2.rows()[0], "00H  99 88 02 03 04 05 06 07");
  EXPECT_EQ(w.panel.lst_debug2.rows()[31], "F8H  F8 F9 FA FB FC FD FE FF");
  w.monitor.monitorScan(dump(1, {1, 2, 0xAB}));
  EXPECT_EQ(w.panel.lst_debug2.rows()[0], "00H  99 88 AB 03 04 05 06 07");
}

TEST(SfrMonitor, ShowsExternalMemoryAndAMovingWindow) {
  Watch w;
  w.monitor.monitorScan(dump(2, counting(11)));
  EXPECT_EQ(w.panel.lst_debug3.rows()[0], "0000 00 01 02 03 04 05 06 07");
  EXPECT_EQ(w.panel.lst_debug3.rows()[1], "0008 08 09 0A               ");
  EXPECT_EQ(w.panel.lst_debug3.rows()[2], "0010                        ");
  w.monitor.monitorScan(dump(3, counting(512), 0x1234));
  EXPECT_EQ(w.panel.lst_debug4.rows()[0], "1200 00 01 02 03 04 05 06 07");
  EXPECT_EQ(w.panel.lst_debug4.rows()[63], "13F8 F8 F9 FA FB FC FD FE FF");
  w.monitor.monitorScan(dump(3, {0xEE}, 0x13FF));
  EXPECT_EQ(w.panel.lst_debug4.rows()[0], "1200 EE 01 02 03 04 05 06 07");
  w.monitor.monitorScan(dump(3, {0xEE}, 0xFFFF));
  EXPECT_EQ(w.panel.lst_debug4.rows()[0], "FE00 EE                     ");
  EXPECT_EQ(w.panel.lst_debug4.rows()[63], "FFF8                        ");
  w.monitor.clearLists();
  EXPECT_EQ(w.panel.lst_debug4.rows()[0], "FE00 ");
  EXPECT_EQ(w.panel.lst_debug3.rows()[0], "0000 ");
  EXPECT_EQ(w.panel.lst_debug1.rows()[0], "E0H  ACC");
}

TEST(SfrMonitor, AnUnknownTypeShowsNothingAndIsStillAccepted) {
  Watch w;
  const auto before = w.panel.lst_debug2.rows();
  w.monitor.monitorScan(dump(4, counting(20)));
  EXPECT_EQ(w.answers, kAccepted);
  EXPECT_EQ(w.panel.lst_debug2.rows(), before);
}

TEST(SfrMonitor, AFrameThatNeverEndsCostsThreeRequestsASecondApartThenSilence) {
  Watch w;
  Bytes cut = dump(1, counting(256));
  cut.resize(100);
  w.monitor.monitorScan(cut);
  w.loop.runFor(Millis(999));
  EXPECT_TRUE(w.answers.empty());
  w.loop.runFor(Millis(1));
  EXPECT_EQ(w.answers, kSendAgain);
  w.loop.runFor(Millis(1999));
  EXPECT_EQ(w.answers, kSendAgain + kSendAgain);
  w.loop.runFor(Millis(60000));
  EXPECT_EQ(w.answers, kSendAgain + kSendAgain + kSendAgain);
}

TEST(SfrMonitor, ADamagedFrameIsAskedForAgainAndTheSecondSendingShows) {
  for (const bool lost : {false, true}) {
    Watch w;
    Bytes bad = dump(1, counting(256));
    if (lost)
      bad.erase(bad.begin() + 50);
    else
      bad[50] ^= 0x10;
    w.monitor.monitorScan(bad);
    EXPECT_EQ(w.panel.lst_debug2.rows()[0], "00H ");
    w.loop.runFor(Millis(1000));
    EXPECT_EQ(w.answers, kSendAgain);
    w.monitor.monitorScan(dump(1, counting(256)));
    EXPECT_EQ(w.answers, kSendAgain + kAccepted);
    EXPECT_EQ(w.panel.lst_debug2.rows()[31], "F8H  F8 F9 FA FB FC FD FE FF");
    w.loop.runFor(Millis(60000));
    EXPECT_EQ(w.answers, kSendAgain + kAccepted);
  }
}

TEST(SfrMonitor, OrdinaryTextIsNeverAnswered) {
  Watch w;
  for (const char* text : {"hello\r\n", "\xA5", "world \xA5!", "\xA5\x5A no frame"})
    w.monitor.monitorScan(textBytes(text));
  w.loop.runFor(Millis(10000));
  EXPECT_TRUE(w.answers.empty());
}

TEST(SfrMonitor, TheDisableBoxSilencesTheAnswersButNotContinue) {
  Watch w;
  w.panel.che_disable_Debug_SFR_232.userSet(true);
  w.monitor.monitorScan(dump(1, {}));
  w.monitor.monitorScan(Bytes{0xA5, 0x5A, 0xAA});
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
