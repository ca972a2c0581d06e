#include <asm/termbits.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>

#include <QFile>
#include <array>
#include <ctime>
#include <map>
#include <numeric>
#include <thread>

#include "platform/qt/line_settings.h"
#include "platform/qt/qt_loop.h"
#include "platform/qt/qt_serial_link.h"
#include "platform/qt/serial_device.h"
#include "tests/platform/link_contract.h"
#include "tests/support/far_end.h"
#include "tests/support/virtual_link.h"

namespace kvr::platform {
namespace {

using Kind = PortError::Kind;

struct RealLinks {
  SerialLink& link() { return link_; }
  std::string first() const { return ends_[0].device(); }
  std::string second() const { return ends_[1].device(); }
  void give(int number, const std::string& device) { devices_[number] = device; }
  std::array<support::FarEnd, 2> ends_;
  std::map<int, std::string> devices_;
  QtLoop loop_;
  QtSerialLink link_{loop_, [this](int number) { return devices_[number]; }};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, LinkContract, RealLinks);

struct VirtualLinks {
  SerialLink& link() { return link_; }
  static std::string first() { return "/dev/ttyV0"; }
  static std::string second() { return "/dev/ttyV1"; }
  void give(int number, const std::string& device) {
    if (device.empty())
      link_.devices.erase(number);
    else
      link_.devices[number] = device;
  }
  VirtualLoop loop_;
  sim::Wire wire_;
  support::VirtualLink link_{loop_, wire_};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, LinkContract, VirtualLinks);

TEST(LineBits, WhatADeviceDidNotTakeIsNamed) {
  const auto refused = [](const char* wanted, LineBits held) { return refusedPart(*lineSettingsOf(wanted), held); };
  EXPECT_EQ(refused("9600,n,8,1", {false, false, 8, false}), "");
  EXPECT_EQ(refused("9600,e,7,2", {true, false, 7, true}), "");
  EXPECT_EQ(refused("9600,e,8,1", {false, false, 8, false}), "parity");
  EXPECT_EQ(refused("9600,o,8,1", {true, false, 8, false}), "parity");
  EXPECT_EQ(refused("9600,n,7,1", {false, false, 8, false}), "7 data bits");
  EXPECT_EQ(refused("9600,n,8,2", {false, false, 8, false}), "2 stop bits");
  support::FarEnd far;
  QFile file(QString::fromStdString(far.device()));
  ASSERT_TRUE(file.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
  EXPECT_TRUE(isPseudoTerminal(file.handle()));
  EXPECT_EQ(lineBitsOf(file.handle())->dataBits, 8);
}

class QtLinkTest : public ::testing::Test {
 protected:
  bool waitFor(const std::function<bool()>& done, Millis limit = Millis(2000)) {
    Timer timer(loop);
    timer.start(limit);
    while (!done() && timer.isActive()) loop.runOnce();
    return done();
  }
  // What the kernel holds as the line's output rate.
  unsigned rate() const {
    QFile file(QString::fromStdString(far.device()));
    termios2 state{};
    const bool told =
        file.open(QIODevice::ReadWrite | QIODevice::Unbuffered) && !::ioctl(file.handle(), TCGETS2, &state);
    return told ? state.c_ospeed : 0;
  }
  QtLoop loop;
  support::FarEnd far;
  std::string device = far.device();
  QtSerialLink link{loop, [this](int number) { return number == 1 ? device : std::string(); }};
};

TEST_F(QtLinkTest, CarriesEveryByteBothWaysAndCountsAByteAsOutWhenItIs) {
  std::vector<std::uint8_t> bytes(1000);
  std::iota(bytes.begin(), bytes.end(), std::uint8_t(0));
  std::vector<std::uint8_t> got;
  link.onReceive([&] {
    for (const auto byte : link.readBytes(0)) got.push_back(byte);
  });
  link.setSettings("115200,e,8,1");
  ASSERT_FALSE(link.open());
  EXPECT_EQ(link.open().kind, Kind::Busy);
  link.write(bytes);
  EXPECT_EQ(far.receive(bytes.size()), bytes);
  EXPECT_EQ(link.outBytesPending(), 0u);
  far.send(bytes);
  EXPECT_TRUE(waitFor([&] { return got.size() >= bytes.size(); }));
  EXPECT_EQ(got, bytes);
  link.write(bytes);
  link.close();
  EXPECT_EQ(far.receive(bytes.size()), bytes) << "all is out when the close returns";
  link.write(bytes);  // lost, as told
  EXPECT_EQ(link.outBytesPending(), 0u);
}

TEST_F(QtLinkTest, AFloodComesWholeAndInOrderInPiecesOfAnySize) {
  std::vector<std::uint8_t> sent(2'000'000);
  std::iota(sent.begin(), sent.end(), std::uint8_t(0));
  for (std::size_t i = 0; i < sent.size(); i += 251) sent[i] = static_cast<std::uint8_t>(i >> 8);
  std::vector<std::uint8_t> got;
  link.onReceive([&] {
    while (link.inBytesPending() > 0) {
      const auto peeked = link.peekBytes();
      const auto bytes = link.readBytes(got.size() % 3 == 0 ? 0 : 1 + got.size() % 5000);
      EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), peeked.begin()));
      got.insert(got.end(), bytes.begin(), bytes.end());
    }
  });
  ASSERT_FALSE(link.open());
  std::thread writer([&] { far.send(sent); });
  EXPECT_TRUE(waitFor([&] { return got.size() >= sent.size(); }, Millis(60'000))) << got.size();
  if (got.size() < sent.size()) far.hangUp();
  writer.join();
  EXPECT_TRUE(got == sent);
  far.send({1, 2});
  EXPECT_TRUE(waitFor([&] { return got.size() == sent.size() + 2; })) << "Qt still tells of single bytes";
}

TEST_F(QtLinkTest, AClearTakesBackBytesAndTheirEvent) {
  int events = 0;
  link.onReceive([&] { ++events; });
  ASSERT_FALSE(link.open());
  far.send({1, 2, 3});
  loop.runOnce();  // Qt reads; the event may be queued now or with the next turn
  link.clearIn();
  EXPECT_EQ(link.inBytesPending(), 0u);
  far.send({4, 5});
  EXPECT_TRUE(waitFor([&] { return link.inBytesPending() >= 2; }));
  EXPECT_EQ(link.readBytes(1), (std::vector<std::uint8_t>{4}));
  EXPECT_EQ(link.readBytes(0), (std::vector<std::uint8_t>{5}));
}

TEST_F(QtLinkTest, FollowsEveryChangeOfRateAndParityWhileOpen) {
  EXPECT_FALSE(link.setSettings("9600,N,8,1.5")) << "closed, it is only noted";
  EXPECT_NE(link.open().text.find("1.5 stop bits"), std::string::npos) << "no hardware makes them";
  EXPECT_FALSE(link.isOpen());
  link.setSettings("9600,N,8,1");
  ASSERT_FALSE(link.open());
  for (const char* text : {"1200,e,8,1", "14400,e,8,1", "28800,n,8,1", "115200,n,8,1", "256000,e,8,1", "12345,n,7,2",
                           "9600,e,8,1", "9600,n,8,1", "9600,e,8,1", "9600,o,5,1.5"}) {
    EXPECT_FALSE(link.setSettings(text)) << text << link.setSettings(text).text;
    EXPECT_EQ(rate(), static_cast<unsigned>(std::stoi(text))) << text;
  }
  EXPECT_EQ(link.setSettings("fast").kind, Kind::BadSettings);
  EXPECT_EQ(link.setSettings("9600,n,4,1").kind, Kind::BadSettings);
  EXPECT_EQ(link.settings(), "9600,o,5,1.5");
}

// The far end reads nothing, so all but what the pseudo-terminal itself holds waits in the program.
TEST_F(QtLinkTest, OutputThatNobodyTakesIsThrownAwayAfterASecondByAChangeOfSettingsAndByAClose) {
  const std::vector<std::uint8_t> much(300'000, 0x55);
  const auto millis = [&](const std::function<void()>& action) {
    const Instant start = loop.now();
    action();
    return std::chrono::duration_cast<Millis>(loop.now() - start).count();
  };
  ASSERT_FALSE(link.open());
  link.write(much);
  EXPECT_GT(link.outBytesPending(), 100'000U);
  EXPECT_LT(millis([&] { EXPECT_FALSE(link.setSettings("1200,n,8,1")); }), 1300);
  EXPECT_EQ(link.outBytesPending(), 0U);
  link.write(much);
  EXPECT_LT(millis([&] { link.close(); }), 1300);
  EXPECT_LE(far.receive(much.size()).size(), 3 * 4096U) << "what the far end's own queue held";
}

TEST_F(QtLinkTest, SaysWhyAPortCannotBeOpened) {
  link.setPortNumber(2);
  EXPECT_EQ(link.open().text, "COM2: no such device");
  link.setPortNumber(1);
  device = "/dev/ttyNOTHERE";
  EXPECT_EQ(link.open().text, "/dev/ttyNOTHERE: no such device");
  device = "/dev/null";
  EXPECT_EQ(link.open().kind, Kind::NoSuchDevice);
  device = far.device();
  QtSerialLink other(loop, [this](int) { return far.device(); });
  ASSERT_FALSE(other.open());
  EXPECT_EQ(link.open().text, far.device() + ": busy");
  other.close();
  EXPECT_FALSE(link.open());
}

TEST_F(QtLinkTest, AVanishedDeviceIsReportedOnceWithThePortClosedAndTheCoreAsleep) {
  std::vector<bool> openWhenTold;
  link.onVanished([&](const PortError& error) {
    EXPECT_EQ(error.kind, Kind::Vanished);
    openWhenTold.push_back(link.isOpen());
  });
  ASSERT_FALSE(link.open());
  delay(loop, Millis(20));
  far.hangUp();
  EXPECT_TRUE(waitFor([&] { return !openWhenTold.empty(); }, Millis(1000)));
  const std::clock_t before = std::clock();
  delay(loop, Millis(400));
  EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 50);
  EXPECT_EQ(openWhenTold, std::vector<bool>{false});
  link.write(std::vector<std::uint8_t>{1});
  EXPECT_EQ(link.open().kind, Kind::NoSuchDevice);
}

}  // namespace
}  // namespace kvr::platform
