// A save that is cut short at any byte, by a full disk or by the end of the process, leaves the old file whole.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <csignal>
#include <functional>

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
  });
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
