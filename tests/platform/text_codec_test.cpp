#include "platform/text_codec.h"

#include <gtest/gtest.h>

#include "platform/virtual/plain_codec.h"

namespace kvr::platform {
namespace {

TEST(TextCodec, TellsUtf8FromOtherEncodings) {
  for (const char* good : {"", "plain", "中文", "é", "\xF0\x9F\x98\x80", "\xEF\xBF\xBD"})
    EXPECT_TRUE(isUtf8(good)) << good;
  for (const char* bad : {"\xD6\xD0\xCE\xC4", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                          "\xF8\x88\x80\x80\x80", "ab\x80", "\xE4\xB8", "\xFF"}) {
    EXPECT_FALSE(isUtf8(bad)) << bad;
    EXPECT_TRUE(isUtf8(utf8Of(bad, PlainCodec())));
  }
  EXPECT_EQ(utf8Of("中文", PlainCodec()), "中文");
}

}  // namespace
}  // namespace kvr::platform
