// The simulator's own reading of a trace: the device of a failed run, put in front of the program once more.
#include <gtest/gtest.h>

#include "engine/trace_text.h"
#include "sim/replay_device.h"
#include "tests/support/engine_bench.h"

namespace kvr {
namespace {

using support::EngineBench;
using support::Millis;

void setUp(EngineBench& bench, const char* model) {
  bench.select(model);
  bench.bauds("9600", "115200");
  bench.loadCode(5, 1500);
}

std::string withoutTime(const std::string& words) {
  return words.substr(0, words.find("(End"));
}

TEST(ReplayDevice, SaysToTheSameJobWhatItSaidBefore) {
  for (const char* model : {"Ivy-HF0S", "Cedar-HF8D", "Elm-H02A", "Quince-H03G", "Alder-H100D"})
    for (const char* fault : {"", "silentErase", "wrongModelCode", "diesAfterBlocks"}) {
      SCOPED_TRACE(std::string(model) + " " + fault);
      EngineBench first;
      EngineBench second({.byteTimeScale = 0});  // as on a terminal: the times of the trace hold those of the bytes
      setUp(first, model);
      first.insertChip(Millis(3000));
      const bool set = !*fault || sim::setChipFault(first.chip->config(), fault, fault[0] == 'd' ? "3" : "");
      ASSERT_TRUE(set);
      ASSERT_TRUE(first.program());
      sim::TraceScript script = sim::readTraceScript(engine::traceText(first.tracer.trace()));
      ASSERT_EQ(script.error, "");
      sim::ReplayDevice device(std::move(script));
      second.wire.connect(&device);
      device.powerOn(0);
      setUp(second, model);
      EXPECT_TRUE(second.program()) << second.text();
      EXPECT_EQ(second.outcome().ending, first.outcome().ending) << second.text();
      EXPECT_EQ(withoutTime(second.outcome().words), withoutTime(first.outcome().words));
      EXPECT_EQ(device.difference(), "");
      EXPECT_EQ(device.plays(), 1);
      second.wire.connect(nullptr);
    }
}

TEST(ReplayDevice, IsSilentFromTheFirstOtherByteOn) {
  sim::TraceScript script = sim::readTraceScript(
      "KVR-ISP trace 1\r\nmodel: X\r\n\r\nevents\r\n    0.000000  line 9600,n,8,1\r\n"
      "    0.100000  > [40 times, until 0.500000] 7F 7F\r\n    0.510000  < [until 0.511000] 46 B9\r\n"
      "    0.600000  > 50 51\r\n    0.610000  < 01\r\nend\r\n");
  ASSERT_EQ(script.error, "");
  EXPECT_EQ(script.model, "X");
  sim::ReplayDevice device(script);
  sim::Bytes said;
  device.say = [&](sim::Micros start, const sim::Line&, std::span<const std::uint8_t> bytes) {
    said.insert(said.end(), bytes.begin(), bytes.end());
    return start;
  };
  sim::Micros now = 0;
  const auto tell = [&](std::initializer_list<int> bytes) {
    for (const int byte : bytes) device.hear(++now, {.byte = static_cast<std::uint8_t>(byte)});
    device.advanceTo(now += 20000);
  };
  device.powerOn(0);
  for (int i = 0; i < 14; ++i) tell({0x7F, 0x7F});
  EXPECT_EQ(said, (sim::Bytes{0x46, 0xB9})) << "ten beats are enough, and more do no harm";
  tell({0x50, 0x52});
  tell({0x50, 0x51});
  EXPECT_EQ(said.size(), 2u);
  EXPECT_EQ(device.difference(), "byte 30 from the host, in exchange 2, is 52 instead of 51");
  for (const char* bad : {"", "KVR-ISP trace 2\nevents\nend\n", "KVR-ISP trace 1\nevents\n",
                          "KVR-ISP trace 1\nevents\n"
                          "  0.1  thinned [4 times] 12\nend\n",
                          "KVR-ISP trace 1\nevents\n  0.1  > 4G\nend\n"})
    EXPECT_NE(sim::readTraceScript(bad).error, "") << bad;
}

}  // namespace
}  // namespace kvr
