#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QFile>
#include <QTemporaryDir>
#include <array>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <future>
#include <memory>
#include <thread>

#include "platform/qt/bounded_calls.h"
#include "platform/qt/qt_files.h"
#include "platform/qt/qt_store.h"
#include "platform/qt/raw_names.h"
#include "tests/platform/storage_contract.h"

namespace kvr::platform {
namespace {

struct Disk {
  SettingsStore& store() { return store_; }
  std::unique_ptr<SettingsStore> window() const { return std::make_unique<QtStore>(store_.path()); }
  FileSystem& files() { return files_; }
  std::string folder() const { return folder_.path().toStdString(); }
  QTemporaryDir folder_;
  QtStore store_{folder_.path().toStdString() + "/settings.ini"};
  QtFiles files_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, StorageContract, Disk);

class QtStoreTest : public ::testing::Test {
 protected:
  void put(const QByteArray& bytes) {
    QFile file(QString::fromStdString(path));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  }
  QByteArray content(const std::string& name) {
    QFile file(QString::fromStdString(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("absent");
  }
  QTemporaryDir folder;
  std::string path = folder.path().toStdString() + "/settings.ini";
};

TEST_F(QtStoreTest, WhatAHandOrAnotherProgramWroteIsReadAndSurvives) {
  put("[Ports]\nCOM1=/dev/pts/7\nCOM2=/dev/serial/by-id/usb-A, B\n");
  QtStore store(path);
  EXPECT_EQ(store.get("Ports", "COM1"), "/dev/pts/7");
  EXPECT_EQ(store.get("Ports", "COM2"), "/dev/serial/by-id/usb-A, B");
  store.set("Settings", "Write_OK_Count", "5");
  ASSERT_TRUE(store.flush());
  put("[Settings]\nWrite_OK_Count=5\nDebugBaud=7\n");
  store.set("Settings", "COM_port", "1");
  ASSERT_TRUE(store.flush());
  const QtStore again(path);
  EXPECT_EQ(again.get("Settings", "DebugBaud"), "7");
  EXPECT_EQ(again.get("Settings", "COM_port"), "1");
}

TEST_F(QtStoreTest, AForeignFileReadsEmptyAndStandsUntilTheFirstSave) {
  const QByteArray foreign("\x7f\x45LF no settings at all\n]]][[=\n=\n");
  put(foreign);
  QtStore store(path);
  EXPECT_FALSE(store.get("Settings", "COM_port"));
  EXPECT_TRUE(store.flush());
  EXPECT_EQ(content(path), foreign);
  store.set("Settings", "COM_port", "2");
  EXPECT_TRUE(store.flush());
  EXPECT_EQ(QtStore(path).get("Settings", "COM_port"), "2");
  EXPECT_EQ(content(path + ".broken"), foreign);
}

TEST_F(QtStoreTest, AStoreThatCannotBeWrittenSaysSoAndSavesLater) {
  const std::string deep = folder.path().toStdString() + "/blocked/settings.ini";
  QFile blocker(folder.path() + QStringLiteral("/blocked"));
  ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
  QtStore store(deep);
  store.set("Settings", "COM_port", "2");
  EXPECT_EQ(store.flush().error, "no such folder");
  EXPECT_EQ(store.get("Settings", "COM_port"), "2");
  EXPECT_FALSE(store.claim("Auto_Increase")) << "a number that cannot be kept is not to be given out";
  blocker.remove();
  EXPECT_TRUE(store.flush());
  EXPECT_EQ(QtStore(deep).get("Settings", "COM_port"), "2");
}

TEST_F(QtStoreTest, AClaimOfAnotherProcessHoldsUntilThatProcessHasEnded) {
  QtStore store(path);
  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    const auto held = QtStore(path).claim("Auto_Increase");
    const char answer = held ? 'y' : 'n';
    if (::write(ready[1], &answer, 1) == 1) ::pause();
    ::_exit(1);
  }
  char answer = 0;
  ASSERT_EQ(::read(ready[0], &answer, 1), 1);
  EXPECT_EQ(answer, 'y');
  EXPECT_FALSE(store.claim("Auto_Increase"));
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  EXPECT_TRUE(store.claim("Auto_Increase"));
}

TEST_F(QtStoreTest, AnEndlessFileIsSetAsideUnread) {
  put("[Settings]\nCOM_port=3\n" + QByteArray("key=") + QByteArray(2'000'000, 'x') + "\n");
  QtStore store(path);
  EXPECT_FALSE(store.get("Settings", "COM_port"));
  store.set("Settings", "DebugBaud", "2");
  EXPECT_TRUE(store.flush());
  EXPECT_LT(content(path).size(), 100);
  EXPECT_GT(content(path + ".broken").size(), 2'000'000);
}

TEST(QtFiles, SaysInWordsWhyAFileCannotBeWrittenAndLeavesTheOldOne) {
  QTemporaryDir folder;
  QtFiles files;
  const std::string at = folder.path().toStdString();
  EXPECT_EQ(files.replace(at, Bytes{1}).error, "it is a folder");
  EXPECT_EQ(files.replace(at + "/absent/a", Bytes{1}).error, "no such folder");
  EXPECT_EQ(files.replace(at + "/" + std::string(255, 'n'), Bytes{1}).error, "");
  EXPECT_EQ(files.replace(at + "/" + std::string(256, 'n'), Bytes{1}).error, "the name is too long");
  EXPECT_EQ(files.appendLine(at + "/absent/a", "1\n", "h\n").error, "no such folder");
}

TEST(QtFiles, LeavesDevicesAndPipesAloneWithoutWaitingForThem) {
  QTemporaryDir folder;
  QtFiles files;
  const std::string pipe = folder.path().toStdString() + "/pipe";
  const std::string device = folder.path().toStdString() + "/device";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  ASSERT_EQ(::symlink("/dev/full", device.c_str()), 0);
  for (const auto& path : {pipe, device}) {
    EXPECT_FALSE(files.read(path)) << path;
    EXPECT_EQ(files.appendLine(path, "1\n", "h\n").error, "it is no ordinary file") << path;
    EXPECT_EQ(files.replace(path, Bytes{1}).error, "it is no ordinary file") << path;
  }
  struct stat state {};
  EXPECT_TRUE(::stat(pipe.c_str(), &state) == 0 && S_ISFIFO(state.st_mode));
}

TEST(BoundedCalls, GiveUpACallThatDoesNotReturnAndMakeNoOtherForItsPathUntilItHas) {
  BoundedCalls calls(std::chrono::milliseconds(200));
  std::promise<void> answer;
  const std::shared_future<void> server = answer.get_future().share();
  const auto ended = std::make_shared<std::atomic<int>>(0);
  const auto hang = [=](BoundedCalls::Progress&) {
    server.wait();
    ++*ended;
  };
  EXPECT_FALSE(calls.run("/dead/a", hang));
  EXPECT_FALSE(calls.run("/dead/a", hang));
  EXPECT_TRUE(calls.run("/live/a", [](BoundedCalls::Progress&) {}));
  EXPECT_TRUE(calls.run("/slow/a", [](BoundedCalls::Progress& progress) {
    while (++progress < 400) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  })) << "slow is not dead";
  answer.set_value();
  while (!calls.run("/dead/a", hang)) std::this_thread::yield();
  EXPECT_EQ(*ended, 2) << "the call that hung, and the last one";
}

TEST(QtFiles, TakeNamesThatAreNoUtf8AndFollowLinks) {
  QTemporaryDir folder;
  QtFiles files;
  const std::string path = folder.path().toStdString() + "/\xB9\xA4\xB3\xCC";
  ASSERT_TRUE(files.makeFolder(path));
  ASSERT_TRUE(files.replace(path + "/\xFF.bin", Bytes{1}));
  ASSERT_EQ(::symlink((path + "/\xFF.bin").c_str(), (path + "/link").c_str()), 0);
  ASSERT_TRUE(files.replace(path + "/link", Bytes{2}));
  EXPECT_EQ(files.read(path + "/\xFF.bin"), Bytes{2});
  EXPECT_TRUE(files.stamp(path + "/\xFF.bin"));
  EXPECT_EQ(files.changedAt(path + "/link").size(), 19U);
  std::filesystem::remove_all(path);
  EXPECT_EQ(rawPathOf(QUrl::fromEncoded("file:///tmp/%FF%20a%25.bin")), "/tmp/\xFF a%.bin");
  EXPECT_EQ(rawPathOf(QUrl(QStringLiteral("http://host/a.bin"))), "");
  std::string given = "/tmp/\xFF.bin";
  const std::array arguments{given.data()};
  EXPECT_EQ(rawArgument(arguments, QString::fromLocal8Bit(given.c_str())), given);
}

}  // namespace
}  // namespace kvr::platform
