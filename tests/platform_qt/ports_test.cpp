#include "platform/qt/port_map.h"

#include <gtest/gtest.h>

namespace kvr::platform {
namespace {

const FoundDevice kBoard{"/dev/ttyS0", "/dev/ttyS0", "", false};
const FoundDevice kFirst{"/dev/ttyUSB0", "usb 1a86:7523 A", "USB Serial", true};
const FoundDevice kSecond{"/dev/ttyUSB1", "usb 0403:6001 B", "FT232R", true};

std::string device(const PortMap& map, int number) {
  return map[static_cast<std::size_t>(number - 1)].device;
}

TEST(PortMap, UsbAdaptersComeFirstAndEntriesOfTheSettingsBeforeThem) {
  const auto map = assignPorts({{1, "/dev/pts/4"}, {3, "/dev/ttyUSB1"}}, {kBoard, kSecond, kFirst}, {});
  EXPECT_EQ(device(map, 1), "/dev/pts/4");
  EXPECT_EQ(device(map, 2), "/dev/ttyUSB0");
  EXPECT_EQ(device(map, 3), "/dev/ttyUSB1");
  EXPECT_EQ(map[2].description, "FT232R");
  EXPECT_EQ(device(map, 4), "/dev/ttyS0");
  EXPECT_EQ(device(map, 5), "");
}

TEST(PortMap, AnAdapterThatComesBackGetsItsNumberWhateverItsPath) {
  const std::map<int, std::string> remembered{{1, kFirst.identity}, {2, kSecond.identity}};
  EXPECT_EQ(device(assignPorts({}, {kSecond}, remembered), 2), kSecond.path);
  EXPECT_EQ(device(assignPorts({}, {kSecond, kBoard}, remembered), 3), kBoard.path);
  FoundDevice moved = kFirst;
  moved.path = "/dev/ttyUSB7";
  EXPECT_EQ(device(assignPorts({}, {kSecond, moved}, remembered), 1), "/dev/ttyUSB7");
}

TEST(PortMap, ADeviceWithoutUsbIdentityKeepsItsNumberWhenAnAdapterComes) {
  const auto alone = assignPorts({}, {kBoard}, {});
  EXPECT_EQ(device(alone, 1), kBoard.path);
  const auto both = assignPorts({}, {kBoard, kFirst}, identitiesOf(alone));
  EXPECT_EQ(device(both, 1), kBoard.path);
  EXPECT_EQ(device(both, 2), kFirst.path);
}

TEST(PortMap, AnAdapterFindsANumberOnAMachineFullOfBuiltInPorts) {
  std::vector<FoundDevice> many;
  for (int i = 10; i < 42; ++i) many.push_back({"/dev/ttyS" + std::to_string(i), "s" + std::to_string(i), "", false});
  const auto full = assignPorts({}, many, {});
  many.push_back(kFirst);
  const auto plugged = assignPorts({}, many, identitiesOf(full));
  EXPECT_EQ(device(plugged, kPortCount), kFirst.path);
  EXPECT_EQ(device(plugged, 1), "/dev/ttyS10");
}

TEST(PortMap, AStrangerTakesARememberedNumberOnlyWhenNoneIsLeft) {
  std::map<int, std::string> remembered;
  for (int number = 1; number <= kPortCount; ++number) remembered[number] = "usb gone " + std::to_string(number);
  EXPECT_EQ(device(assignPorts({}, {kFirst}, remembered), 1), kFirst.path);
  std::vector<FoundDevice> many;
  for (int i = 0; i < 40; ++i) many.push_back({"/dev/ttyS" + std::to_string(i), "s" + std::to_string(i), "", false});
  const auto map = assignPorts({{99, "/dev/nonsense"}}, many, {});
  for (const auto& entry : map) EXPECT_FALSE(entry.device.empty());
}

}  // namespace
}  // namespace kvr::platform
