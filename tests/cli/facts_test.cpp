// The subcommands that need no chip: what an image is, what a job would do, what can be chosen.
#include <gtest/gtest.h>

#include "platform/text.h"
#include "tests/cli/cli_bench.h"
#include "tests/support/engine_bench.h"

namespace kvr::cli {
namespace {

struct FactsTest : testing::Test {
  FactsTest() {
    image[0] = 0x02;
    image[1] = 0x01;
    image[2] = 0x23;
    bench.files.put("/a.bin", image);
  }
  int run(const std::string& line) {
    bench.streams.written.clear();
    bench.streams.told.clear();
    bench.out.results.clear();
    return bench.run(wordsOf(line));
  }
  const Value* field(const std::string& event, const std::string& name) const {
    for (const auto& [what, fields] : bench.out.results)
      for (const Field& each : fields)
        if (what == event && each.name == name) return &each.value;
    return nullptr;
  }
  std::string textOf(const std::string& path) const {
    const auto bytes = bench.files.read(path, 1 << 20);
    return bytes ? std::string(bytes->begin(), bytes->end()) : std::string();
  }
  CliBench bench;
  platform::Bytes image = support::randomBytes(7, 2000);
};

TEST_F(FactsTest, AnImageIsToldConvertedAndFoundTheSame) {
  EXPECT_EQ(run("image /a.bin --model Ivy-HF0S -o /b.hex"), 0) << bench.streams.told;
  for (const char* words : {"Data:      2000 bytes in 0000H - 07CFH", "Gaps:      none", "Start:     LJMP 0123H",
                            "Fills:     2 KB of 60 KB of Ivy-HF0S", "Written:   /b.hex"})
    EXPECT_TRUE(bench.writes(words)) << words << "\n" << bench.streams.written;
  ASSERT_NE(field("image", "vector"), nullptr);
  EXPECT_EQ(run("image /a.bin --diff /b.hex"), 0) << bench.streams.written;
  EXPECT_TRUE(bench.writes("The images are the same."));
  EXPECT_EQ(run("image /b.hex -o /c.bin"), 0);
  EXPECT_EQ(bench.files.read("/c.bin", 1 << 20), image);

  image[0x100] ^= 1;
  bench.files.put("/d.bin", image);
  EXPECT_EQ(run("image /a.bin --diff /d.bin"), 1);
  EXPECT_TRUE(bench.writes("0100H  1 byte differs: ")) << bench.streams.written;
}

TEST_F(FactsTest, NoFileIsWrittenOverUnasked) {
  bench.files.put("/b.hex", std::string("mine"));
  EXPECT_EQ(run("image /a.bin -o /b.hex"), 6);
  EXPECT_TRUE(bench.says("Say --force")) << bench.streams.told;
  EXPECT_EQ(run("job --model Ivy-HF0S /a.bin -o /b.hex"), 6);
  EXPECT_EQ(textOf("/b.hex"), "mine");
  EXPECT_EQ(run("image /a.bin -o /b.hex --force"), 0);
  EXPECT_NE(textOf("/b.hex"), "mine");
}

TEST_F(FactsTest, WhatCannotBeReadOrMeantIsRefused) {
  bench.files.put("/empty.hex", std::string());
  const std::pair<const char*, int> cases[] = {{"image /none.hex", 6},
                                               {"image /empty.hex", 6},
                                               {"image /a.bin --at 10000", 2},
                                               {"image /a.bin -o /x.txt", 2},
                                               {"image /a.bin --model Ivy-HFOS", 2},
                                               {"options Ivi-HF0S", 2},
                                               {"job --model Ivy-HF0S /a.bin --option reset-pin=maybe", 2},
                                               {"job --model Ivy-HF0S", 2}};
  for (const auto& [line, code] : cases) {
    EXPECT_EQ(run(line), code) << line;
    EXPECT_NE(bench.streams.told, "") << line;
  }
  EXPECT_EQ(run("image /a.bin --model Ivy-HFOS"), 2);
  EXPECT_TRUE(bench.says("Ivy-HF0S")) << bench.streams.told;
}

TEST_F(FactsTest, AJobIsToldAndSavedAsAProjectThatMakesTheSameJob) {
  const std::string job =
      "job --model Ivy-HF0S /a.bin --option wdt-prescaler=64 --option reset-pin=io "
      "--serial-at 07FF --serial-next 12 --serial-width 4";
  EXPECT_EQ(run(job + " -o /p.KVR"), 0) << bench.streams.told;
  EXPECT_TRUE(bench.says("reset-pin=io sets clock=external, too."));
  const std::string plan = bench.streams.written.substr(0, bench.streams.written.find("Saved:"));
  EXPECT_NE(plan.find("wdt-prescaler=64, usually 256"), std::string::npos) << plan;
  EXPECT_EQ(run("job --project /p.KVR"), 0) << bench.streams.told;
  EXPECT_EQ(bench.streams.written, plan);
  const std::string saved = textOf("/p.KVR");
  for (const char* line : {"MCU_Type: Ivy-HF0S\r\n", "File_Name: Program File: /a.bin\r\n",
                           "Auto_Increase_Address: 07FF\r\n", "Auto_Increase_Next: 12\r\n", "WDT_Prescalar: 5\r\n"})
    EXPECT_NE(saved.find(line), std::string::npos) << line;
}

TEST_F(FactsTest, AJobWithBytesThatDoNotFitSaysSo) {
  bench.files.put("/large.bin", support::randomBytes(1, 0xF400));
  EXPECT_EQ(run("job --model Ivy-HF0S /large.bin"), 6);
  EXPECT_EQ(run("job --model Ivy-HF0S /large.bin --yes"), 0) << bench.streams.told;
  EXPECT_TRUE(bench.writes("Left out:")) << bench.streams.written;
}

TEST_F(FactsTest, OptionsAreListedWithDefaultAndMeaning) {
  EXPECT_EQ(run("options ivy-hf0s"), 0);
  for (const char* words : {"reset-pin: use of the pin RESET/P4.7\n", "  * reset", "*256", "(cannot be changed)"})
    EXPECT_TRUE(bench.writes(words)) << words;
  EXPECT_GE(bench.out.results.size(), 11u);
  const auto fixed = std::find_if(catalogue::allRows().begin(), catalogue::allRows().end(),
                                  [](const auto& row) { return row.noOptions && row.listed; });
  EXPECT_EQ(run("options " + std::string(fixed->name)), 0);
  EXPECT_TRUE(bench.says("has no options that can be changed")) << bench.streams.told;
}

}  // namespace
}  // namespace kvr::cli
