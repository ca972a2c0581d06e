#include "sim/target.h"

#include <gtest/gtest.h>

namespace sim {
namespace {

TEST(TargetOptions, TakeWhatIsSoundAndNameWhatIsNot) {
  const ParsedOptions good =
      parseTargetOptions({"--model", "Gum-H20", "--letter", "G", "--firmware", "5.7", "--firmware", "echo", "--fault",
                          "failsBlock=3:2", "--fault", "silentErase", "--line", "9600,e,8,1", "--paced"});
  EXPECT_EQ(good.error, "");
  EXPECT_EQ(good.options.firmware, 0x57);
  EXPECT_EQ(good.options.application, "echo");
  EXPECT_EQ(good.options.faults.size(), 2U);
  EXPECT_EQ(good.options.applicationLine, (Line{9600, 'e'}));
  EXPECT_TRUE(good.options.paced);
  using Arguments = std::vector<std::string_view>;
  for (const Arguments& bad : {Arguments{"--nonsense"}, Arguments{"--model"}, Arguments{"--chips", "0"},
                               Arguments{"--firmware", "63"}, Arguments{"--line", "9600,x,8,1"}})
    EXPECT_NE(parseTargetOptions(bad).error, "");
  EXPECT_EQ(Target({.model = "Ivy-H99"}, 0).error(), "no model Ivy-H99");
  EXPECT_EQ(Target({.faults = {{"noSuchFault", ""}}}, 0).error(), "no fault noSuchFault");
}

}  // namespace
}  // namespace sim
