// A save that is cut short at any byte, by a full disk or by the end of the process, leaves the old file whole.
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QTemporaryDir>
#include <array>
#include <csignal>
#include <functional>

#include "engine/trace_files.h"
#include "platform/qt/iconv_codec.h"
#include "platform/qt/qt_files.h"
#include "platform/qt/qt_store.h"

namespace kvr::platform {
namespace {

enum class End { Fails, Killed };

// Runs the save in a process of its own whose files may not grow beyond `limit` bytes: the write that would fails like
// one to a full disk, or ends the process in its middle. Answers whether the save called itself done.
bool saveWithin(rlim_t limit, End end, const std::function<bool()>& save) {
  const pid_t child = ::fork();
  if (child == 0) {
    const rlimit size{limit, limit};
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    ::signal(SIGXFSZ, end == End::Fails ? SIG_IGN : SIG_DFL);
    ::setrlimit(RLIMIT_FSIZE, &size);
    ::_exit(save() ? 0 : 1);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

class SafeReplace : public ::testing::TestWithParam<End> {
 protected:
  // Growing limits up to the size of what is saved, then none; `check` hears after each whether the save was done.
  void cutEverywhere(rlim_t first, rlim_t size, const std::function<bool()>& save,
                     const std::function<void(rlim_t, bool)>& check) {
    int cut = 0;
    for (rlim_t limit = first; limit < size; limit += 1 + limit / 7) {
      const bool done = saveWithin(limit, GetParam(), save);
      cut += done ? 0 : 1;
      check(limit, done);
    }
    EXPECT_GT(cut, 5);
    EXPECT_TRUE(saveWithin(RLIM_INFINITY, GetParam(), save));
    check(RLIM_INFINITY, true);
  }
  QTemporaryDir folder;
};

TEST_P(SafeReplace, LeavesAFileOldOrNewAtEveryWrite) {
  const std::string path = folder.path().toStdString() + "/a.KVR";
  const Bytes before(50'000, 0x11);
  const Bytes after(150'000, 0x22);
  QtFiles files;
  ASSERT_TRUE(files.replace(path, before));
  const auto save = [&] { return files.replace(path, after).ok; };
  cutEverywhere(0, after.size(), save, [&](rlim_t limit, bool done) {
    EXPECT_EQ(*files.read(path), done ? after : before) << limit;
    ASSERT_TRUE(files.replace(path, before));
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList(QStringLiteral("a.KVR")));
  });
}

TEST_P(SafeReplace, LeavesALogWithWholeLinesOnlyAndNoFileWithoutItsHeader) {
  const std::string path = folder.path().toStdString() + "/log.csv";
  const std::string header(30, 'h');
  const std::string line(100, 'l');
  QtFiles files;
  const auto add = [&] { return files.appendLine(path, line + "\n", header + "\n").ok; };
  for (const rlim_t limit : {1U, 30U, 31U, 32U, 131U}) {
    EXPECT_FALSE(saveWithin(limit, GetParam(), add)) << limit;
    if (GetParam() == End::Fails) {
      EXPECT_FALSE(files.fileExists(path)) << limit;
    }
  }
  QFile::remove(QString::fromStdString(path));
  ASSERT_TRUE(add());
  EXPECT_FALSE(saveWithin(150, GetParam(), add));
  ASSERT_TRUE(add());
  const Bytes bytes = *files.read(path);
  const std::string text(bytes.begin(), bytes.end());
  EXPECT_TRUE(text.starts_with(header + "\n" + line + "\n"));
  EXPECT_TRUE(text.ends_with("\n" + line + "\n"));
  if (GetParam() == End::Fails) {
    EXPECT_EQ(text.size(), 31U + 2 * 101U);
  }
}

TEST_P(SafeReplace, LeavesTheSettingsOldOrNewAtEveryWrite) {
  const std::string path = folder.path().toStdString() + "/settings.ini";
  const auto put = [&](const std::string& value) {
    QtStore store(path);
    for (int i = 0; i < 40; ++i) store.set("Settings", "key" + std::to_string(i), value);
    return store.flush().ok;
  };
  ASSERT_TRUE(put("old"));
  // Below this size it is the lock file that is cut off, and the next save waits until that is stale.
  constexpr rlim_t kLockFile = 150;
  cutEverywhere(
      kLockFile, 600, [&] { return put("a newer value"); },
      [&](rlim_t limit, bool done) {
        QtStore store(path);
        for (const char* key : {"key0", "key39"}) {
          EXPECT_EQ(store.get("Settings", key).value_or("lost"), done ? "a newer value" : "old") << limit;
        }
        ASSERT_TRUE(put("old"));
      });
}

// What `act` says on a disk of a few pages, which only its process sees; nothing where the system does not give one.
std::string onSmallDisk(const std::function<std::string(const std::string& disk)>& act) {
  QTemporaryDir folder;
  const std::string disk = folder.path().toStdString();
  int told[2];
  if (::pipe(told) != 0) return {};
  const pid_t child = ::fork();
  if (child == 0) {
    std::string text;
    const bool own = ::unshare(CLONE_NEWNS) == 0 || ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0;
    if (own && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
        ::mount("none", disk.c_str(), "tmpfs", 0, "size=16k") == 0)
      text = act(disk);
    ::_exit(::write(told[1], text.data(), text.size()) >= 0 ? 0 : 1);
  }
  ::close(told[1]);
  std::array<char, 400> text{};
  const auto size = ::read(told[0], text.data(), text.size());
  ::close(told[0]);
  ::waitpid(child, nullptr, 0);
  return {text.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0))};
}

TEST(FullDisk, IsCalledSoAlsoWhenThePartThatFitsWasWritten) {
  const std::string got = onSmallDisk([](const std::string& disk) {
    QtFiles files;
    QtStore store(disk + "/s.ini");
    store.set("Settings", "texSendText", std::string(30'000, 'x'));
    return files.replace(disk + "/a", Bytes(30'000, 1)).error + "|" +
           files.appendLine(disk + "/b", std::string(30'000, 'x'), "h\n").error + "|" + store.flush().error + "|" +
           (files.fileExists(disk + "/b") ? "left" : "none");
  });
  if (got.empty()) GTEST_SKIP() << "no disk of its own";
  EXPECT_EQ(got, "disk full|disk full|disk full|none");
}

// The folder is made when it is missing. What fails leaves nothing behind.
TEST(TraceFiles, TellWhyATraceIsNotWritten) {
  const std::string got = onSmallDisk([](const std::string& disk) {
    ::setenv("XDG_STATE_HOME", disk.c_str(), 1);
    QtFiles files;
    engine::TraceFiles traces(files);
    engine::Trace trace{.head = {{"began", "2030-01-01 12:00:00"}, {"model", "Ivy-HF0S"}, {"ending", "failed"}},
                        .events = {}};
    std::string told = traces.keep(trace).error;
    told += "|" + std::to_string(files.filesIn(traces.folder()).size());
    trace.events.push_back({.bytes = Bytes(10'000, 1)});
    told += "|" + traces.keep(trace).error;
    told += "|" + std::to_string(files.filesIn(traces.folder()).size());
    trace.events.clear();
    ::mount("none", disk.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, "size=16k");
    told += "|" + traces.keep(trace).error;
    ::setenv("XDG_STATE_HOME", (disk + "/KVR-ISP/traces/" + engine::TraceFiles::nameOf(trace)).c_str(), 1);
    return told + "|" + traces.keep(trace).error;
  });
  if (got.empty()) GTEST_SKIP() << "no disk of its own";
  EXPECT_EQ(got, "|1|disk full|1|the disk is write-protected|no such folder");
}

INSTANTIATE_TEST_SUITE_P(Ends, SafeReplace, ::testing::Values(End::Fails, End::Killed),
                         [](const auto& tested) { return tested.param == End::Fails ? "DiskFull" : "Killed"; });

TEST(IconvCodec, ReadsGbkAndMarksWhatIsNone) {
  const IconvCodec codec;
  EXPECT_EQ(codec.fromGbk("D:\\\xB9\xA4\xB3\xCC\\a.hex"), "D:\\工程\\a.hex");
  EXPECT_EQ(codec.fromGbk("a\xFF\xB9\xA4\xB9"), "a\xEF\xBF\xBD工\xEF\xBF\xBD");
  EXPECT_EQ(utf8Of("\xD6\xD0", codec), "中");
}

}  // namespace
}  // namespace kvr::platform
