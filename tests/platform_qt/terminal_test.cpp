// What the terminal needs of the real machine: encodings, and a log file that never holds anybody up.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QFile>
#include <QTemporaryDir>

#include "comtool/text_decoder.h"
#include "platform/qt/iconv_codec.h"
#include "platform/qt/qt_files.h"
#include "platform/qt/qt_loop.h"
#include "platform/text.h"

namespace kvr::platform {
namespace {

constexpr const char* kReplacement = "\xEF\xBF\xBD";

struct Written {
  const char* name;
  std::string systemCharset;
  Encoding encoding;
  std::string bytes;  // as the firmware sends them
  std::string text;
};
const Written kWritten[] = {
    {"UTF-8", "", Encoding::Utf8, "a\xC3\xA9\xE6\xB8\xA9\xF0\x9F\x98\x80z", "aé温😀z"},
    {"Latin-1", "", Encoding::Latin1, "25\xB0 \xB5s\xFF", "25° µsÿ"},
    {"GBK", "", Encoding::Gbk, "\xCE\xC2\xB6\xC8=25\xA1\xE6\x81\x40.", "温度=25℃丂."},
    {"system UTF-8", "UTF-8", Encoding::System, "\xE6\xB8\xA9\xC2\xB5", "温µ"},
    {"system GB18030", "GB18030", Encoding::System, "\xCE\xC2\x94\x39\xFC\x36x", "温😀x"},
};

TEST(Encodings, EveryOneIsReadAndWrittenCutAtEveryByte) {
  for (const Written& w : kWritten) {
    const IconvCodec codec(w.systemCharset);
    const auto bytes = bytesOf(w.bytes);
    for (std::size_t first = 0; first <= bytes.size(); ++first)
      for (std::size_t second = first; second <= bytes.size(); ++second) {
        comtool::TextDecoder decoder(codec);
        std::string text = decoder.decode(bytes.first(first), w.encoding);
        text += decoder.decode(bytes.subspan(first, second - first), w.encoding);
        text += decoder.decode(bytes.subspan(second), w.encoding);
        ASSERT_EQ(text, w.text) << w.name << " cut at " << first << " and " << second;
        ASSERT_FALSE(decoder.holds());
      }
    EXPECT_EQ(codec.encode(w.text, w.encoding), w.bytes) << w.name;
  }
}

TEST(Encodings, RubbishIsMarkedAndCostsNoMoreThanText) {
  const IconvCodec codec;
  comtool::TextDecoder decoder(codec);
  EXPECT_EQ(decoder.decode(bytesOf("a\xFF\xFF \xCE"), Encoding::Gbk),
            std::string("a") + kReplacement + kReplacement + " ");
  EXPECT_TRUE(decoder.holds());
  EXPECT_EQ(decoder.finish(), kReplacement);
  EXPECT_EQ(codec.encode("a温", Encoding::Latin1), "a?");
  const std::string rubbish(1'000'000, '\xFF');  // the wrong baud rate
  EXPECT_EQ(decoder.decode(bytesOf(rubbish), Encoding::Gbk).size(), 3 * rubbish.size());
}

class Growing : public ::testing::Test {
 protected:
  QByteArray content(const QString& name) {
    QFile file(folder.filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("absent");
  }
  std::string path(const char* name) { return folder.filePath(QLatin1String(name)).toStdString(); }
  QTemporaryDir folder;
  QtFiles files;
  FileResult why;
};

TEST_F(Growing, HoldsAllThatWasWrittenAtTheLatestWhenItEndsAndGoesOnWhereItWas) {
  {
    const auto file = files.grow(path("a.log"), why);
    ASSERT_TRUE(why);
    ASSERT_TRUE(file->write(bytesOf("one ")));
    QtLoop loop;
    for (int i = 0; i < 500 && content(QStringLiteral("a.log")) != "one "; ++i) delay(loop, Millis(10));
    EXPECT_EQ(content(QStringLiteral("a.log")), "one ") << "while it is open, too";
    for (int i = 0; i < 1000; ++i) ASSERT_TRUE(file->write(bytesOf(std::string(1000, 'x'))));
  }
  EXPECT_EQ(content(QStringLiteral("a.log")), QByteArray("one ") + QByteArray(1'000'000, 'x'));
  {
    const auto again = files.grow(path("a.log"), why);
    ASSERT_TRUE(again->write(bytesOf("!")));
  }
  EXPECT_EQ(content(QStringLiteral("a.log")).size(), 1'000'005);
  EXPECT_TRUE(files.remove(path("a.log")));
  EXPECT_FALSE(files.remove(path("a.log")));
}

TEST_F(Growing, SaysWhyItCannotBeWritten) {
  EXPECT_EQ(files.grow(path("no/where.log"), why), nullptr);
  EXPECT_EQ(why.error, "no such folder");
  EXPECT_EQ(files.grow(folder.path().toStdString(), why), nullptr);
  EXPECT_EQ(why.error, "it is a folder");
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(files.grow(path("pipe"), why), nullptr);
  EXPECT_EQ(files.grow("/dev/full", why), nullptr) << why.error;
}

}  // namespace
}  // namespace kvr::platform
