// Stations with a command that plays kvr: what it tells, how it ends, what the tile says then.
#include <gtest/gtest.h>
#include <signal.h>

#include <QFile>
#include <QTemporaryDir>
#include <QtTest/QTest>

#include "stations/crew.h"

namespace kvr::stations {
namespace {

using signs::Sign;

constexpr const char* kWaits = R"(echo '{"version":1,"event":"stage","stage":"wait"}')";
constexpr const char* kErases =
    R"(echo '{"version":1,"event":"number","number":"41"}';echo '{"version":1,"event":"stage","stage":"erase"}')";
constexpr const char* kPasses =
    R"(echo '{"version":1,"event":"outcome","ending":"passed","why":"","serial":"41","chip":{}}')";
constexpr const char* kFails =
    R"(echo '{"version":1,"event":"outcome","ending":"failed","why":"No.","serial":"41","chip":{}}';exit 1)";

class StationTest : public ::testing::Test {
 protected:
  // The lines of a shell script that plays kvr.
  Station& play(std::initializer_list<const char*> script) {
    QFile file(folder.filePath("kvr"));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/bash\n");
    for (const char* line : script) file.write(QByteArray(line) + "\n");
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    file.close();
    crew = std::make_unique<Crew>(file.fileName().toStdString(), [this](auto&) { return device; });
    EXPECT_TRUE(crew->add({"left", "/dev/ttyUSB0"}));
    crew->work.delaySeconds = 0;
    crew->onVerdict = [this](std::size_t, Sign sign) { verdicts.push_back(sign); };
    return crew->station(0);
  }
  static bool until(const std::function<bool()>& done) { return QTest::qWaitFor(done, 20000); }
  bool rests() {
    return until([this] { return !crew->station(0).tile().running && !crew->busy(); });
  }
  QTemporaryDir folder;
  std::string device = "/dev/ttyUSB0";
  std::unique_ptr<Crew> crew;
  std::vector<Sign> verdicts;
};

TEST_F(StationTest, CountsPassesAndShowsTheLastOneWhileTheNextChipIsAwaited) {
  Station& station = play({kWaits, kErases, kPasses, kWaits, "cat >/dev/null"});
  station.start(crew->work);
  ASSERT_TRUE(until([&] { return station.tile().last == Sign::Pass; }));
  EXPECT_EQ(station.tile().sign, Sign::Waiting);
  EXPECT_EQ(station.tile().counts, (Counts{1, 0, 0}));
  EXPECT_EQ(station.tile().number, "") << "the next chip has none yet";
  station.finish();  // the end of its input is what ends it
  EXPECT_TRUE(rests());
  EXPECT_EQ(station.tile().sign, Sign::Ready);
}

TEST_F(StationTest, GoesOnAfterAFailureAndRestsAfterThreeInARow) {
  Station& station = play({kWaits, kErases, kFails});
  station.start(crew->work);
  ASSERT_TRUE(rests());
  EXPECT_EQ(station.tile().counts.failed, 3);
  EXPECT_EQ(station.tile().lastFailure, "No.");
  EXPECT_EQ(verdicts.size(), 3U);
  crew->onVerdict = [&](std::size_t, Sign sign) {  // ends the station from its own verdict
    verdicts.push_back(sign);
    station.finish();
  };
  station.start(crew->work);
  ASSERT_TRUE(rests());
  EXPECT_EQ(station.tile().counts.failed, 4);
  EXPECT_EQ(verdicts.size(), 4U) << "told once";
}

TEST_F(StationTest, AProcessThatBreaksDownOverAChipIsAFailureAndIsNotStartedAgain) {
  Station& station = play({kWaits, kErases, "kill -9 $$"});
  station.start(crew->work);
  ASSERT_TRUE(rests());
  EXPECT_EQ(station.tile().sign, Sign::Fail);
  EXPECT_NE(station.tile().lastFailure.find("signal 9"), std::string::npos) << station.tile().lastFailure;
  EXPECT_EQ(verdicts, std::vector{Sign::Fail});
}

TEST_F(StationTest, AFullBatchIsNoFailureAndAChipThatWasLeftIsNamed) {
  const char* left =
      R"(echo '{"version":1,"event":"full","why":"","taken":"1 of 2 done, 1 in work","final":false,"chipLeft":true}')";
  const char* full =
      R"(echo '{"version":1,"event":"full","why":"","taken":"2 of 2 done","final":true,"chipLeft":false}')";
  const char* refused =
      R"(echo '{"version":1,"event":"outcome","ending":"refused","exitCode":7,"why":"No.","chip":{}}')";
  Station& station =
      play({kWaits, kErases, kPasses, kWaits, left, refused, kWaits, full, "echo 'kvr: No.' >&2", "exit 7"});
  station.start(crew->work);
  ASSERT_TRUE(rests());
  EXPECT_EQ(lineOf(station.tile()), "left  /dev/ttyUSB0  BATCH FULL  1 passed, 0 failed  2 of 2 done");
  EXPECT_TRUE(station.tile().chipLeft) << "until a chip answers again";
  EXPECT_EQ(station.tile().last, Sign::Pass);
  EXPECT_EQ(verdicts, std::vector{Sign::Pass}) << "no beep";
}

TEST_F(StationTest, AWrongUseIsToldInTheCommandsWords) {
  Station& station = play({"echo 'kvr: The batch is full.' >&2", "exit 7"});
  station.start(crew->work);
  ASSERT_TRUE(rests());
  EXPECT_EQ(station.tile().words, "The batch is full.");
  EXPECT_EQ(station.tile().counts.failed, 0);
}

TEST_F(StationTest, WaitsForAnAdapterThatIsGone) {
  Station& station = play({kWaits, "test -e \"$0.back\" && exec cat", "exit 3"});
  station.start(crew->work);
  device.clear();
  ASSERT_TRUE(until([&] { return station.tile().adapterGone; }));
  EXPECT_TRUE(station.tile().running);
  ASSERT_TRUE(QFile::copy(folder.filePath("kvr"), folder.filePath("kvr.back")));
  crew->adaptersChanged();
  EXPECT_FALSE(station.busy()) << "it is not there yet";
  device = "/dev/ttyUSB7";
  crew->adaptersChanged();
  ASSERT_TRUE(until([&] { return station.tile().sign == Sign::Waiting; }));
  EXPECT_FALSE(station.tile().adapterGone);
  station.stop();
  EXPECT_TRUE(rests());
}

TEST_F(StationTest, AStopWhileItWaitsSaysNothingOfAnyChip) {
  Station& station = play({"trap 'exit 130' INT", kWaits, "while true; do sleep 0.05; done"});
  station.start(crew->work);
  ASSERT_TRUE(until([&] { return station.tile().sign == Sign::Waiting; }));
  station.stop();
  ASSERT_TRUE(rests());
  EXPECT_EQ(station.tile().sign, Sign::Ready);
  EXPECT_EQ(station.tile().lastFailure, "");
  EXPECT_TRUE(verdicts.empty());
}

}  // namespace
}  // namespace kvr::stations
