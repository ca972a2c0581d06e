// Whole runs as an operator starts them, and how they end.
#include <gtest/gtest.h>

#include "../support/engine_bench.h"

namespace kvr {
namespace {

using engine::VerdictKind;
using support::EngineBench;
using support::Millis;

void expectGood(EngineBench& bench) {
  EXPECT_TRUE(bench.passed()) << bench.text();
  EXPECT_EQ(bench.flashDifference(), "");
  EXPECT_EQ(bench.chip->violationText(), "");
  EXPECT_EQ(bench.notAtRest(), "");
}

TEST(Session, ProgramsAChipOfEachProtocolGeneration) {
  for (const char* name : {"Alder-HF8R", "Birch-L80A", "Cedar-HF8D", "Elm-H10", "Fir-H10A", "Ivy-HF0S", "Rowan-H10"}) {
    if (!catalogue::findByName(name)) continue;
    SCOPED_TRACE(name);
    EngineBench bench;
    bench.select(name);
    bench.insertChip();
    bench.loadCode(7);
    ASSERT_TRUE(bench.program());
    expectGood(bench);
    EXPECT_EQ(bench.panel.txtWrite_OK_Count.text(), " 1");
    EXPECT_TRUE(bench.says("Encrypt OK.")) << bench.text();
  }
}

}  // namespace
}  // namespace kvr
