#include "project/project_text.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/virtual/plain_codec.h"
#include "project/old_project.h"
#include "project/project_file.h"

namespace kvr::project {
namespace {

using platform::Bytes;

ProjectText parse(const std::string& text, std::size_t room = 1000) {
  return parseProject(std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()), room, room);
}

std::string format(const Header& header, const Bytes& code, const Bytes* data = nullptr) {
  const Bytes file =
      formatProject(header, code, data ? std::optional<std::span<const std::uint8_t>>(*data) : std::nullopt);
  return {file.begin(), file.end()};
}

TEST(ProjectText, IsWrittenLineByLineWithItsSums) {
  const Header header = {{"VER", "1.2"}, {"File_Name", "Program File: C:\\x.hex"}};
  EXPECT_EQ(format(header, {0x01, 0xAB, 0xFF}),
            "VER: 1.2\r\nFile_Name: Program File: C:\\x.hex\r\nbuffer_check_sum:  427\r\nEND\r\n01ABFF");
  const Bytes data = {0x10, 0x20};
  EXPECT_EQ(format({}, {0}, &data),
            "buffer_check_sum:  0\r\nEND\r\n00\r\nData_File_Begin:\r\ndata_buffer_check_sum:  "
            "48\r\n1020\r\nData_File_End\r\n");
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
  EXPECT_FALSE(parse("buffer_check_sum: 7\nEND\n010203").code.sound());
  EXPECT_FALSE(parse("END\n010203").code.sound());
  EXPECT_FALSE(parse("buffer_check_sum: 0\nEND\n").code.sound());  // nothing is no image
  EXPECT_FALSE(parse("buffer_check_sum: 0\nEND").code.sound());
  EXPECT_FALSE(parse("buffer_check_sum: 6\nEND\n010203", 2).code.sound());  // more than the image has room for
  EXPECT_FALSE(parse("buffer check sum: 0\nEND\n00").code.sound());
  EXPECT_FALSE(parse("buffer_check_sum: none\nEND\n00").code.sound());
  EXPECT_TRUE(parse("buffer_check_sum: 3\nEND\n01XX02").code.sound());
  EXPECT_TRUE(parse("buffer_check_sum: 1\nEND\n01F").code.sound());
  const ProjectText read = parse("buffer_check_sum: 1\nEND\n01\nanything\ndata_buffer_check_sum: 9\n08\nData_File_End");
  EXPECT_TRUE(read.code.sound());
  EXPECT_FALSE(read.data->sound());
}

TEST(ProjectFile, AsATextAndReadAgainIsTheSameValueWithoutAControl) {
  const ProjectFile project{.model = "Ivy-HF0S",
                            .general = {{"File_Name", "Program File: C:\\x.hex"}, {"Auto_Increase_Enable", "1"}},
                            .options = {{"WDT_Prescalar", "3"}},
                            .code = {1, 2, 255},
                            .data = Bytes{7}};
  const ReadProject read = readProject(textOf(project), platform::PlainCodec());
  EXPECT_EQ(read.project, project);
  EXPECT_TRUE(read.codeSound && read.dataSound && read.refusal.empty());
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
