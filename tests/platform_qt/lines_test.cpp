// The modem lines of the real serial link. A pseudo-terminal has none, so this program stands between Qt and the system
// for the calls that move them; every open and close of the device is learnt from the file system.
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cstdarg>
#include <cstring>
#include <string>
#include <vector>

#include "platform/qt/qt_loop.h"
#include "platform/qt/qt_serial_link.h"
#include "tests/support/far_end.h"

namespace {

struct Lines {
  bool present = false;  // the device has modem lines
  int state = TIOCM_DTR | TIOCM_RTS;
  std::vector<int> moves;  // the state after each call that changed it
  void become(int wanted) {
    if (wanted != state) moves.push_back(wanted);
    state = wanted;
  }
} theLines;

}  // namespace

extern "C" int ioctl(int handle, unsigned long request, ...) noexcept {
  va_list rest;
  va_start(rest, request);
  void* const argument = va_arg(rest, void*);
  va_end(rest);
  int* const bits = static_cast<int*>(argument);
  if (theLines.present && request == TIOCMGET) return *bits = theLines.state, 0;
  if (theLines.present && request == TIOCMBIS) return theLines.become(theLines.state | *bits), 0;
  if (theLines.present && request == TIOCMBIC) return theLines.become(theLines.state & ~*bits), 0;
  if (theLines.present && request == TIOCMSET) return theLines.become(*bits), 0;
  return static_cast<int>(::syscall(SYS_ioctl, handle, request, argument));
}

namespace kvr::platform {
namespace {

class QtLines : public ::testing::Test {
 protected:
  QtLines() {
    theLines = {.present = true};
    inotify_add_watch(watch_, far.device().c_str(), IN_OPEN | IN_CLOSE);
  }
  ~QtLines() override {
    ::close(watch_);
    theLines = {};
  }
  // Opens and closes of the device by anybody, since the last call: "oc".
  std::string doings() const {
    std::string found;
    alignas(inotify_event) std::array<char, 4096> buffer{};
    for (ssize_t got = ::read(watch_, buffer.data(), buffer.size()), at = 0; at < got;) {
      inotify_event event{};
      std::memcpy(&event, buffer.data() + at, sizeof event);
      at += static_cast<ssize_t>(sizeof event + event.len);
      found += (event.mask & IN_OPEN) != 0 ? 'o' : 'c';
    }
    return found;
  }
  int watch_ = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  QtLoop loop;
  support::FarEnd far;
  QtSerialLink link{loop, [this](int) { return far.device(); }};
};

TEST_F(QtLines, FollowTheirBoxesAtTheOpen) {
  link.setRts(false);
  ASSERT_FALSE(link.open());
  EXPECT_EQ(theLines.state, TIOCM_DTR);
  link.setDtr(false);
  EXPECT_EQ(theLines.state, 0);
  link.close();
  EXPECT_NE(doings().find('c'), std::string::npos);
}

TEST_F(QtLines, AKeptOneIsMovedByNothingButItsKeeper) {
  link.keepLine(ModemLine::Dtr, false);
  ASSERT_FALSE(link.open());
  EXPECT_TRUE(link.lineKept());
  EXPECT_EQ(theLines.state, TIOCM_RTS);
  const std::size_t opened = theLines.moves.size();
  doings();
  for (const char* settings : {"9600,n,8,1", "115200,n,8,1", "115200,e,8,1"}) {
    link.setDtr(true);
    link.close();
    EXPECT_FALSE(link.isOpen());
    far.send({1, 2, 3});  // to nobody
    delay(loop, Millis(20));
    EXPECT_FALSE(link.setSettings(settings));
    link.setDtr(true);
    ASSERT_FALSE(link.open());
    EXPECT_EQ(link.inBytesPending(), 0U);
    link.write(std::vector<std::uint8_t>{7});
    EXPECT_EQ(far.receive(1).size(), 1U);
  }
  EXPECT_EQ(theLines.moves.size(), opened);
  EXPECT_EQ(doings().find_first_of("oc"), std::string::npos) << "the system would raise the line at an open";
  link.close();
  link.keepLine(ModemLine::Dtr, true);
  EXPECT_EQ(theLines.state, TIOCM_DTR | TIOCM_RTS) << "at once, though the port is closed";
  link.freeLine();
  EXPECT_EQ(doings(), "c");
}

TEST_F(QtLines, AKeptDeviceThatGoesAwayIsOpenedAnewAndToldOnlyThen) {
  bool told = false;
  link.onVanished([&](const PortError&) { told = true; });
  link.keepLine(ModemLine::Rts, true);
  ASSERT_FALSE(link.open());
  link.close();
  far.hangUp();
  delay(loop, Millis(100));
  EXPECT_FALSE(told);
  EXPECT_EQ(link.open().kind, PortError::Kind::NoSuchDevice);
}

TEST_F(QtLines, ADeviceWithoutThemIsSaidToHaveNone) {
  theLines.present = false;
  link.keepLine(ModemLine::Dtr, true);
  ASSERT_FALSE(link.open());
  EXPECT_FALSE(link.lineKept());
  doings();
  link.close();
  EXPECT_EQ(doings(), "c") << "there is nothing to keep it in hand for";
}

}  // namespace
}  // namespace kvr::platform
