#include "project/project_text.h"

#include <gtest/gtest.h>

#include <string>

#include "project/old_project.h"

namespace kvr::project {
namespace {

using platform::Bytes;

ProjectText parse(const std::string& text, std::size_t room = 1000) {
  return parseProject(std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()), room, room);
}

TEST(ProjectText, TakesLinesOfAnySystem) {
  for (const std::string end : {"\r\n", "\n", "\r"}) {
    const ProjectText read = parse("\xEF\xBB\xBFVER: 1.2" + end + "a : b:c " + end + "no colon" + end +
                                   "buffer_check_sum:6" + end + "End " + end + "01 02 03" + end + end);
    EXPECT_EQ(read.header, (Header{{"VER", "1.2"}, {"a ", "b:c"}, {"no colon", ""}, {"buffer_check_sum", "6"}}));
    EXPECT_TRUE(read.code.sound());
    EXPECT_EQ(read.code.bytes, (Bytes{1, 2, 3}));
    EXPECT_FALSE(read.data);
  }
}

TEST(ProjectText, RefusesWhatIsNotWhatWasSaved) {
  EXPECT_FALSE(parse("buffer_check_sum: 6\r\n010203").ended);
  EXPECT_FALSE(parse("").ended);
  for (const char* text :
       {"buffer_check_sum: 7\nEND\n010203", "END\n010203", "buffer_check_sum: 0\nEND\n", "buffer_check_sum: 0\nEND",
        "buffer check sum: 0\nEND\n00", "buffer_check_sum: none\nEND\n00"})
    EXPECT_FALSE(parse(text).code.sound()) << text;
  EXPECT_FALSE(parse("buffer_check_sum: 6\nEND\n010203", 2).code.sound());  // more than the image has room for
  for (const char* text : {"buffer_check_sum: 3\nEND\n01XX02", "buffer_check_sum: 1\nEND\n01F"})
    EXPECT_TRUE(parse(text).code.sound()) << text;
  const ProjectText read = parse("buffer_check_sum: 1\nEND\n01\nanything\ndata_buffer_check_sum: 9\n08\nData_File_End");
  EXPECT_TRUE(read.code.sound());
  EXPECT_FALSE(read.data->sound());
}

TEST(OldProject, KeepsTheOptionsUnderTheirNewKeys) {
  const Header old = {{"MCU type", "Cedar-H10R"}, {"Option0(0)", "True"}, {"Option1(0)", "False"},
                      {"Option2(0)", "True"},     {"AUX_RAM(1)", "1"},    {"Auto_Increase_Check", "1"},
                      {"WDT_Prescalar", "3"},     {"nonsense", "x"},      {"Option0(0)", "False"}};
  EXPECT_TRUE(isOldProject(old));
  EXPECT_FALSE(isOldProject({{"VER", "1.2"}}));
  EXPECT_EQ(oldModelName(old), "Cedar-H10R");
  EXPECT_EQ(convertOldProject(old, catalogue::OldOptionKeys::Cedar), (Header{{"Auto_Increase_Enable", "1"},
                                                                             {"Double_speed_YES", "False"},
                                                                             {"Half_Gain_YES", "False"},
                                                                             {"P10_P11_00_Download", "True"},
                                                                             {"AUX_RAM_Enable_YES", "1"},
                                                                             {"WDT_Prescalar", "3"}}));
  EXPECT_EQ(convertOldProject(old, catalogue::OldOptionKeys::Others), (Header{{"Auto_Increase_Enable", "1"},
                                                                              {"Interior_Oscillate", "False"},
                                                                              {"P10_P11_00_Download", "False"},
                                                                              {"Clear_EEPROM_00H", "True"},
                                                                              {"WDT_Prescalar", "3"}}));
}

}  // namespace
}  // namespace kvr::project
