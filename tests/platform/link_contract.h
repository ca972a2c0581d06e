// What every serial link promises about the device of a port number; run against each world. A world type has
// `SerialLink& link()`, two devices `first()` and `second()` that can be opened, and `give(number, device)`, which
// gives a number to a device ("": for none).
#pragma once

#include <gtest/gtest.h>

#include "platform/device_hold.h"
#include "platform/serial_link.h"

namespace kvr::platform {

template <class World>
class LinkContract : public ::testing::Test {
 protected:
  World world;
  std::string reopened() {
    SerialLink& link = world.link();
    link.close();
    const PortError error = link.open();
    return error ? error.text : link.device();
  }
};
TYPED_TEST_SUITE_P(LinkContract);

TYPED_TEST_P(LinkContract, AHeldDeviceIsOpenedAgainWhateverItsNumberStandsForMeanwhile) {
  SerialLink& link = this->world.link();
  const std::string first = this->world.first();
  const std::string second = this->world.second();
  this->world.give(1, first);
  this->world.give(2, second);
  link.setPortNumber(1);
  {
    const DeviceHold hold(link);
    EXPECT_EQ(this->reopened(), first);
    this->world.give(1, second);
    this->world.give(2, first);
    EXPECT_EQ(this->reopened(), first);
    link.setPortNumber(1);
    EXPECT_EQ(this->reopened(), first);
    this->world.give(2, second);
    link.setPortNumber(2);
    EXPECT_EQ(this->reopened(), second) << "another number is another choice";
    this->world.give(2, first);
    EXPECT_EQ(this->reopened(), second) << "and is held again";
  }
  EXPECT_EQ(this->reopened(), first);
  {
    const DeviceHold hold(link);
    this->world.give(2, second);
    EXPECT_EQ(this->reopened(), first) << "the device of a port that was open already";
  }
  this->world.give(2, "");
  EXPECT_EQ(this->reopened(), "COM2: no such device");
}

REGISTER_TYPED_TEST_SUITE_P(LinkContract, AHeldDeviceIsOpenedAgainWhateverItsNumberStandsForMeanwhile);

}  // namespace kvr::platform
